#pragma once

// The string object. Internal to the platform.

#include <CoreFoundation/CFString.h>

#include <string>
#include <string_view>

#include "foundation/Object.h"

namespace Platform {

/// A new string of ASCII characters.
CFStringRef NewAsciiString(std::string_view ascii);
/// A new string of UTF-16 units.
CFStringRef NewString(std::u16string_view text);
/// A new string of valid UTF-8; null for bytes that are not.
CFStringRef NewUtf8String(std::string_view utf8);
/// A new string of a file's name or path.
CFStringRef NewFileNameString(std::string_view bytes);

/// Whether all bytes are ASCII.
bool IsAscii(std::string_view bytes) noexcept;

}  // namespace Platform

/// A text whose characters are all ASCII is kept as bytes, any other as UTF-16 units: behind the object, in
/// the same piece of memory.
struct __CFString final : Platform::Object {
    CFTypeID TypeID() const override;
    bool EqualTo(Platform::Object const& other) const override;
    CFHashCode Hash() const override;

    bool IsAscii() const noexcept { return !hasUnits; }
    /// UTF-16 units of the text.
    std::size_t Length() const noexcept { return length; }
    /// The text of one that is ASCII.
    std::string_view Ascii() const noexcept { return {ElementsBehind<char>(this), length}; }
    /// The text of one that is not.
    std::u16string_view Units() const noexcept { return {ElementsBehind<char16_t>(this), length}; }
    /// The bytes that the text is kept as: equal texts have equal ones, others may have them too.
    std::string_view Bytes() const noexcept {
        return {ElementsBehind<char>(this), length * (hasUnits ? sizeof(char16_t) : 1)};
    }
    /// The text of any.
    std::u16string Text() const;

  private:
    friend CFStringRef Platform::NewAsciiString(std::string_view ascii);
    friend CFStringRef Platform::NewString(std::u16string_view text);
    __CFString(std::size_t units, bool isAscii) noexcept : length(units), hasUnits(!isAscii) {}

    std::size_t const length : 63;
    std::size_t const hasUnits : 1;
};
