#pragma once

// The folders above an item.

#include "Evaluator/CoreFoundationHolders.h"
#include "Evaluator/Values.h"
#include "filesystem/FileSystemObject.h"

/// The state of one walk up to the root. The first step throws FailedToGetFileItem when there is no folder
/// above, or when it cannot be looked at; at the later ones the walk is at its end there, which is
/// NoSuchObject.
class ancestor_iterator {
  public:
    folder First(Of, filesystem_object const& object);
    folder Next(Of, filesystem_object const& object);

  private:
    folder FolderAbove(MacintoshPlatform::FileLocation const& location);

    AutoCFURL last;  // where the folder given last is
};
