#pragma once

// The Mac Roman character set. Pure tables; every byte is a character, and no two bytes are the same one.

#include <optional>

namespace Platform {

char16_t FromMacRoman(unsigned char byte);
/// The byte of a character; empty when it has none. The ohm sign has that of the capital omega.
std::optional<unsigned char> ToMacRoman(char16_t unit);
/// The byte of a base character and a mark that together are one; empty when no such character is there.
std::optional<unsigned char> ToMacRoman(char16_t base, char16_t mark);
/// Whether a unit belongs to the character before it.
bool IsCombiningMark(char16_t unit);

}  // namespace Platform
