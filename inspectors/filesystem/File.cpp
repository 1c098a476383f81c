#include "filesystem/File.h"

#include "filesystem/LookUps.h"
#include "filesystem/LookupCache.h"
#include "frame/Types.h"

using namespace Inspectors;
using MacintoshPlatform::FailedToGetFileItem;
using MacintoshPlatform::MakeFileLocationFailed;

namespace {

LookupCache<file, 8, folder> sFileCache;
LookupCache<file, 8, folder> sRelativeFileCache;
LookupCache<file, 8> sWorldFileCache;

}  // namespace

// Look-ups

file file_of(unsigned char const* name, unsigned long length, folder const& parent) {
    std::string_view const text = TextOf(name, length);
    auto const look = [&] { return AsFile(ItemNamed(text, parent)); };
    return OrNoSuchObject<FileNotFoundError, MakeFileLocationFailed, FailedToGetFileItem, IllegalFileName,
                          IllegalFileNameLength>([&] { return Remembered(sFileCache, look, text, parent); });
}

file sibling_file_of(unsigned char const* name, unsigned long length, filesystem_object const& object) {
    return file_of(name, length, parent_folder_of(object));
}

file relative_file_of(unsigned char const* path, unsigned long length, folder const& base,
                      unsigned long encoding, CFURLPathStyle style) {
    std::string_view const text = TextOf(path, length);
    auto const look = [&] { return AsFile(ItemAtPath(text, {encoding, style}, base)); };
    return OrNoSuchObject<IllegalFileName, FailedToGetFileItem, MakeFileLocationFailed,
                          CFURLCopyLastPathComponentFailed>(
        [&] { return Remembered(sRelativeFileCache, look, text, base); });
}

file hfs_relative_file_of(unsigned char const* path, unsigned long length, folder const& base) {
    return relative_file_of(path, length, base, kHfsPath.encoding, kHfsPath.style);
}

file posix_relative_file_of(unsigned char const* path, unsigned long length, folder const& base) {
    return relative_file_of(path, length, base, kPosixPath.encoding, kPosixPath.style);
}

file file_of_world(unsigned char const* path, unsigned long length, unsigned long encoding,
                   CFURLPathStyle style) {
    std::string_view const text = TextOf(path, length);
    auto const look = [&] { return AsFile(ItemAtPath(text, {encoding, style})); };
    return OrNoSuchObject<CFURLCopyLastPathComponentFailed, CFURLCreateCopyDeletingLastPathComponentFailed,
                          CFURLCreateWithFileSystemPathFailed, FailedToGetFileItem, MakeFileLocationFailed>(
        [&] { return Remembered(sWorldFileCache, look, text); });
}

file hfs_file_of_world(unsigned char const* path, unsigned long length) {
    return file_of_world(path, length, kHfsPath.encoding, kHfsPath.style);
}

file posix_file_of_world(unsigned char const* path, unsigned long length) {
    return file_of_world(path, length, kPosixPath.encoding, kPosixPath.style);
}

void ClearFileCaches(void*) {
    sFileCache.Clear();
    sRelativeFileCache.Clear();
    sWorldFileCache.Clear();
}

// A file by itself

file asFile(filesystem_object const& object) { return AsFile(object); }

file_type type_of(file const& object) { return {object.Type()}; }
file_signature creator_of(file const& object) { return {object.CreatorType()}; }

Fingerprinter& operator<<(Fingerprinter& print, file const& object) {
    FSCatalogInfo const& catalog = object.Info().catalog;
    FSSpec const fsSpec = MakeFSSpec(object.url);
    HFSUniStr255 const name = object.Name();
    FingerprintBytewise(print, FSVolumeRefNum{fsSpec.vRefNum});
    FingerprintBytewise(print, SInt32{fsSpec.parID});
    Fingerprint_Byte_Range(print, &name, name.unicode + name.length);
    FingerprintBytewise(print, UInt64{catalog.dataLogicalSize});
    FingerprintBytewise(print, UInt64{catalog.rsrcLogicalSize});
    return print << creation_time_of(object) << modification_time_of(object);
}
