#pragma once

// Pascal strings: a byte with the length, and so many bytes of text.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace Platform {

/// The longest beginning of a UTF-8 text that is whole characters and has at most so many bytes.
inline std::string_view CutToCharacters(std::string_view text, std::size_t most) {
    std::size_t length = std::min(text.size(), most);
    if (length < text.size()) {
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
    }
    return text.substr(0, length);
}

/// Makes a Pascal string of as many whole characters of a UTF-8 text as there is room for.
template <std::size_t room>
void CopyPascal(std::string_view text, unsigned char (&to)[room]) {
    std::string_view const fitting = CutToCharacters(text, room - 1);
    to[0] = static_cast<unsigned char>(fitting.size());
    std::memcpy(to + 1, fitting.data(), fitting.size());
}

}  // namespace Platform
