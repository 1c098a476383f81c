#include "content/ByteSearch.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string_view>
#include <tuple>
#include <utility>

#include "content/ByteBlocks.h"

namespace Inspectors {

using namespace std::string_view_literals;

namespace {

constexpr unsigned char kCR = 13;
constexpr unsigned char kLF = 10;

// Counts the endings of bytes that come in blocks.
class EndingCounter {
  public:
    void TakeAll(ConstData bytes) {
        unsigned char const* place = bytes.begin();
        for (; bytes.end() - place >= kBlock; place += kBlock) Take(place, place, kBlock);
        if (place == bytes.end()) return;
        unsigned char rest[kBlock] = {};
        std::copy(place, bytes.end(), rest);
        Take(rest, place, bytes.end() - place);
    }

    LineEndings const& Found() const { return found; }
    /// The last byte, if it is an ending to which a second half may come; else 0.
    unsigned char Open() const { return open; }

  private:
    using Mask = std::uint64_t;

    // Zeros fill the block behind its `size` bytes, which stand at `place`.
    void Take(unsigned char const* block, unsigned char const* place, std::ptrdiff_t size) {
        Mask const returns = MaskOfBlock(block, [](auto* bytes) { return Load(bytes) == Repeat(kCR); });
        Mask const feeds = MaskOfBlock(block, [](auto* bytes) { return Load(bytes) == Repeat(kLF); });
        Mask const ends = returns | feeds;
        unsigned char const before = std::exchange(open, 0);
        if (ends == 0) return;
        Mask const seconds = SecondHalves((feeds & (returns << 1 | Mask{before == kCR})) |
                                          (returns & (feeds << 1 | Mask{before == kLF})));
        found.count += std::popcount(ends) - std::popcount(seconds);
        found.end = place + kBlock - std::countl_zero(ends);
        if ((ends & ~seconds) >> (size - 1) == 1) open = block[size - 1];
    }

    // Which of the bytes that could be second halves are: none whose predecessor is one.
    static Mask SecondHalves(Mask candidates) {
        if ((candidates & candidates << 1) == 0) return candidates;
        Mask halves = 0;
        while (candidates != 0) {
            Mask const lowest = candidates & (0 - candidates);
            halves |= lowest;
            candidates &= ~(lowest | lowest << 1);
        }
        return halves;
    }

