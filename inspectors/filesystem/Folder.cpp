#include "filesystem/Folder.h"

#include "filesystem/LookUps.h"
#include "filesystem/LookupCache.h"

using namespace Inspectors;
using MacintoshPlatform::FailedToGetFileItem;
using MacintoshPlatform::MakeFileLocationFailed;

namespace {

LookupCache<folder, 16, folder> sFolderCache;
LookupCache<folder, 16, folder> sRelativeFolderCache;
LookupCache<folder, 16> sWorldFolderCache;

}  // namespace

folder folder_of(unsigned char const* name, unsigned long length, folder const& parent) {
    std::string_view const text = TextOf(name, length);
    auto const look = [&] { return AsFolder(ItemNamed(text, parent)); };
    return OrNoSuchObject<FileNotFoundError, DirectoryNotFoundError, MakeFileLocationFailed,
                          FailedToGetFileItem, IllegalFileName, IllegalFileNameLength>(
        [&] { return Remembered(sFolderCache, look, text, parent); });
}

folder sibling_folder_of(unsigned char const* name, unsigned long length, filesystem_object const& object) {
    return folder_of(name, length, parent_folder_of(object));
}

folder relative_folder_of(unsigned char const* path, unsigned long length, folder const& base,
                          unsigned long encoding, CFURLPathStyle style) {
    std::string_view const text = TextOf(path, length);
    auto const look = [&] { return AsFolder(ItemAtPath(text, {encoding, style}, base)); };
    return OrNoSuchObject<IllegalFileName, FailedToGetFileItem, MakeFileLocationFailed,
                          CFURLCopyLastPathComponentFailed>(
        [&] { return Remembered(sRelativeFolderCache, look, text, base); });
}

folder hfs_relative_folder_of(unsigned char const* path, unsigned long length, folder const& base) {
    return relative_folder_of(path, length, base, kHfsPath.encoding, kHfsPath.style);
}

folder posix_relative_folder_of(unsigned char const* path, unsigned long length, folder const& base) {
    return relative_folder_of(path, length, base, kPosixPath.encoding, kPosixPath.style);
}

folder folder_of_world(unsigned char const* path, unsigned long length, unsigned long encoding,
                       CFURLPathStyle style) {
    std::string_view const text = TextOf(path, length);
    auto const look = [&] { return AsFolder(ItemAtPath(text, {encoding, style})); };
    return OrNoSuchObject<CFURLCopyLastPathComponentFailed, CFURLCreateCopyDeletingLastPathComponentFailed,
                          CFURLCreateWithFileSystemPathFailed, FailedToGetFileItem, MakeFileLocationFailed>(
        [&] { return Remembered(sWorldFolderCache, look, text); });
}

folder hfs_folder_of_world(unsigned char const* path, unsigned long length) {
    return folder_of_world(path, length, kHfsPath.encoding, kHfsPath.style);
}

folder posix_folder_of_world(unsigned char const* path, unsigned long length) {
    return folder_of_world(path, length, kPosixPath.encoding, kPosixPath.style);
}

folder asFolder(filesystem_object const& object) { return AsFolder(object); }

void ClearFolderCaches(void*) {
    sFolderCache.Clear();
    sRelativeFolderCache.Clear();
    sWorldFolderCache.Clear();
}
