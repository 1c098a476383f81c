#pragma once

// Look-ups with texts of tests.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Evaluator/Exceptions.h"
#include "filesystem/File.h"
#include "filesystem/Folder.h"
#include "support/Owned.h"
#include "support/TemporaryFolder.h"

using MacintoshPlatform::FailedToGetFileItem;

inline folder FolderAt(std::string_view path) { return posix_folder_of_world(Bytes(path), path.size()); }
inline file FileAt(std::string_view path) { return posix_file_of_world(Bytes(path), path.size()); }

inline file FileNamed(std::string_view name, folder const& parent) {
    return file_of(Bytes(name), name.size(), parent);
}
inline folder FolderNamed(std::string_view name, folder const& parent) {
    return folder_of(Bytes(name), name.size(), parent);
}
inline filesystem_object ItemNamed(std::string_view name, folder const& parent) {
    return object_of(Bytes(name), name.size(), parent);
}

/// The path of an item without a separator at its end.
inline std::string Path(filesystem_object const& object) {
    std::string path = PathOf(object.url);
    if (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

inline std::string Text(inspector_string const& text) { return {text.begin(), text.end()}; }

/// An item that has no information.
inline filesystem_object MissingItem() {
    return filesystem_object(
        MacintoshPlatform::FileItem(MacintoshPlatform::FileLocation(NewURL("/missing/item"))));
}

/// A test with a folder of its own and empty caches.
class FileSystem : public testing::Test {
  protected:
    FileSystem() {
        ClearFileCaches(nullptr);
        ClearFolderCaches(nullptr);
        ClearFileSystemObjectCache(nullptr);
    }
    folder Here() const { return FolderAt(here.Path()); }

    TemporaryFolder here;
};
