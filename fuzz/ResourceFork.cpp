// Any bytes as a resource fork, as a map behind a sound header, and as types, references and data behind a
// sound map.

#include "files/ResourceFork.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <vector>

#include "Invariants.h"

using namespace Platform;

namespace {

using Bytes = std::vector<UInt8>;

constexpr ResType kVersion = 0x76657273;  // 'vers'

bool LiesWithin(ByteRange range, std::uint64_t size) {
    return range.offset <= size && range.length <= size - range.offset;
}

// Holds what is found to the fork it is in.
void HoldResource(ResourceFork const& fork, ResourceReference const& resource, std::size_t size) {
    std::uint32_t const most = fork.MostBytes(resource);
    Fuzz::Hold(most == 0 || LiesWithin({resource.dataOffset, std::uint64_t{most} + 4}, size),
               "a resource has no more bytes than its fork");
    std::uint32_t count = 0;
    if (fork.CountBytes(resource, count) != noErr) return;
    Fuzz::Hold(LiesWithin({resource.dataOffset, std::uint64_t{count} + 4}, size), "nor are more told of");
    Bytes bytes(count);
    Fuzz::Hold(fork.Read(resource, 0, bytes) == noErr, "what was counted can be read");
    Bytes one(1);
    bool const hasMore = fork.Read(resource, count, one) == noErr;
    Fuzz::Hold(!hasMore || LiesWithin({resource.dataOffset, std::uint64_t{count} + 5}, size),
               "nothing is read behind the data");
}

void HoldFork(Bytes const& bytes) {
    int reads = 0;
    ResourceFork fork;
    OSErr const error = fork.Open(bytes.size(), [&](std::uint64_t offset, std::span<UInt8> to) -> OSErr {
        Fuzz::Hold(LiesWithin({offset, to.size()}, bytes.size()), "nothing outside of the fork is asked for");
        ++reads;
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), to.size(), to.begin());
        return noErr;
    });
    Fuzz::Hold(reads <= 2, "a fork is opened with two reads");
    Fuzz::Hold(error == noErr || error == (bytes.empty() ? eofErr : mapReadErr),
               "a fork opens, or it is none");
    if (error != noErr) return;
    for (SInt16 const number : {0, 1, 2, -1}) {
        bool hasType = false;
        auto const found = fork.Find(kVersion, number, hasType);
        Fuzz::Hold(!found || hasType, "what is found is of a type");
        if (found) HoldResource(fork, *found, bytes.size());
    }
}

void Add(Bytes& bytes, std::uint64_t number, int size) {
    while (size-- > 0) bytes.push_back(static_cast<UInt8>(number >> (8 * size)));
}

// A header and the map behind it, with the data anywhere.
Bytes WithHeader(Bytes const& map, ByteRange data) {
    constexpr std::size_t header = 16;
    Bytes fork;
    Add(fork, data.offset, 4);
    Add(fork, header, 4);
    Add(fork, data.length, 4);
    Add(fork, map.size(), 4);
    fork.insert(fork.end(), map.begin(), map.end());
    return fork;
}

// A map with one type, "vers", and what lies behind it: references, and data. The first bytes say how many
// references there are, and where the data is: within the fork, mostly.
Bytes WithMap(Bytes const& rest) {
    auto const at = [&](std::size_t place) { return place < rest.size() ? rest[place] : std::size_t{0}; };
    Bytes map(24);
    Add(map, 28, 2);
    Add(map, 0, 2);
    Add(map, 0, 2);
    Add(map, kVersion, 4);
    Add(map, at(0) % 4, 2);
    Add(map, 10, 2);
    map.insert(map.end(), rest.begin(), rest.end());
    return WithHeader(map, {at(1), at(2)});
}

// The same with any type list and whatever it names; all of it is data too.
Bytes WithTypes(Bytes const& rest) {
    Bytes map(24);
    Add(map, 28, 2);
    Add(map, 0, 2);
    map.insert(map.end(), rest.begin(), rest.end());
    return WithHeader(map, {16, map.size()});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Bytes const bytes(data, data + size);
    HoldFork(bytes);
    HoldFork(WithHeader(bytes, {16, size}));
    HoldFork(WithTypes(bytes));
    HoldFork(WithMap(bytes));
    return 0;
}
