#pragma once

// Blocks of bytes that are compared at one time.

#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Inspectors {

/// 16 bytes, and what comparing them gives: all bits of a byte where they are equal, none where they are not.
using Sixteen = unsigned char __attribute__((vector_size(16)));
using Outcome = decltype(std::declval<Sixteen>() == std::declval<Sixteen>());

inline Sixteen Load(unsigned char const* place) {
    Sixteen bytes;
    std::memcpy(&bytes, place, sizeof bytes);
    return bytes;
}
inline Sixteen Repeat(unsigned char byte) { return Sixteen{} + byte; }

/// One bit for each byte, the lowest for the first.
inline std::uint64_t BitsOf(Outcome outcome) {
#ifdef __SSE2__
    return static_cast<std::uint64_t>(_mm_movemask_epi8(reinterpret_cast<__m128i>(outcome)));
#else
    std::uint64_t bits = 0;
    for (int i = 0; i < 16; ++i) bits |= static_cast<std::uint64_t>(outcome[i] & 1) << i;
    return bits;
#endif
}

/// A block: 64 bytes, as many as a mask has bits.
constexpr std::ptrdiff_t kBlock = 64;

/// The mask of the block at a place: the bits of what `compare` answers for each 16 bytes of it.
template <class Compare>
[[gnu::always_inline]] inline std::uint64_t MaskOfBlock(unsigned char const* block, Compare const& compare) {
    Outcome const first = compare(block), second = compare(block + 16);
    Outcome const third = compare(block + 32), fourth = compare(block + 48);
    if (BitsOf((first | second) | (third | fourth)) == 0) return 0;
    return BitsOf(first) | BitsOf(second) << 16 | BitsOf(third) << 32 | BitsOf(fourth) << 48;
}

}  // namespace Inspectors
