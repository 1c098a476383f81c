#include "content/ByteSearch.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Inspectors {

namespace {

constexpr unsigned char kCR = 13;
constexpr unsigned char kLF = 10;

// So many bytes are looked at at one time; a mask has a bit for each, the lowest for the first.
constexpr std::ptrdiff_t kBlock = 64;
using Mask = std::uint64_t;

#ifdef __SSE2__

// A byte that 16 others are compared with.
class Pattern {
  public:
    explicit Pattern(unsigned char byte) : copies(_mm_set1_epi8(static_cast<char>(byte))) {}
    __m128i EqualAt(unsigned char const* place) const {
        return _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<__m128i const*>(place)), copies);
    }

  private:
    __m128i copies;
};

// The mask of a block by what is to be told of 16 bytes of it.
template <class Compare>
Mask MaskOf(unsigned char const* block, Compare const& compare) {
    __m128i const first = compare(block), second = compare(block + 16);
    __m128i const third = compare(block + 32), fourth = compare(block + 48);
    __m128i const any = _mm_or_si128(_mm_or_si128(first, second), _mm_or_si128(third, fourth));
    if (_mm_movemask_epi8(any) == 0) return 0;
    auto const bits = [](__m128i equal) { return static_cast<Mask>(_mm_movemask_epi8(equal)); };
    return bits(first) | bits(second) << 16 | bits(third) << 32 | bits(fourth) << 48;
}

Mask EqualTo(unsigned char const* block, Pattern const& pattern) {
    return MaskOf(block, [&](unsigned char const* place) { return pattern.EqualAt(place); });
}
Mask EqualToEither(unsigned char const* block, Pattern const& one, Pattern const& other) {
    return MaskOf(block, [&](unsigned char const* place) {
        return _mm_or_si128(one.EqualAt(place), other.EqualAt(place));
    });
}
// Where one byte stands, and the other so far behind it.
Mask EqualToBoth(unsigned char const* block, Pattern const& one, Pattern const& other,
                 std::ptrdiff_t behind) {
    return MaskOf(block, [&](unsigned char const* place) {
        return _mm_and_si128(one.EqualAt(place), other.EqualAt(place + behind));
    });
}

#else

struct Pattern {
    explicit Pattern(unsigned char itsByte) : byte(itsByte) {}
    bool EqualAt(unsigned char const* place) const { return *place == byte; }
    unsigned char byte;
};

template <class Compare>
Mask MaskOf(unsigned char const* block, Compare const& compare) {
    Mask mask = 0;
    for (std::ptrdiff_t i = 0; i < kBlock; ++i) mask |= Mask{compare(block + i)} << i;
    return mask;
}

Mask EqualTo(unsigned char const* block, Pattern const& pattern) {
    return MaskOf(block, [&](unsigned char const* place) { return pattern.EqualAt(place); });
}
Mask EqualToEither(unsigned char const* block, Pattern const& one, Pattern const& other) {
    return MaskOf(block,
                  [&](unsigned char const* place) { return one.EqualAt(place) || other.EqualAt(place); });
}
Mask EqualToBoth(unsigned char const* block, Pattern const& one, Pattern const& other,
                 std::ptrdiff_t behind) {
    return MaskOf(block, [&](unsigned char const* place) {
        return one.EqualAt(place) && other.EqualAt(place + behind);
    });
}

#endif

bool IsLineEnd(unsigned char byte) { return byte == kCR || byte == kLF; }

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
    // Zeros fill the block behind its `size` bytes, which stand at `place`.
    void Take(unsigned char const* block, unsigned char const* place, std::ptrdiff_t size) {
        Mask const ends = EqualToEither(block, cr, lf);
        unsigned char const before = std::exchange(open, 0);
        if (ends == 0) return;
        Mask const returns = EqualTo(block, cr);
        Mask const feeds = ends ^ returns;
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

    Pattern const cr{kCR};
    Pattern const lf{kLF};
    LineEndings found;
    unsigned char open = 0;
};

}  // namespace

unsigned char const* FindText(ConstData bytes, ConstData text) {
    auto const size = static_cast<std::ptrdiff_t>(text.Size());
    if (size == 0) return bytes.begin();
    auto const positions = static_cast<std::ptrdiff_t>(bytes.Size()) - size + 1;
    if (positions <= 0) return nullptr;
    unsigned char const* place = bytes.begin();
    unsigned char const* const end = place + positions;
    std::size_t const between = static_cast<std::size_t>(std::max<std::ptrdiff_t>(size - 2, 0));
    auto const stands = [&](unsigned char const* at) {
        return std::memcmp(at + 1, text.begin() + 1, between) == 0;
    };
    Pattern const first(*text.begin()), last(*(text.end() - 1));
    auto const findInBlock = [&](unsigned char const* block) -> unsigned char const* {
        for (Mask mask = EqualToBoth(block, first, last, size - 1); mask != 0; mask &= mask - 1)
            if (unsigned char const* at = block + std::countr_zero(mask); stands(at)) return at;
        return nullptr;
    };
    for (; end - place >= kBlock; place += kBlock)
        if (unsigned char const* found = findInBlock(place)) return found;
    // The last block overlaps the one before, in which nothing was found.
    if (positions >= kBlock) return place == end ? nullptr : findInBlock(end - kBlock);
    for (; place != end; ++place)
        if (*place == *text.begin() && place[size - 1] == *(text.end() - 1) && stands(place)) return place;
    return nullptr;
}

unsigned char const* FindLineEnd(ConstData bytes) {
    unsigned char const* place = bytes.begin();
    Pattern const cr(kCR), lf(kLF);
    for (; bytes.end() - place >= kBlock; place += kBlock)
        if (Mask const ends = EqualToEither(place, cr, lf); ends != 0) return place + std::countr_zero(ends);
    return std::find_if(place, bytes.end(), IsLineEnd);
}

LineEndings FindLineEndings(ConstData bytes, bool othersMayFollow) {
    EndingCounter counter;
    bool const isLastUndecided = othersMayFollow && !bytes.Empty() && IsLineEnd(*(bytes.end() - 1));
    counter.TakeAll(isLastUndecided ? ConstData(bytes.begin(), bytes.end() - 1) : bytes);
    LineEndings found = counter.Found();
    // The last byte may yet be the second half of an ending that is complete with it.
    if (isLastUndecided && counter.Open() != 0 && counter.Open() != *(bytes.end() - 1))
        found.end = bytes.end();
    return found;
}

}  // namespace Inspectors
