#pragma once

// The keys and other short texts of a property list, each as one string object however often it occurs.

#include <cstddef>
#include <string_view>
#include <vector>

#include "foundation/String.h"

namespace Platform {

/// Strings by their text in UTF-8. Only ASCII texts are shared.
class StringTable {
  public:
    StringTable() = default;
    StringTable(StringTable const&) = delete;
    StringTable& operator=(StringTable const&) = delete;
    ~StringTable();

    /// A new reference to the string of a text; null when it is no UTF-8.
    CFStringRef Get(std::string_view utf8);

  private:
    CFStringRef& PlaceOf(std::string_view ascii);
    void Grow();

    std::vector<CFStringRef> places;  // null where one is free; a power of two of them
    std::size_t count = 0;
};

}  // namespace Platform
