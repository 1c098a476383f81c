#pragma once

// Builds AppleDouble images byte by byte.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

inline std::string BigEndian(std::uint64_t number, int bytes) {
    std::string text;
    while (bytes-- > 0) text += static_cast<char>(number >> (8 * bytes));
    return text;
}

/// An image with the given entries, in their order, each behind the other.
inline std::string AppleDoubleImage(std::vector<std::pair<std::uint32_t, std::string>> const& entries,
                                    std::uint32_t magic = 0x00051607, std::uint32_t version = 0x00020000) {
    std::string image =
        BigEndian(magic, 4) + BigEndian(version, 4) + std::string(16, ' ') + BigEndian(entries.size(), 2);
    std::size_t offset = image.size() + 12 * entries.size();
    for (auto const& [id, bytes] : entries) {
        image += BigEndian(id, 4) + BigEndian(offset, 4) + BigEndian(bytes.size(), 4);
        offset += bytes.size();
    }
    for (auto const& entry : entries) image += entry.second;
    return image;
}

/// 32 bytes of Finder information.
inline std::string FinderInformation(std::string const& typeAndCreator, unsigned flags = 0) {
    return typeAndCreator + BigEndian(flags, 2) + std::string(22, '\0');
}

/// 60 bytes of an AFP_AfpInfo record.
inline std::string AfpInfo(std::uint32_t backup, std::string const& finderInfo) {
    return std::string("AFP\0", 4) + BigEndian(0x00000100, 4) + BigEndian(0, 4) + BigEndian(backup, 4) +
           finderInfo + std::string(12, '\0');
}
