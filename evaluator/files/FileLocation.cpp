#include <Carbon/MacErrors.h>
#include <Platform/Items.h>

#include <cstring>
#include <memory>
#include <string_view>

#include "Evaluator/MacintoshPlatform.h"

namespace MacintoshPlatform {

namespace {

// The path's bytes, without a separator at the end.
std::string PathOf(CFURLRef url) {
    AutoCFString const path(CFURLCopyFileSystemPath(url, kCFURLPOSIXPathStyle));
    if (path == nullptr) throw MemoryFullError();
    std::string bytes(static_cast<std::size_t>(CFStringGetMaximumSizeOfFileSystemRepresentation(path)), '\0');
    CFStringGetFileSystemRepresentation(path, bytes.data(), static_cast<CFIndex>(bytes.size()));
    bytes.resize(std::strlen(bytes.c_str()));
    return bytes;
}

FileInfo FinderInfoOf(FileLocation const& location) {
    FSRef reference;
    FSCatalogInfo catalog;
    constexpr FSCatalogInfoBitmap wanted = kFSCatInfoNodeFlags | kFSCatInfoFinderInfo;
    OSErr const error = PlatformGetItem(location.url, wanted, &reference, &catalog);
    if (error != noErr) throw FailedToGetFileItem(error);
    FileInfo info{};
    if ((catalog.nodeFlags & kFSNodeIsDirectoryMask) == 0)
        std::memcpy(&info, catalog.finderInfo, sizeof info);
    return info;
}

UInt8 const* BytesOf(std::string_view text) { return reinterpret_cast<UInt8 const*>(text.data()); }

// The URL of a path in HFS style; null when its text or its volume is not known. With a base the path starts
// there.
CFURLRef NewHfsURL(std::string_view path, unsigned long encoding, CFURLRef base) {
    std::string const whole = (base != nullptr && !path.starts_with(':') ? ":" : "") + std::string(path);
    if (path.empty() || (base == nullptr && path.starts_with(':'))) return nullptr;
    AutoCFString const text(CFStringCreateWithBytes(kCFAllocatorDefault, BytesOf(whole),
                                                    static_cast<CFIndex>(whole.size()),
                                                    static_cast<CFStringEncoding>(encoding), false));
    if (text == nullptr) return nullptr;
    return CFURLCreateWithFileSystemPathRelativeToBase(kCFAllocatorDefault, text, kCFURLHFSPathStyle, false,
                                                       base);
}

FileLocation Resolve(std::string_view path, unsigned long encoding, CFURLPathStyle style, CFURLRef base) {
    AutoCFURL const url(style == kCFURLHFSPathStyle ? NewHfsURL(path, encoding, base)
                                                    : CFURLCreateFromFileSystemRepresentationRelativeToBase(
                                                          kCFAllocatorDefault, BytesOf(path),
                                                          static_cast<CFIndex>(path.size()), false, base));
    if (url == nullptr) throw MakeFileLocationFailed();
    AutoCFURL resolved(PlatformCreateResolvedURL(url, nullptr));
    if (resolved == nullptr) throw MakeFileLocationFailed();
    return FileLocation(std::move(resolved));
}

}  // namespace

void FileLocation::Set(CFURLRef parent, HFSUniStr255 const& name) {
    if (parent == nullptr) throw DirectoryNotFoundError();
    AutoCFString const text(CFStringCreateWithCharacters(kCFAllocatorDefault, name.unicode, name.length));
    if (text == nullptr) throw MemoryFullError();
    AutoCFURL location(CFURLCreateCopyAppendingPathComponent(kCFAllocatorDefault, parent, text, false));
    if (location == nullptr) throw FileNotFoundError();
    url = std::move(location);
}

AutoCFURL FileLocation::ParentURL() const {
    HFSUniStr255 const name = Name();
    bool const isRoot = name.length == 1 && name.unicode[0] == u'/';
    if (isRoot) throw FailedToGetFileItem(fnfErr);
    AutoCFURL parent(CFURLCreateCopyDeletingLastPathComponent(kCFAllocatorDefault, url));
    if (parent == nullptr) throw CFURLCreateCopyDeletingLastPathComponentFailed();
    return parent;
}

HFSUniStr255 FileLocation::Name() const {
    AutoCFString const text(CFURLCopyLastPathComponent(url));
    if (text == nullptr) throw CFURLCopyLastPathComponentFailed();
    HFSUniStr255 name{};
    CFIndex const length = CFStringGetLength(text);
    if (length > static_cast<CFIndex>(std::size(name.unicode))) throw CFURLCopyLastPathComponentFailed();
    CFStringGetCharacters(text, CFRangeMake(0, length), name.unicode);
    name.length = static_cast<UInt16>(length);
    return name;
}

OSType FileLocation::Type() const { return FinderInfoOf(*this).fileType; }
OSType FileLocation::CreatorType() const { return FinderInfoOf(*this).fileCreator; }

bool FileLocation::Exists() const {
    FSRef reference;
    return url != nullptr && CFURLGetFSRef(url, &reference);
}

bool operator==(FileLocation const& left, FileLocation const& right) {
    if (left.url == nullptr || right.url == nullptr) return left.url == right.url;
    if (PathOf(left.url) == PathOf(right.url)) return true;
    FSRef first;
    FSRef second;
    return CFURLGetFSRef(left.url, &first) && CFURLGetFSRef(right.url, &second) &&
           FSCompareFSRefs(&first, &second) == noErr;
}

FileLocation MakeFileLocation(char const* path, unsigned long length, unsigned long encoding,
                              CFURLPathStyle style) {
    return Resolve({path, length}, encoding, style, nullptr);
}

FileLocation MakeRelativeFileLocation(FileLocation const& base, char const* path, unsigned long encoding,
                                      CFURLPathStyle style) {
    if (base.url == nullptr) throw MakeFileLocationFailed();
    return Resolve(path, encoding, style, base.url);
}

FileLocation MakeFileLocation(FSSpec const& fsSpec) {
    CFURLRef const url = PlatformCreateSpecURL(&fsSpec, nullptr);
    if (url == nullptr) throw MakeFileLocationFailed();
    return FileLocation(url);
}

FileLocation MakeFileLocation(OSType type, SInt16 domain, bool create) {
    FSRef reference;
    OSErr const error = FSFindFolder(domain, type, create, &reference);
    if (error == fnfErr) throw CannotCreateSpecialFolder();
    if (error != noErr) ThrowRealOSError(error);
    return FileLocation(MakeURL(reference));
}

}  // namespace MacintoshPlatform
