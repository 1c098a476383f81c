#pragma once

// Versions of tests: made of numbers and texts, and shown with all that they hold.

#include <cstdio>
#include <string>
#include <string_view>

#include "versions/Version.h"

/// The bytes of a text, which must outlive the span.
inline ConstData Bytes(std::string_view text) {
    return {reinterpret_cast<unsigned char const*>(text.data()), text.size()};
}

/// A string whose bytes lie in `text`.
inline inspector_string AsString(std::string_view text) {
    return {Bytes(text).begin(), static_cast<std::uint32_t>(text.size())};
}

inline MacVersion Numeric(unsigned int major, unsigned int minor, unsigned int bugrev = 0,
                          unsigned int stage = kNoStage, unsigned int nonrel = 0) {
    MacVersion version;
    version.major = static_cast<std::uint16_t>(major);
    version.minor = static_cast<std::uint16_t>(minor);
    version.bugrev = static_cast<std::uint16_t>(bugrev);
    version.stage = static_cast<std::uint8_t>(stage);
    version.nonrel = static_cast<std::uint16_t>(nonrel);
    return version;
}

inline MacVersion Textual(std::string_view text) {
    MacVersion version;
    version.text = text;
    return version;
}

inline MacVersion Parsed(std::string_view text) { return TextToVersion(Bytes(text)); }

/// A text for messages: printable, and cut where it is long.
inline std::string Shown(std::string_view text) {
    std::string shown = "\"";
    for (char c : text.substr(0, 100)) {
        auto const byte = static_cast<unsigned char>(c);
        char code[5];
        std::snprintf(code, sizeof code, byte >= ' ' && byte < 0x7F ? "%c" : "\\x%02X", byte);
        shown += code;
    }
    return shown + (text.size() > 100 ? "\"…, " + std::to_string(text.size()) + " bytes" : "\"");
}

/// All fields: "1 2 3 0x60 4", with the text behind them when there is one.
inline std::string Fields(MacVersion const& version) {
    char numbers[40];
    std::snprintf(numbers, sizeof numbers, "%u %u %u 0x%02X %u", version.major, version.minor, version.bugrev,
                  version.stage, version.nonrel);
    return version.text.empty() ? numbers : std::string(numbers) + " " + Shown(version.text);
}

/// Whether all fields are the same, which says more than being equal as versions.
inline bool HaveSameFields(MacVersion const& left, MacVersion const& right) {
    return left.major == right.major && left.minor == right.minor && left.bugrev == right.bugrev &&
           left.stage == right.stage && left.nonrel == right.nonrel && left.text == right.text;
}

inline int Sign(int number) { return (number > 0) - (number < 0); }
