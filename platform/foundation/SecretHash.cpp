#include "foundation/SecretHash.h"

#include <sys/random.h>
#include <time.h>

#include <bit>
#include <cstddef>
#include <cstring>

namespace Platform {

namespace {

HashKey KeyOfProcess() noexcept {
    static HashKey const key = [] {
        HashKey drawn;
        // It fails on kernels without it and before there is any randomness: better a poor key than to wait.
        if (getrandom(&drawn, sizeof drawn, GRND_NONBLOCK) != sizeof drawn) {
            timespec now;
            clock_gettime(CLOCK_MONOTONIC, &now);
            drawn = {static_cast<std::uint64_t>(now.tv_nsec), reinterpret_cast<std::uintptr_t>(&drawn)};
        }
        return drawn;
    }();
    return key;
}

class State {
  public:
    explicit State(HashKey key) noexcept
        : a(key.low ^ 0x736f6d6570736575),
          b(key.high ^ 0x646f72616e646f6d),
          c(key.low ^ 0x6c7967656e657261),
          d(key.high ^ 0x7465646279746573) {}

    void Add(std::uint64_t word) noexcept {
        d ^= word;
        Round();
        a ^= word;
    }
    std::uint64_t Finish() noexcept {
        c ^= 0xff;
        for (int i = 0; i < 3; ++i) Round();
        return a ^ b ^ c ^ d;
    }

  private:
    std::uint64_t a, b, c, d;

    void Round() noexcept {
        a += b;
        c += d;
        b = std::rotl(b, 13) ^ a;
        d = std::rotl(d, 16) ^ c;
        a = std::rotl(a, 32) + d;
        c += b;
        d = std::rotl(d, 21) ^ a;
        b = std::rotl(b, 17) ^ c;
        c = std::rotl(c, 32);
    }
};

}  // namespace

std::uint64_t SecretHash(std::string_view bytes) noexcept { return SipHash(KeyOfProcess(), bytes); }

std::uint64_t SipHash(HashKey key, std::string_view bytes) noexcept {
    State state(key);
    std::uint64_t word;
    std::size_t at = 0;
    for (; bytes.size() - at >= sizeof word; at += sizeof word) {
        std::memcpy(&word, bytes.data() + at, sizeof word);
        state.Add(word);
    }
    word = std::uint64_t{bytes.size()} << 56;
    for (std::size_t i = 0; at + i < bytes.size(); ++i)
        word |= std::uint64_t{static_cast<unsigned char>(bytes[at + i])} << (8 * i);
    state.Add(word);
    return state.Finish();
}

}  // namespace Platform
