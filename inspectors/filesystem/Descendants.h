#pragma once

// The files below a folder, at any depth.

#include <deque>

#include "Evaluator/Values.h"
#include "filesystem/FileSystemObject.h"
#include "frame/SharingPtr.h"

/// A folder being listed, and room for the folder in it that is being entered.
struct FileLoop : MacintoshPlatform::FileLoop {
    MacintoshPlatform::FileItem scratch;
};

/// Lists the folder at a location. Throws what FileLoop::Start does.
SharingPtr<FileLoop> MakeFileLoop(MacintoshPlatform::FileLocation const& location);

/// The state of one walk, depth first: a folder's files stand where the folder does among its neighbours. A
/// link to a folder is a file and is not entered. The steps throw NoSuchObject at the end,
/// FailedToGetFileItem for an item that could not be looked at, and what FileLoop throws for a folder that
/// cannot be listed. Memory grows with the depth, not with the number of files.
class descendant_iterator {
  public:
    file First(Of, folder const& top);
    file Next(Of, folder const& top);

  private:
    std::deque<SharingPtr<FileLoop>> loops;  // of the folders on the way; the deepest is the last
};
