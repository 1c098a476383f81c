#pragma once

// The extended attributes of one item.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/Locations.h"

namespace Platform {

/// The attributes of an item, by one listing when it is made. Attributes that cannot be read count as absent.
class ExtendedAttributes {
  public:
    /// Lists those of the item at a place, links followed. The place must outlive this.
    explicit ExtendedAttributes(Place item);
    ExtendedAttributes(ExtendedAttributes const&) = delete;
    ExtendedAttributes& operator=(ExtendedAttributes const&) = delete;

    /// False when the item's file system has no attributes at all.
    bool AreSupported() const { return supported; }
    bool IsEmpty() const { return names.empty(); }
    bool Has(std::string_view name) const;
    /// The value of an attribute when it is at most `most` bytes; else nothing.
    std::vector<unsigned char> Value(std::string_view name, std::size_t most) const;
    /// Bytes of an attribute's value.
    std::optional<std::uint64_t> Size(std::string_view name) const;

  private:
    ssize_t List(char* list, std::size_t size) const;

    Place const place;
    std::array<char, 1024> few;  // names mostly fit here
    std::string many;
    std::string_view names;  // each with a NUL behind it
    bool supported = true;
};

}  // namespace Platform
