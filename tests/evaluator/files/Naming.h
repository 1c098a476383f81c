#pragma once

// Names and locations in short words.

#include <string>
#include <string_view>

#include "Evaluator/MacintoshPlatform.h"
#include "support/Owned.h"
#include "support/TemporaryFolder.h"

inline HFSUniStr255 Name(std::string_view bytes) {
    return MacintoshPlatform::ExactFileName({Bytes(bytes), bytes.size()}, kCFStringEncodingUTF8);
}

inline MacintoshPlatform::FileLocation At(std::string_view path) {
    return MacintoshPlatform::FileLocation(NewURL(path));
}

inline MacintoshPlatform::FileItem ItemAt(std::string_view path) {
    return MacintoshPlatform::FileItem(At(path));
}

/// The path of a location without a separator at its end.
inline std::string Path(MacintoshPlatform::FileLocation const& location) {
    std::string path = PathOf(location.url);
    if (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}