    LineEndings found;
    unsigned char open = 0;
};

std::int64_t Count(unsigned char byte, ConstData bytes) {
    constexpr std::ptrdiff_t mostBlocks = 63;  // each adds 4 at most to a count of one byte
    Sixteen const pattern = Repeat(byte);
    std::int64_t count = 0;
    unsigned char const* place = bytes.begin();
    while (bytes.end() - place >= kBlock) {
        unsigned char const* const end =
            place + kBlock * std::min((bytes.end() - place) / kBlock, mostBlocks);
        Sixteen counts{};
        for (; place != end; place += kBlock) {
            Outcome const pair = (Load(place) == pattern) + (Load(place + 16) == pattern);
            Outcome const other = (Load(place + 32) == pattern) + (Load(place + 48) == pattern);
            counts -= reinterpret_cast<Sixteen>(pair + other);
        }
        for (int lane = 0; lane < 16; ++lane) count += counts[lane];
    }
    return count + std::count(place, bytes.end(), byte);
}

// The endings of bytes without CR.
LineEndings FindFeeds(ConstData bytes) {
    void const* const last = bytes.Empty() ? nullptr : memrchr(bytes.begin(), kLF, bytes.Size());
    if (last == nullptr) return {};
    unsigned char const* const end = static_cast<unsigned char const*>(last) + 1;
    return {Count(kLF, {bytes.begin(), end}), end};
}

// How common bytes are in texts: 0 for those that are not, up to 255.
constexpr std::array<unsigned char, 256> Commonness() {
    constexpr std::string_view mostCommonFirst = " \0etaoinsrhldcumfpgwybvk0123456789.-:/,_\"=()[]xjqz\t"sv;
    std::array<unsigned char, 256> result{};
    for (std::size_t i = 0; i < mostCommonFirst.size(); ++i)
        result[static_cast<unsigned char>(mostCommonFirst[i])] = static_cast<unsigned char>(255 - i);
    return result;
}

// The two bytes of a text, by their places in it, that are the least common ones.
std::pair<std::ptrdiff_t, std::ptrdiff_t> LeastCommon(ConstData text) {
    static constexpr auto commonness = Commonness();
    unsigned char const* const first = text.begin();
    std::ptrdiff_t least = 0, next = 1;
    if (commonness[first[next]] < commonness[first[least]]) std::swap(least, next);
    for (std::ptrdiff_t i = 2; i < static_cast<std::ptrdiff_t>(text.Size()); ++i) {
        if (commonness[first[i]] >= commonness[first[next]]) continue;
        next = i;
        if (commonness[first[next]] < commonness[first[least]]) std::swap(least, next);
    }
    return {least, next};
}

}  // namespace

bool IsLineEnd(unsigned char byte) { return byte == kCR || byte == kLF; }

// At each position two bytes are compared, at many positions at one time; where both are right, all of them.

TextFinder::TextFinder(ConstData itsText) : text(itsText) {
    if (text.Size() > 1) std::tie(first, second) = LeastCommon(text);
}

[[gnu::always_inline]] inline unsigned char const* TextFinder::FindInBlock(unsigned char const* block) const {
    Sixteen const firstByte = Repeat(text.begin()[first]), secondByte = Repeat(text.begin()[second]);
    std::uint64_t mask = MaskOfBlock(block, [&](unsigned char const* place) {
        return (Load(place + first) == firstByte) & (Load(place + second) == secondByte);
    });
    for (; mask != 0; mask &= mask - 1) {
        unsigned char const* const place = block + std::countr_zero(mask);
        if (std::memcmp(place, text.begin(), text.Size()) == 0) return place;
    }
    return nullptr;
}

unsigned char const* TextFinder::FindIn(ConstData bytes) const {
    if (text.Empty()) return bytes.begin();
    if (bytes.Size() < text.Size()) return nullptr;
    if (text.Size() == 1)
        return static_cast<unsigned char const*>(std::memchr(bytes.begin(), *text.begin(), bytes.Size()));
    unsigned char const* place = bytes.begin();
    unsigned char const* const end = bytes.end() - text.Size() + 1;  // of the positions
    if (end - place < kBlock) {
        place = std::search(place, bytes.end(), text.begin(), text.end());
        return place == bytes.end() ? nullptr : place;
    }
    for (; end - place >= kBlock; place += kBlock)
        if (unsigned char const* found = FindInBlock(place)) return found;
    // The last block overlaps the one before, in which there was nothing.
    return place == end ? nullptr : FindInBlock(end - kBlock);
}

unsigned char const* FindLineEnd(ConstData bytes) {
    unsigned char const* place = bytes.begin();
    for (; bytes.end() - place >= kBlock; place += kBlock) {
        std::uint64_t const ends = MaskOfBlock(place, [](unsigned char const* at) {
            return (Load(at) == Repeat(kCR)) | (Load(at) == Repeat(kLF));
        });
        if (ends != 0) return place + std::countr_zero(ends);
    }
    return std::find_if(place, bytes.end(), IsLineEnd);
}

LineEndings FindLineEndings(ConstData bytes, bool othersMayFollow) {
    bool const isLastUndecided = othersMayFollow && !bytes.Empty() && IsLineEnd(*(bytes.end() - 1));
    ConstData const decided(bytes.begin(), bytes.end() - (isLastUndecided ? 1 : 0));
    if (bytes.Empty() || std::memchr(bytes.begin(), kCR, bytes.Size()) == nullptr) return FindFeeds(decided);
    EndingCounter counter;
    counter.TakeAll(decided);
    LineEndings found = counter.Found();
    // The last byte may yet be the second half of an ending that is complete with it.
    if (isLastUndecided && counter.Open() != 0 && counter.Open() != *(bytes.end() - 1))
        found.end = bytes.end();
    return found;
}

}  // namespace Inspectors
