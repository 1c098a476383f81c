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

/// The attributes of an item, by one listing. Attributes that cannot be read count as absent.
class ExtendedAttributes {
  public:
    /// Of the item at a place, links followed; none until they are listed. The place must outlive this.
    explicit ExtendedAttributes(Place item) : place(item) {}
    ExtendedAttributes(ExtendedAttributes const&) = delete;
    ExtendedAttributes& operator=(ExtendedAttributes const&) = delete;

    /// Whether the file at a place may have attributes under any of the names that Mac-aware programs and
    /// file systems use: not when its file system refuses them all.
    static bool MayExist(Place file);

    /// Asks for their names.
    void List();
    bool IsEmpty() const { return names.empty(); }
    bool Has(std::string_view name) const;
    /// The value of an attribute when it is at most `most` bytes; else nothing.
    std::vector<unsigned char> Value(std::string_view name, std::size_t most) const;
    /// Bytes of an attribute's value.
    std::optional<std::uint64_t> Size(std::string_view name) const;

  private:
    ssize_t Ask(char* list, std::size_t size) const;

    Place const place;
    std::array<char, 1024> few;  // names mostly fit here
    std::string many;
    std::string_view names;  // each with a NUL behind it
};

}  // namespace Platform
