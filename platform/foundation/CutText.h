#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace Platform {

/// Copies a text to a buffer of `size` bytes, cut where it does not fit, and a NUL behind it. Does nothing
/// where there is no buffer.
inline void CopyCut(std::string_view text, char* buffer, std::size_t size) {
    if (buffer == nullptr || size == 0) return;
    std::size_t const length = std::min(text.size(), size - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
}

}  // namespace Platform
