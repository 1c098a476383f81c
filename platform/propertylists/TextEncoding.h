#pragma once

// Which encoding the text of a property list is in. Pure.

#include <CoreFoundation/CFBase.h>

#include <span>
#include <string>
#include <string_view>

namespace Platform {

/// A text of UTF-8, or of an encoding that only its own declaration can tell.
class ListText {
  public:
    /// Told by a byte-order mark (UTF-8, UTF-16, UTF-32), which does not belong to the text, or by a zero
    /// among the first two bytes (UTF-16). Throws PropertyListError where the bytes are not valid in the
    /// encoding that they tell of. The bytes must outlive it.
    explicit ListText(std::span<UInt8 const> bytes);
    ListText(ListText const&) = delete;
    ListText& operator=(ListText const&) = delete;

    std::string_view Text() const { return text; }
    bool IsKnownToBeUtf8() const { return isKnown; }

  private:
    std::string converted;
    std::string_view text;
    bool isKnown = true;
};

}  // namespace Platform
