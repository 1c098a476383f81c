#include "files/Dates.h"

#include <algorithm>
#include <bit>
#include <tuple>

namespace Platform {

namespace {

constexpr std::int64_t kSecondsFrom1904To1970 = 2'082'844'800;
constexpr std::int64_t kSecondsFrom1970To2000 = 946'684'800;

UTCDateTime Packed(std::int64_t secondsSince1904, std::uint32_t fraction) {
    static_assert(std::endian::native == std::endian::little);
    auto const seconds = static_cast<std::uint64_t>(secondsSince1904);
    // In one piece: listings make five of these for each item, and a record written in parts is slow to read.
    return std::bit_cast<UTCDateTime>((seconds >> 32 & 0xFFFF) | (seconds & 0xFFFFFFFF) << 16 |
                                      std::uint64_t{fraction} << 48);
}

}  // namespace

UTCDateTime CarbonTime(struct statx_timestamp time) {
    constexpr std::int64_t first = -(std::int64_t{1} << 47);
    constexpr std::int64_t last = -(first + 1);
    std::int64_t const seconds =
        std::clamp<std::int64_t>(time.tv_sec, first - kSecondsFrom1904To1970, last - kSecondsFrom1904To1970);
    std::uint64_t const fraction = std::uint64_t{time.tv_nsec} * 65536 / 1'000'000'000;
    return Packed(seconds + kSecondsFrom1904To1970, static_cast<std::uint32_t>(fraction));
}

UTCDateTime CarbonTimeOfAppleDouble(std::int32_t seconds) {
    return Packed(seconds + kSecondsFrom1970To2000 + kSecondsFrom1904To1970, 0);
}

struct statx_timestamp Older(struct statx_timestamp left, struct statx_timestamp right) {
    return std::tie(right.tv_sec, right.tv_nsec) < std::tie(left.tv_sec, left.tv_nsec) ? right : left;
}

}  // namespace Platform
