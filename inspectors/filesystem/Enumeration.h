#pragma once

// The items that a folder holds directly: all of them, the files, the folders, and each of these by the end
// of their names. They come in the order of the file system; nothing is left out, neither invisible items nor
// aliases.

#include "Evaluator/Values.h"
#include "filesystem/FileSystemObject.h"

/// The state of one enumeration. Each step throws NoSuchObject at the end, and what FileLoop throws; a step
/// over files or folders throws FailedToGetFileItem for an item that could not be looked at, since it cannot
/// be told which of the two it is.
class filesystem_object_iterator {
  public:
    filesystem_object FirstItem(Of, folder const& parent);
    filesystem_object NextItem(Of, folder const& parent);
    filesystem_object FirstItemEndingIn(inspector_string const& suffix, Of, folder const& parent);
    filesystem_object NextItemEndingIn(inspector_string const& suffix, Of, folder const& parent);

    file FirstFile(Of, folder const& parent);
    file NextFile(Of, folder const& parent);
    file FirstFileEndingIn(inspector_string const& suffix, Of, folder const& parent);
    file NextFileEndingIn(inspector_string const& suffix, Of, folder const& parent);

    folder FirstFolder(Of, folder const& parent);
    folder NextFolder(Of, folder const& parent);
    folder FirstFolderEndingIn(inspector_string const& suffix, Of, folder const& parent);
    folder NextFolderEndingIn(inspector_string const& suffix, Of, folder const& parent);

  private:
    MacintoshPlatform::FileLoop loop;
};
