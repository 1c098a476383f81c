#include "files/ResourceFork.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <array>
#include <utility>

namespace Platform {

namespace {

constexpr std::size_t kHeaderSize = 16;
constexpr std::size_t kTypeListOffset = 24;  // in the map, which has 28 bytes at least
constexpr std::size_t kLeastMap = 28;
constexpr std::size_t kTypeSize = 8;
constexpr std::size_t kReferenceSize = 12;
constexpr std::size_t kLengthSize = 4;  // in front of the bytes of a resource
// What the 16-bit offsets and numbers of a map reach: the names behind it are not read.
constexpr std::size_t kMostMap = 0xFFFF + 0xFFFF + 0x10000 * kReferenceSize;

bool LiesWithin(ByteRange range, std::uint64_t size) {
    return range.offset <= size && range.length <= size - range.offset;
}

// A number that is stored less 1; 0xFFFF stands for none.
std::size_t CountAt(unsigned char const* bytes) { return (BigEndian16(bytes) + 1u) & 0xFFFF; }

std::uint32_t DataOffsetOf(unsigned char const* reference) {
    return BigEndian32(reference + 4) & 0x00FFFFFF;  // behind the attributes
}

}  // namespace

OSErr ResourceFork::Open(std::uint64_t size, Reader reader) {
    read = std::move(reader);
    if (size == 0) return eofErr;
    if (size < kHeaderSize) return mapReadErr;
    std::array<UInt8, kHeaderSize> header;
    if (OSErr const error = read(0, header); error != noErr) return error;
    data = {BigEndian32(&header[0]), BigEndian32(&header[8])};
    ByteRange const whole = {BigEndian32(&header[4]), BigEndian32(&header[12])};
    if (!LiesWithin(data, size) || !LiesWithin(whole, size) || whole.length < kLeastMap) return mapReadErr;
    map.resize(std::min<std::uint64_t>(whole.length, kMostMap));
    if (OSErr const error = read(whole.offset, map); error != noErr) return error;
    typeList = BigEndian16(&map[kTypeListOffset]);
    bool const hasCount = LiesWithin({typeList, 2}, map.size());
    if (!hasCount || !LiesWithin({typeList + 2, CountTypes() * kTypeSize}, map.size())) return mapReadErr;
    return HoldsAllReferences() ? OSErr{noErr} : OSErr{mapReadErr};
}

// No more of them than the map has room for, so that lists that lie over each other are not followed for
// ever.
bool ResourceFork::HoldsAllReferences() const {
    std::size_t room = map.size() / kReferenceSize;
    for (std::size_t i = 0, types = CountTypes(); i < types; ++i) {
        Type const type = TypeAt(i);
        if (!LiesWithin({type.first, type.count * kReferenceSize}, map.size()) || type.count > room)
            return false;
        room -= type.count;
    }
    return true;
}

std::size_t ResourceFork::CountTypes() const { return CountAt(&map[typeList]); }

ResourceFork::Type ResourceFork::TypeAt(std::size_t index) const {
    unsigned char const* const entry = &map[typeList + 2 + index * kTypeSize];
    return {BigEndian32(entry), BigEndian16(entry + 4) + std::size_t{1}, typeList + BigEndian16(entry + 6)};
}

unsigned char const* ResourceFork::ReferenceAt(Type const& type, std::size_t index) const {
    return &map[type.first + index * kReferenceSize];
}

std::optional<ResourceReference> ResourceFork::Find(ResType type, SInt16 number, bool& hasType) const {
    hasType = false;
    for (std::size_t i = 0, types = CountTypes(); i < types; ++i) {
        Type const candidate = TypeAt(i);
        if (candidate.code != type) continue;
        hasType = true;
        for (std::size_t j = 0; j < candidate.count; ++j) {
            unsigned char const* const reference = ReferenceAt(candidate, j);
            if (static_cast<SInt16>(BigEndian16(reference)) == number)
                return ResourceReference{DataOffsetOf(reference), reference[4]};
        }
    }
    return std::nullopt;
}

std::uint32_t ResourceFork::MostBytes(ResourceReference const& resource) const {
    std::uint64_t next = data.length;
    for (std::size_t i = 0, types = CountTypes(); i < types; ++i) {
        Type const type = TypeAt(i);
        for (std::size_t j = 0; j < type.count; ++j) {
            std::uint32_t const other = DataOffsetOf(ReferenceAt(type, j));
            if (other > resource.dataOffset) next = std::min<std::uint64_t>(next, other);
        }
    }
    std::uint64_t const first = std::uint64_t{resource.dataOffset} + kLengthSize;
    return next > first ? static_cast<std::uint32_t>(next - first) : 0;
}

OSErr ResourceFork::CountBytes(ResourceReference const& resource, std::uint32_t& count) const {
    if (!LiesWithin({resource.dataOffset, kLengthSize}, data.length)) return eofErr;
    std::array<UInt8, kLengthSize> length;
    if (OSErr const error = read(data.offset + resource.dataOffset, length); error != noErr) return error;
    count = BigEndian32(length.data());
    bool const isWithin = LiesWithin({resource.dataOffset + std::uint64_t{kLengthSize}, count}, data.length);
    return isWithin ? OSErr{noErr} : OSErr{eofErr};
}

OSErr ResourceFork::Read(ResourceReference const& resource, std::uint32_t offset, std::span<UInt8> to) const {
    ByteRange const wanted = {std::uint64_t{resource.dataOffset} + kLengthSize + offset, to.size()};
    if (!LiesWithin(wanted, data.length)) return eofErr;
    return read(data.offset + wanted.offset, to);
}

}  // namespace Platform
