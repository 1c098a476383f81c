#include "Evaluator/MacintoshPlatform.h"

// The times are x / 65536 s since 1904 and y / 1000000 s since 1970, so y = x * 15625 / 1024 - epoch.
// Multiplying first could leave 64 bits and dividing first would lose bits, so as many factors as there is
// headroom for are multiplied in before the division and the rest behind it. What then still does not fit
// wraps around.

namespace MacintoshPlatform {

namespace {

constexpr std::int64_t kMicrosecondsFrom1904To1970 = 2'082'844'800'000'000;

std::int64_t WrappingSum(std::int64_t left, std::int64_t right) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(left) + static_cast<std::uint64_t>(right));
}

std::int64_t WrappingProduct(std::int64_t left, std::int64_t right) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(left) * static_cast<std::uint64_t>(right));
}

// Whether the top bits are all zero or all one.
bool HasHeadroom(std::int64_t number, int bits) {
    std::int64_t const top = number >> (64 - bits);
    return top == 0 || top == -1;
}

std::int64_t NumberOf(UTCDateTime time) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(time.highSeconds) << 48 |
                                     static_cast<std::uint64_t>(time.lowSeconds) << 16 | time.fraction);
}

}  // namespace

Instant FileTimeToInstant(UTCDateTime time) {
    std::int64_t x = NumberOf(time);
    std::int64_t factor = 15625;
    while (HasHeadroom(x, 4) && factor >= 2) {
        x *= 5;
        factor /= 5;
    }
    x /= 1024;  // toward zero
    if (factor > 1) x = WrappingProduct(x, factor);
    return {WrappingSum(x, -kMicrosecondsFrom1904To1970)};
}

UTCDateTime InstantToFileTime(Instant instant) {
    std::int64_t x = WrappingSum(instant.microseconds, kMicrosecondsFrom1904To1970);
    std::int64_t factor = 1024;
    while (HasHeadroom(x, 2) && factor >= 2) {
        x *= 2;
        factor /= 2;
    }
    x /= 15625;
    if (factor >= 2) x = WrappingProduct(x, factor);
    auto const bits = static_cast<std::uint64_t>(x);
    return {static_cast<UInt16>(bits >> 48), static_cast<UInt32>(bits >> 16), static_cast<UInt16>(bits)};
}

}  // namespace MacintoshPlatform
