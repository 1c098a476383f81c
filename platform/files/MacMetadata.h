#pragma once

// Finder information, resource forks and other facts of Macintosh files, from the places where Mac-aware
// programs leave them on Linux: extended attributes, and AppleDouble files beside the file (`._name` and
// `.AppleDouble/name`; for a folder itself also `.AppleDouble/.Parent` within it).

#include <cstdint>
#include <optional>
#include <string>

#include "files/AppleDouble.h"

namespace Platform {

/// Where the bytes of a resource fork are.
struct ResourceForkPlace {
    enum class Store {
        None,       // there is no resource fork
        Attribute,  // the value of the extended attribute `name` of the item
        File,       // a part of the file `name`
    };
    Store store = Store::None;
    std::string name;
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/// What all stores together say of an item. Each fact is from the first store that has it.
struct MacMetadata {
    std::optional<FinderBytes> finderInfo;
    ResourceForkPlace resourceFork;
    std::optional<std::int32_t> created;   // seconds since 1 January 2000, universal time
    std::optional<std::int32_t> backedUp;  // the same
    bool locked = false;
};

/// Whether the companion files of an item are worth looking for: not when a listing of its folder has shown
/// that there are none.
enum class Companions { LookFor, KnownAbsent };

/// Reads the metadata of the item at a plain path, links in it followed. What cannot be read counts as
/// absent.
MacMetadata ReadMacMetadata(std::string const& path, bool isFolder, Companions companions);

}  // namespace Platform
