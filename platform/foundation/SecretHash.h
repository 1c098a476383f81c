#pragma once

// A hash that nobody can prepare texts for.

#include <cstdint>
#include <string_view>

namespace Platform {

/// SipHash-1-3 of the bytes, with a key that each process draws anew: tables of texts from outside stay quick
/// whatever the texts are. Differs from run to run.
std::uint64_t SecretHash(std::string_view bytes) noexcept;

/// A key of the hash.
struct HashKey {
    std::uint64_t low, high;
};
/// SipHash-1-3 of the bytes with a key.
std::uint64_t SipHash(HashKey key, std::string_view bytes) noexcept;

}  // namespace Platform
