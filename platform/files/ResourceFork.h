#pragma once

// The format of resource forks. Pure but for the function that reads the fork.
//
//   0  offset and length of the data, of the map: 32 bits each, in the order data offset, map offset, data
//      length, map length
//
// The data: per resource its length, 32 bits, and its bytes. The map, offsets from its start:
//
//  24  offsets of the type list and of the names, 16 bits each
//
// The type list: the number of types less 1, 16 bits; per type 8 bytes: its code, the number of resources
// less 1, 16 bits, and the offset of its references from the start of the type list, 16 bits. A reference, 12
// bytes: number, 16 bits; name, 16 bits; attributes, 8 bits; offset from the start of the data, 24 bits;
// 32 bits for the system. All numbers are big-endian.

#include <Carbon/Resources.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "files/AppleDouble.h"

namespace Platform {

/// A resource as the map tells of it.
struct ResourceReference {
    std::uint32_t dataOffset;  // from the start of the data
    UInt8 attributes;
};

/// A resource fork that was opened. Nothing outside of the fork, or of the part of it that the header names,
/// is ever asked for.
class ResourceFork {
  public:
    /// Fills `to` with the fork's bytes from an offset on; a result code.
    using Reader = std::function<OSErr(std::uint64_t offset, std::span<UInt8> to)>;

    /// Reads header and map of a fork of `size` bytes. eofErr for an empty one, mapReadErr for one that has
    /// no header, or whose data, map or any list in the map does not lie within it, and what the reader says;
    /// it is then not to be used.
    OSErr Open(std::uint64_t size, Reader reader);

    /// The first resource of that type and number; empty when there is none, and `hasType` tells whether
    /// there are any of the type.
    std::optional<ResourceReference> Find(ResType type, SInt16 number, bool& hasType) const;
    /// The most bytes that the resource can have, by where the next one begins.
    std::uint32_t MostBytes(ResourceReference const& resource) const;
    /// How many it has. eofErr when they do not lie within the data.
    OSErr CountBytes(ResourceReference const& resource, std::uint32_t& count) const;
    /// Fills `to` with its bytes from an offset on, which are there.
    OSErr Read(ResourceReference const& resource, std::uint32_t offset, std::span<UInt8> to) const;

  private:
    struct Type {
        ResType code;
        std::size_t count;  // of references
        std::size_t first;  // the offset in the map
    };
    std::size_t CountTypes() const;
    Type TypeAt(std::size_t index) const;
    bool HoldsAllReferences() const;
    unsigned char const* ReferenceAt(Type const& type, std::size_t index) const;

    Reader read;
    ByteRange data;
    std::vector<UInt8> map;
    std::size_t typeList = 0;
};

}  // namespace Platform
