#pragma once

// Alias records, as tests want them.

#include <CoreFoundation/CFBase.h>

#include <string>
#include <string_view>

/// A big-endian number of so many bytes.
inline std::string BigEndian(UInt32 number, int size) {
    std::string bytes;
    while (size-- > 0) bytes += static_cast<char>(number >> (8 * size));
    return bytes;
}

/// A tagged part of a record.
inline std::string AliasPart(UInt32 tag, std::string_view bytes) {
    std::string part =
        BigEndian(tag, 2) + BigEndian(static_cast<UInt32>(bytes.size()), 2) + std::string(bytes);
    return bytes.size() % 2 != 0 ? part + '\0' : part;
}

/// A record with these parts.
inline std::string AliasRecord(std::string const& parts, UInt32 version = 2) {
    std::string fixed(142, '\0');
    return std::string(4, '\0') + BigEndian(static_cast<UInt32>(150 + parts.size()), 2) +
           BigEndian(version, 2) + fixed + parts;
}

/// A record of a path on the volume at a mount point.
inline std::string AliasOf(std::string_view path, std::string_view mountPoint = "/") {
    return AliasRecord(AliasPart(0, "parent") + AliasPart(18, path) + AliasPart(19, mountPoint) +
                       AliasPart(0xFFFF, ""));
}
