#pragma once

// Internal. The little that the host needs of UTF-8.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Evaluator {

/// Bytes of the well-formed UTF-8 character at the front of `text`, 1 to 4; 0 when there is none.
constexpr std::size_t Utf8SequenceLength(std::string_view text) {
    if (text.empty()) return 0;
    auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char lead = at(0);
    if (lead < 0x80) return 1;
    std::size_t length = lead >= 0xC2 && lead < 0xE0   ? 2
                         : (lead & 0xF0) == 0xE0       ? 3
                         : lead >= 0xF0 && lead < 0xF5 ? 4
                                                       : 0;
    if (length == 0 || text.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((at(i) & 0xC0) != 0x80) return 0;
    // No overlong forms, no surrogates, nothing beyond U+10FFFF.
    if ((lead == 0xE0 && at(1) < 0xA0) || (lead == 0xED && at(1) > 0x9F) || (lead == 0xF0 && at(1) < 0x90) ||
        (lead == 0xF4 && at(1) > 0x8F))
        return 0;
    return length;
}

/// Adds a character (not a surrogate, at most U+10FFFF) in UTF-8.
inline void AppendUtf8(std::string& text, std::uint32_t character) {
    auto add = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        add(character);
    } else if (character < 0x800) {
        add(0xC0 | character >> 6);
        add(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        add(0xE0 | character >> 12);
        add(0x80 | (character >> 6 & 0x3F));
        add(0x80 | (character & 0x3F));
    } else {
        add(0xF0 | character >> 18);
        add(0x80 | (character >> 12 & 0x3F));
        add(0x80 | (character >> 6 & 0x3F));
        add(0x80 | (character & 0x3F));
    }
}

}  // namespace Evaluator
