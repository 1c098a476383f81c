#pragma once

// The AppleDouble format: what companion files and some extended attributes hold of a Macintosh file. Pure:
// bytes come from a ByteSource.
//
//   0  magic 0x00051607        4  version 0x00010000 or 0x00020000
//   8  filler, 16 bytes       24  number of entries, 16 bits
//  26  entries: id, offset and length, 32 bits each
//
// All numbers are big-endian. The entries that matter here: 2 resource fork, 8 dates, 9 Finder information,
// 10 Macintosh file attributes, 14 AFP file attributes.

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace Platform {

/// A row of bytes to read from.
class ByteSource {
  public:
    virtual ~ByteSource() = default;
    virtual std::uint64_t Size() const = 0;
    /// Fills `to` with the bytes from `offset` on; false when there are not that many, or they cannot be
    /// read.
    virtual bool Read(std::uint64_t offset, std::span<unsigned char> to) const = 0;
};

/// Bytes in memory.
class MemorySource final : public ByteSource {
  public:
    explicit MemorySource(std::span<unsigned char const> image) : bytes(image) {}
    std::uint64_t Size() const override { return bytes.size(); }
    bool Read(std::uint64_t offset, std::span<unsigned char> to) const override;

  private:
    std::span<unsigned char const> bytes;
};

struct ByteRange {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/// FileInfo or FolderInfo and the extended information behind it, as it is stored: big-endian.
using FinderBytes = std::array<unsigned char, 32>;

/// What an image says. What it does not say is empty.
struct AppleDoubleFacts {
    std::optional<FinderBytes> finderInfo;
    std::optional<ByteRange> resourceFork;  // within the image
    std::optional<std::int32_t> created;    // seconds since 1 January 2000, universal time
    std::optional<std::int32_t> backedUp;   // the same
    bool locked = false;
};

/// Whether the bytes begin as those of an image do.
bool HasAppleDoubleMagic(ByteSource const& image);
/// Reads an image. Empty when it is none: another magic or version, more than 20 entries, or an end in the
/// middle of them. An entry that does not lie within the image, or is shorter than its kind, is ignored.
std::optional<AppleDoubleFacts> DecodeAppleDouble(ByteSource const& image);

/// What an AFP_AfpInfo record (60 bytes, perhaps with more behind) says. Empty when it is none.
std::optional<AppleDoubleFacts> DecodeAfpInfo(std::span<unsigned char const> record);

/// A big-endian number of 16 or 32 bits.
inline std::uint16_t BigEndian16(unsigned char const* bytes) {
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}
inline std::uint32_t BigEndian32(unsigned char const* bytes) {
    return static_cast<std::uint32_t>(BigEndian16(bytes)) << 16 | BigEndian16(bytes + 2);
}

}  // namespace Platform
