#include "foundation/Url.h"

#include <cstring>
#include <functional>

#include "files/MountTable.h"
#include "foundation/PathStyles.h"
#include "foundation/String.h"
#include "foundation/TextCodec.h"

using Platform::Guarded;
using Platform::LinkRule;
using Platform::NewURL;
using Platform::Path;

__CFURL::__CFURL(Path ownPath, bool isDirectory, CFURLRef baseURL, LinkRule linkRule)
    : path(std::move(ownPath)), directory(isDirectory), rule(linkRule), base(baseURL) {
    if (base != nullptr) base->Retain();
}

__CFURL::~__CFURL() {
    if (base != nullptr) base->Release();
}

CFTypeID __CFURL::TypeID() const { return CFURLGetTypeID(); }

bool __CFURL::EqualTo(Platform::Object const& other) const {
    auto const& that = static_cast<__CFURL const&>(other);
    if (directory != that.directory || (base == nullptr) != (that.base == nullptr)) return false;
    if (!path.Is(that.path) && path.Text() != that.path.Text()) return false;
    return base == nullptr || base->EqualTo(*that.base);
}

CFHashCode __CFURL::Hash() const { return std::hash<std::string>()(path.Text()); }

Path __CFURL::ResolvedPath() const {
    return base == nullptr ? path : Path(Platform::JoinPaths(base->ResolvedPath().Text(), path.Text()));
}

CFURLRef Platform::NewURL(Path path, bool directory, CFURLRef base, LinkRule rule) {
    bool const isFolder = directory || path.IsRoot();
    bool const isAbsolute = base == nullptr || path.IsPlain() || path.Text().front() == '/';
    return new __CFURL(std::move(path), isFolder, isAbsolute ? nullptr : base, rule);
}

CFURLRef Platform::NewURL(std::string_view path, bool directory, CFURLRef base) {
    return NewURL(Path(path), directory || path.ends_with('/'), base);
}

namespace {

CFURLRef NewURLOfBytes(std::string_view path, bool directory, CFURLRef base) {
    if (path.empty() || path.find('\0') != std::string_view::npos) return nullptr;
    return NewURL(path, directory, base);
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
        auto const bytes = Platform::FileNameOfText(path->Text());
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
        std::string const path = url->path.Text();
        if (style == kCFURLPOSIXPathStyle) return Platform::NewFileNameString(path);
        return style == kCFURLHFSPathStyle ? NewHfsPath(path) : nullptr;
    });
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex maxBufferLength) {
    return Guarded<Boolean>(false, [&]() -> Boolean {
        std::string const path = (resolveAgainstBase != 0 ? url->ResolvedPath() : url->path).Text();
        if (maxBufferLength < 0 || path.size() >= static_cast<std::size_t>(maxBufferLength)) return false;
        std::memcpy(buffer, path.data(), path.size());
        buffer[path.size()] = 0;
        return true;
    });
}

Boolean CFURLHasDirectoryPath(CFURLRef url) { return url->directory || Platform::IsDots(url->path.Name()); }

CFStringRef CFURLCopyLastPathComponent(CFURLRef url) {
    return Guarded<CFStringRef>(nullptr, [&] { return Platform::NewFileNameString(url->path.Name()); });
}

CFURLRef CFURLCreateCopyDeletingLastPathComponent(CFAllocatorRef, CFURLRef url) {
    return Guarded<CFURLRef>(nullptr, [&] {
        bool const isPlain = url->path.IsPlain() && !url->path.IsRoot();
        Path folder = isPlain ? url->path.Folder() : Path(Platform::FolderOfPath(url->path.Text()));
        return NewURL(std::move(folder), true, url->base);
    });
}

CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef, CFURLRef url, CFStringRef component,
                                               Boolean isDirectory) {
    return Guarded<CFURLRef>(nullptr, [&]() -> CFURLRef {
        auto const bytes = Platform::FileNameOfText(component->Text());
        if (!bytes || bytes->empty()) return nullptr;
        return NewURL(url->path.Below(*bytes), isDirectory != 0 || bytes->ends_with('/'), url->base);
    });
}
