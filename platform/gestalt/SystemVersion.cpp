#include "gestalt/SystemVersion.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>

namespace Platform {

namespace {

// Takes the number at the front of a text; empty where there is none.
std::optional<UInt32> TakeNumber(std::string_view& text) {
    UInt32 number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::invalid_argument) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc::result_out_of_range ? std::numeric_limits<UInt32>::max() : number;
}

}  // namespace

std::optional<VersionParts> VersionPartsIn(std::string_view text) {
    VersionParts parts{};
    for (std::size_t index = 0;; ++index) {
        auto const number = TakeNumber(text);
        if (!number) return std::nullopt;
        if (index < parts.size()) parts[index] = *number;
        if (text.empty()) return parts;
        if (text.front() != '.') return std::nullopt;
        text.remove_prefix(1);
    }
}

UInt32 VersionWord(VersionParts const& version) {
    UInt32 const major = std::min(version[0], 99u);
    return (major / 10) << 12 | (major % 10) << 8 | std::min(version[1], 9u) << 4 | std::min(version[2], 9u);
}

}  // namespace Platform
