#pragma once

// The steps that all look-ups share.

#include <cstring>
#include <string>
#include <string_view>

#include "Evaluator/Exceptions.h"
#include "Evaluator/MacintoshPlatform.h"
#include "filesystem/FileSystemObject.h"

namespace Inspectors {

/// Where a path starts and how it is written.
struct PathForm {
    unsigned long encoding;
    CFURLPathStyle style;
};
inline constexpr PathForm kHfsPath{kCFStringEncodingMacHFS, kCFURLHFSPathStyle};
inline constexpr PathForm kPosixPath{0, kCFURLPOSIXPathStyle};

inline std::string_view TextOf(unsigned char const* bytes, unsigned long length) {
    return {reinterpret_cast<char const*>(bytes), length};
}

/// The item at a location. Throws FailedToGetFileItem when there is none.
inline MacintoshPlatform::FileItem ItemAt(MacintoshPlatform::FileLocation const& location) {
    MacintoshPlatform::FileItem item(location);
    item.Info();
    return item;
}

/// The item of that name in a folder. Throws what ExactFileName and FileLocation::Set do, and
/// FailedToGetFileItem.
inline MacintoshPlatform::FileItem ItemNamed(std::string_view name, folder const& parent) {
    auto const* const bytes = reinterpret_cast<unsigned char const*>(name.data());
    MacintoshPlatform::FileLocation location;
    location.Set(parent.url, MacintoshPlatform::ExactFileName({bytes, name.size()}, kCFStringEncodingUTF8));
    return ItemAt(location);
}

/// The item at a path below a folder, and of the world. A NUL byte ends the path. Throw what the platform's
/// look-ups do, and FailedToGetFileItem.
inline MacintoshPlatform::FileItem ItemAtPath(std::string_view path, PathForm form, folder const& base) {
    return ItemAt(MacintoshPlatform::MakeRelativeFileLocation(base, std::string(path).c_str(), form.encoding,
                                                              form.style));
}
inline MacintoshPlatform::FileItem ItemAtPath(std::string_view path, PathForm form) {
    std::string const text(path);
    return ItemAt(MacintoshPlatform::MakeFileLocation(text.c_str(), std::strlen(text.c_str()), form.encoding,
                                                      form.style));
}

/// The item as a file or as a folder; NoSuchObject when it is the other. FailedToGetFileItem where it has no
/// information.
inline file AsFile(MacintoshPlatform::FileItem const& item) {
    if (item.Info().IsFolder()) throw NoSuchObject();
    return file(item);
}
inline folder AsFolder(MacintoshPlatform::FileItem const& item) {
    if (!item.Info().IsFolder()) throw NoSuchObject();
    return folder(item);
}

/// The result of `look`; NoSuchObject where it throws one of the failures.
template <class Failure, class... Failures, class Look>
auto OrNoSuchObject(Look const& look) {
    try {
        if constexpr (sizeof...(Failures) == 0) {
            return look();
        } else {
            return OrNoSuchObject<Failures...>(look);
        }
    } catch (Failure const&) {
        throw NoSuchObject();
    }
}

/// What the cache has for the key, else the result of `look`, which the cache then has too. A look-up that
/// throws leaves the cache as it was.
template <class Cache, class Look, class... Base>
auto Remembered(Cache& cache, Look const& look, std::string_view text, Base const&... base) {
    if (auto const* const known = cache.Find(text, base...)) return *known;
    auto const found = look();
    cache.Store(found, text, base...);
    return found;
}

}  // namespace Inspectors
