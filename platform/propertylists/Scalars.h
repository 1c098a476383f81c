#pragma once

// The texts of numbers, dates and data in property lists. Pure.

#include <CoreFoundation/CFDate.h>

#include <optional>
#include <string_view>
#include <vector>

#include "foundation/Number.h"

namespace Platform {

/// Whether a character is one of the white space of property lists: a space, a tab, the end of a line.
inline bool IsWhite(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

/// A whole number from -2^63 to 2^64 - 1: white space, a sign, then decimal digits or 0x and hexadecimal
/// ones; nothing behind them.
std::optional<WideInteger> ParseInteger(std::string_view text);
/// A real number: white space, a sign, then a decimal number, "inf", "infinity" or "nan" in any case; nothing
/// behind it. One that is too large is infinite, one that is too small 0.
std::optional<double> ParseReal(std::string_view text);
/// A date as XML lists write it: YYYY-MM-DDThh:mm:ssZ, universal time. A day that the calendar does not have
/// is none, nor is an hour from 24, a minute from 60 or a second from 61 on.
std::optional<CFAbsoluteTime> ParseDate(std::string_view text);
/// A date as GNUstep writes it in old-style text: YYYY-MM-DD hh:mm:ss +hhmm, the time of the zone that is so
/// far ahead of universal time.
std::optional<CFAbsoluteTime> ParseDateOfZone(std::string_view text);
/// The bytes of base64: '=' fills the last group of four, other ASCII characters outside the alphabet do not
/// count. Empty for a character that is not ASCII.
std::optional<std::vector<UInt8>> DecodeBase64(std::string_view text);

}  // namespace Platform
