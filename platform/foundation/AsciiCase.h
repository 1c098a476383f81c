#pragma once

// The case of ASCII letters, whatever the locale. Pure.

#include <algorithm>
#include <string_view>

namespace Platform {

/// The small letter of a capital one; any other byte as it is.
constexpr char LowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
}

/// Whether two texts are the same but for the case of ASCII letters.
constexpr bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, LowerCase, LowerCase);
}

}  // namespace Platform
