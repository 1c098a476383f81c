#include "files/AppleDouble.h"

#include <algorithm>

namespace Platform {

namespace {

constexpr std::uint32_t kMagic = 0x00051607;
constexpr std::size_t kHeaderSize = 26;
constexpr std::size_t kEntrySize = 12;
constexpr unsigned kMostEntries = 20;  // 15 kinds are defined, and a few private ones are in use
constexpr std::uint32_t kUnknownDate = 0x80000000;

enum EntryID : std::uint32_t {
    kResourceFork = 2,
    kFileDates = 8,
    kFinderInfo = 9,
    kMacintoshFileInfo = 10,
    kAfpFileInfo = 14,
};

struct Entry {
    std::uint32_t id;
    ByteRange range;
};

Entry DecodeEntry(unsigned char const* bytes) {
    return {BigEndian32(bytes), {BigEndian32(bytes + 4), BigEndian32(bytes + 8)}};
}

bool LiesWithin(ByteRange range, std::uint64_t size) {
    return range.offset <= size && range.length <= size - range.offset;
}

// The first bytes of an entry; empty when it has fewer.
template <std::size_t size>
std::optional<std::array<unsigned char, size>> ReadFront(ByteSource const& image, ByteRange range) {
    std::array<unsigned char, size> bytes;
    if (range.length < size || !image.Read(range.offset, bytes)) return std::nullopt;
    return bytes;
}

std::optional<std::int32_t> DecodeDate(unsigned char const* bytes) {
    std::uint32_t const date = BigEndian32(bytes);
    if (date == kUnknownDate) return std::nullopt;
    return static_cast<std::int32_t>(date);
}

// Whether a word of attribute bits that an entry holds has one of `mask`.
bool HasBit(ByteSource const& image, ByteRange range, std::uint32_t mask) {
    auto const word = ReadFront<4>(image, range);
    return word && (BigEndian32(word->data()) & mask) != 0;
}

void Take(Entry const& entry, ByteSource const& image, AppleDoubleFacts& facts) {
    constexpr std::uint32_t lockedBit = 0x0001;
    constexpr std::uint32_t writeInhibitBit = 0x0020;
    switch (entry.id) {
        case kResourceFork:
            facts.resourceFork = entry.range;
            break;
        case kFinderInfo:
            facts.finderInfo = ReadFront<32>(image, entry.range);
            break;
        case kMacintoshFileInfo:
            facts.locked |= HasBit(image, entry.range, lockedBit);
            break;
        case kAfpFileInfo:
            facts.locked |= HasBit(image, entry.range, writeInhibitBit);
            break;
        case kFileDates:
            if (auto const dates = ReadFront<16>(image, entry.range)) {
                facts.created = DecodeDate(dates->data());
                facts.backedUp = DecodeDate(dates->data() + 8);
            }
            break;
        default:
            break;
    }
}

bool IsHeader(std::array<unsigned char, kHeaderSize> const& header) {
    std::uint32_t const version = BigEndian32(header.data() + 4);
    return BigEndian32(header.data()) == kMagic && (version == 0x00010000 || version == 0x00020000) &&
           BigEndian16(header.data() + 24) <= kMostEntries;
}

}  // namespace

bool HasAppleDoubleMagic(ByteSource const& image) {
    std::array<unsigned char, 4> magic;
    return image.Read(0, magic) && BigEndian32(magic.data()) == kMagic;
}

bool MemorySource::Read(std::uint64_t offset, std::span<unsigned char> to) const {
    if (!LiesWithin({offset, to.size()}, bytes.size())) return false;
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), to.size(), to.begin());
    return true;
}

std::optional<AppleDoubleFacts> DecodeAppleDouble(ByteSource const& image) {
    std::array<unsigned char, kHeaderSize> header;
    if (!image.Read(0, header) || !IsHeader(header)) return std::nullopt;
    std::array<unsigned char, kMostEntries * kEntrySize> entries;
    std::size_t const count = BigEndian16(header.data() + 24);
    if (!image.Read(kHeaderSize, std::span(entries).first(count * kEntrySize))) return std::nullopt;
    AppleDoubleFacts facts;
    for (std::size_t i = 0; i < count; ++i) {
        Entry const entry = DecodeEntry(entries.data() + i * kEntrySize);
        if (LiesWithin(entry.range, image.Size())) Take(entry, image, facts);
    }
    return facts;
}

std::optional<AppleDoubleFacts> DecodeAfpInfo(std::span<unsigned char const> record) {
    constexpr std::size_t recordSize = 60;
    constexpr std::uint32_t signature = 0x41465000;  // "AFP" and a NUL
    constexpr std::uint32_t version = 0x00000100;
    if (record.size() < recordSize || BigEndian32(record.data()) != signature ||
        BigEndian32(record.data() + 4) != version) {
        return std::nullopt;
    }
    AppleDoubleFacts facts;
    facts.backedUp = DecodeDate(record.data() + 12);
    facts.finderInfo.emplace();
    std::copy_n(record.data() + 16, facts.finderInfo->size(), facts.finderInfo->begin());
    return facts;
}

}  // namespace Platform
