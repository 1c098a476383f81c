#pragma once

// Finder information, resource forks and other facts of Macintosh files, from the places where Mac-aware
// programs leave them on Linux: extended attributes, and AppleDouble files beside the file (`._name` and
// `.AppleDouble/name`; for a folder itself also `.AppleDouble/.Parent` within it).

#include <cstdint>
#include <optional>
#include <string>

#include "files/AppleDouble.h"
#include "files/Locations.h"

namespace Platform {

/// Where the bytes of a resource fork are.
struct ResourceForkPlace {
    enum class Store {
        None,       // there is no resource fork
        Attribute,  // the value of the extended attribute `name` of the item
        File,       // a part of the file `name`, seen from the item's folder
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

/// Where to look.
struct MetadataStores {
    bool attributes = true;  // not where the file system is known to have none
    bool companions = true;  // beside the item; not where a listing has shown that there are none
    bool within = true;      // in a folder, for its own; not where it is known to hold no folders
};

/// Reads the metadata of the item at a place, which is no symbolic link, into `facts`, which are empty
/// before. What cannot be read counts as absent.
void ReadMacMetadata(Place place, bool isFolder, MetadataStores const& stores, MacMetadata& facts);
/// Whether the file at a place begins as AppleDouble files do.
bool IsAppleDouble(Place place);

}  // namespace Platform
