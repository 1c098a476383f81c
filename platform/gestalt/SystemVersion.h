#pragma once

// Versions as words of Gestalt. Pure.

#include <Carbon/MacTypes.h>

#include <array>
#include <optional>
#include <string_view>

namespace Platform {

/// The parts of a version: major, minor, bug fix. Those that its text does not have are 0.
using VersionParts = std::array<UInt32, 3>;

/// The parts of a text of decimal numbers with '.' between them, such as "22.04"; those behind the third do
/// not count, and one that 32 bits do not hold is the largest. Empty for any other text.
std::optional<VersionParts> VersionPartsIn(std::string_view text);
/// The word 0xMMmb of a version. A major version above 99 is 99, the others are 9 at most.
UInt32 VersionWord(VersionParts const& version);

}  // namespace Platform
