#include "gestalt/SystemVersion.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "foundation/Numbers.h"

namespace Platform {

namespace {

// Takes the part at the front of a text; empty where there is none.
std::optional<UInt32> TakePart(std::string_view& text) {
    UInt32 part = 0;
    std::errc const error = TakeNumber(text, part);
    if (error == std::errc::result_out_of_range) return std::numeric_limits<UInt32>::max();
    return error == std::errc() ? std::optional(part) : std::nullopt;
}

}  // namespace

std::optional<VersionParts> VersionPartsIn(std::string_view text) {
    VersionParts parts{};
    for (std::size_t index = 0;; ++index) {
        auto const part = TakePart(text);
        if (!part) return std::nullopt;
        if (index < parts.size()) parts[index] = *part;
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
