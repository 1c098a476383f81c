#pragma once

// Builds resource forks byte by byte, and tells where their fields are, so that a test can spoil one.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/AppleDoubleBuilder.h"

/// A resource that a fork is to hold.
struct BuiltResource {
    std::string type;  // four characters
    int number;
    std::string bytes;
    unsigned attributes = 0;
    std::string name = {};  // of none when it is empty
};

/// Where the fields of a header are.
enum HeaderField : std::size_t { kDataOffset = 0, kMapOffset = 4, kDataLength = 8, kMapLength = 12 };
/// Where those of a map are, from its start.
enum MapField : std::size_t { kTypeListOffset = 24, kNameListOffset = 26 };
/// Where those of a type are, from the start of its entry.
enum TypeField : std::size_t { kTypeCode = 0, kReferenceCount = 4, kReferencesOffset = 6 };
/// Where those of a reference are. The offset of the resource has 24 bits.
enum ReferenceField : std::size_t { kNumber = 0, kNameOffset = 2, kAttributes = 4, kResourceOffset = 5 };

/// A fork, and where its parts begin. Types and resources have the order in which they were given.
struct BuiltFork {
    std::string bytes;
    std::size_t data = 0;
    std::size_t map = 0;
    std::size_t typeList = 0;
    std::vector<std::size_t> types;
    std::vector<std::size_t> references;
    std::vector<std::size_t> resources;  // their stored lengths

    /// The fork with another number of so many bytes in a place.
    BuiltFork With(std::size_t offset, std::uint64_t number, int size) const {
        BuiltFork changed = *this;
        changed.bytes.replace(offset, static_cast<std::size_t>(size), BigEndian(number, size));
        return changed;
    }
};

/// A fork with the given resources. Those that follow each other and have one type are in one list; a type
/// that comes once more later is listed once more. Without resources it has the 286 bytes that stand for an
/// empty fork.
inline BuiltFork BuildFork(std::vector<BuiltResource> const& resources) {
    constexpr std::size_t dataOffset = 256, mapSize = 28, typeSize = 8, referenceSize = 12;
    BuiltFork fork;
    std::string data, references, names;
    std::vector<std::pair<std::string, unsigned>> types;  // with the number of their resources
    for (BuiltResource const& resource : resources) {
        if (types.empty() || types.back().first != resource.type) types.emplace_back(resource.type, 0);
        ++types.back().second;
        bool const hasName = !resource.name.empty();
        references += BigEndian(static_cast<std::uint16_t>(resource.number), 2) +
                      BigEndian(hasName ? names.size() : 0xFFFF, 2) + BigEndian(resource.attributes, 1) +
                      BigEndian(data.size(), 3) + BigEndian(0, 4);
        if (hasName) names += BigEndian(resource.name.size(), 1) + resource.name;
        fork.resources.push_back(dataOffset + data.size());
        data += BigEndian(resource.bytes.size(), 4) + resource.bytes;
    }
    std::size_t const typeListSize = 2 + typeSize * types.size();
    std::string typeList = BigEndian(types.size() - 1, 2);
    fork.data = dataOffset;
    fork.map = dataOffset + data.size();
    fork.typeList = fork.map + mapSize;
    std::size_t first = typeListSize;  // of the references, from the start of the type list
    for (auto const& [type, count] : types) {
        fork.types.push_back(fork.typeList + typeList.size());
        typeList += type + BigEndian(count - 1, 2) + BigEndian(first, 2);
        first += count * referenceSize;
    }
    for (std::size_t i = 0; i < resources.size(); ++i)
        fork.references.push_back(fork.typeList + typeListSize + i * referenceSize);
    std::string const behindMap = typeList + references + names;
    std::string const header = BigEndian(dataOffset, 4) + BigEndian(fork.map, 4) + BigEndian(data.size(), 4) +
                               BigEndian(mapSize + behindMap.size(), 4);
    fork.bytes = header + std::string(dataOffset - header.size(), '\0') + data + header +
                 std::string(8, '\0') + BigEndian(mapSize, 2) + BigEndian(mapSize + first, 2) + behindMap;
    return fork;
}
