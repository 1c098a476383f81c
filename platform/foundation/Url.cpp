#include "foundation/Url.h"

#include <cstring>
#include <functional>

#include "files/MountTable.h"
#include "foundation/PathStyles.h"
#include "foundation/String.h"
#include "foundation/TextCodec.h"

using Platform::Guarded;
using Platform::NewURL;

__CFURL::__CFURL(std::string ownPath, CFURLRef baseURL) : path(std::move(ownPath)), base(baseURL) {
    if (base != nullptr) base->Retain();
}

__CFURL::~__CFURL() {
    if (base != nullptr) base->Release();
}

CFTypeID __CFURL::TypeID() const { return CFURLGetTypeID(); }

bool __CFURL::EqualTo(Platform::Object const& other) const {
    auto const& that = static_cast<__CFURL const&>(other);
    if (path != that.path || (base == nullptr) != (that.base == nullptr)) return false;
    return base == nullptr || base->EqualTo(*that.base);
}

CFHashCode __CFURL::Hash() const { return std::hash<std::string>()(path); }

std::string __CFURL::ResolvedPath() const {
    return base == nullptr ? path : Platform::JoinPaths(base->ResolvedPath(), path);
}

CFURLRef Platform::NewURL(std::string path, bool directory, CFURLRef base) {
    if (directory && path.back() != '/') path += '/';
    return new __CFURL(std::move(path), path.front() == '/' ? nullptr : base);
}

namespace {

CFURLRef NewURLOfBytes(std::string_view path, bool directory, CFURLRef base) {
    if (path.empty() || path.find('\0') != std::string_view::npos) return nullptr;
    return NewURL(std::string(path), directory, base);
}

CFURLRef NewURLOfHfsPath(std::string const& path, bool directory, CFURLRef base) {
    if (path.empty()) return nullptr;
    auto const found = Platform::PosixPathOfHfs(path, Platform::MountPointOfVolume);
    return found ? NewURL(found->path, directory || found->folder, base) : nullptr;
}

std::string_view View(UInt8 const* bytes, CFIndex length) {
    return {reinterpret_cast<char const*>(bytes), length < 0 ? 0 : static_cast<std::size_t>(length)};
}

CFStringRef NewHfsPath(std::string_view path) {
    if (path.front() != '/') return Platform::NewFileNameString(Platform::HfsPathOf(path, nullptr));
    auto const place = Platform::VolumeOfPath(path);
    if (!place) return nullptr;
    return Platform::NewFileNameString(Platform::HfsPathOf(place->rest, &place->volume));
}

}  // namespace

CFTypeID CFURLGetTypeID() {
    static CFTypeID const id = Platform::NewTypeID();
    return id;
}

CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef path, CFURLPathStyle style,
                                       Boolean isDirectory) {
    return CFURLCreateWithFileSystemPathRelativeToBase(allocator, path, style, isDirectory, nullptr);
}

CFURLRef CFURLCreateWithFileSystemPathRelativeToBase(CFAllocatorRef, CFStringRef path, CFURLPathStyle style,
                                                     Boolean isDirectory, CFURLRef base) {
    return Guarded<CFURLRef>(nullptr, [&]() -> CFURLRef {
        auto const bytes = Platform::FileNameOfText(path->text);
        if (!bytes) return nullptr;
        if (style == kCFURLPOSIXPathStyle) return NewURLOfBytes(*bytes, isDirectory != 0, base);
        return style == kCFURLHFSPathStyle ? NewURLOfHfsPath(*bytes, isDirectory != 0, base) : nullptr;
    });
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, UInt8 const* buffer,
                                                 CFIndex length, Boolean isDirectory) {
    return CFURLCreateFromFileSystemRepresentationRelativeToBase(allocator, buffer, length, isDirectory,
                                                                 nullptr);
}

CFURLRef CFURLCreateFromFileSystemRepresentationRelativeToBase(CFAllocatorRef, UInt8 const* buffer,
                                                               CFIndex length, Boolean isDirectory,
                                                               CFURLRef base) {
    return Guarded<CFURLRef>(nullptr,
                             [&] { return NewURLOfBytes(View(buffer, length), isDirectory != 0, base); });
}

CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style) {
    return Guarded<CFStringRef>(nullptr, [&]() -> CFStringRef {
        std::string_view const path = Platform::WithoutEndSeparators(url->path);
        if (style == kCFURLPOSIXPathStyle) return Platform::NewFileNameString(path);
        return style == kCFURLHFSPathStyle ? NewHfsPath(path) : nullptr;
    });
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex maxBufferLength) {
    return Guarded<Boolean>(false, [&]() -> Boolean {
        std::string const whole = resolveAgainstBase != 0 ? url->ResolvedPath() : url->path;
        std::string_view const path = Platform::WithoutEndSeparators(whole);
        if (maxBufferLength < 0 || path.size() >= static_cast<std::size_t>(maxBufferLength)) return false;
        std::memcpy(buffer, path.data(), path.size());
        buffer[path.size()] = 0;
        return true;
    });
}

Boolean CFURLHasDirectoryPath(CFURLRef url) {
    return url->path.back() == '/' || Platform::IsDots(Platform::LastComponent(url->path));
}

CFStringRef CFURLCopyLastPathComponent(CFURLRef url) {
    return Guarded<CFStringRef>(
        nullptr, [&] { return Platform::NewFileNameString(Platform::LastComponent(url->path)); });
}

CFURLRef CFURLCreateCopyDeletingLastPathComponent(CFAllocatorRef, CFURLRef url) {
    return Guarded<CFURLRef>(nullptr,
                             [&] { return NewURL(Platform::FolderOfPath(url->path), true, url->base); });
}

CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef, CFURLRef url, CFStringRef component,
                                               Boolean isDirectory) {
    return Guarded<CFURLRef>(nullptr, [&]() -> CFURLRef {
        auto const bytes = Platform::FileNameOfText(component->text);
        if (!bytes || bytes->empty()) return nullptr;
        return NewURL(Platform::JoinPaths(url->path, *bytes), isDirectory != 0, url->base);
    });
}
