#include <gtest/gtest.h>

#include <random>

#include "Evaluator/MacintoshPlatform.h"

using MacintoshPlatform::FileTimeToInstant;
using MacintoshPlatform::InstantToFileTime;

namespace {

constexpr std::int64_t kEpoch = 2'082'844'800'000'000;

std::int64_t Microseconds(UTCDateTime time) { return FileTimeToInstant(time).microseconds; }

std::uint64_t Bits(UTCDateTime time) {
    return static_cast<std::uint64_t>(time.highSeconds) << 48 |
           static_cast<std::uint64_t>(time.lowSeconds) << 16 | time.fraction;
}

UTCDateTime FromBits(std::uint64_t bits) {
    return {static_cast<UInt16>(bits >> 48), static_cast<UInt32>(bits >> 16), static_cast<UInt16>(bits)};
}

// The conversion in one step, for numbers of at most 49 bits, where the product fits.
std::int64_t ExactMicroseconds(std::uint64_t bits) {
    return static_cast<std::int64_t>(bits * 15625 / 1024) - kEpoch;
}

}  // namespace

TEST(FileTimes, AllZeroIsTheBeginningOf1904) { EXPECT_EQ(-kEpoch, Microseconds({0, 0, 0})); }

TEST(FileTimes, FractionsAreParts65536OfASecond) {
    EXPECT_EQ(500'000 - kEpoch, Microseconds({0, 0, 0x8000}));
    EXPECT_EQ(15 - kEpoch, Microseconds({0, 0, 1}));
    EXPECT_EQ(999'984 - kEpoch, Microseconds({0, 0, 0xFFFF}));
}

TEST(FileTimes, SecondsOf1970AreZero) { EXPECT_EQ(0, Microseconds({0, 2'082'844'800, 0})); }

TEST(FileTimes, SecondsGoOnBehind32Bits) {
    EXPECT_EQ(4'294'967'296'000'000 - kEpoch, Microseconds({1, 0, 0}));
    EXPECT_EQ(-1'000'000 - kEpoch, Microseconds({0xFFFF, 0xFFFFFFFF, 0}));
}

TEST(FileTimes, AreExactForThousandsOfYears) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 10000; ++i) {
        std::uint64_t const bits = random() >> 17;  // up to the year 6360
        EXPECT_EQ(ExactMicroseconds(bits), Microseconds(FromBits(bits))) << bits;
    }
}

TEST(FileTimes, FarInTheFutureLoseOnlyTheLastBits) {
    std::uint64_t const bits = std::uint64_t{0x7000} << 48;
    std::int64_t const factorsMultipliedFirst = static_cast<std::int64_t>(bits) / 1024;
    std::uint64_t const wrapped = static_cast<std::uint64_t>(factorsMultipliedFirst) * 15625 - kEpoch;
    EXPECT_EQ(static_cast<std::int64_t>(wrapped), Microseconds(FromBits(bits)));
}

TEST(FileTimes, InstantZeroIsTheSecondsFrom1904To1970) {
    UTCDateTime const time = InstantToFileTime({0});
    EXPECT_EQ(0, time.highSeconds);
    EXPECT_EQ(2'082'844'800u, +time.lowSeconds);
    EXPECT_EQ(0, time.fraction);
}

TEST(FileTimes, HalfASecondIsHalfOf65536) {
    UTCDateTime const time = InstantToFileTime({500'000});
    EXPECT_EQ(0x8000, time.fraction);
    EXPECT_EQ(2'082'844'800u, +time.lowSeconds);
}

TEST(FileTimes, BackAndForthLosesLessThanTheUnit) {
    std::mt19937_64 random(2);
    for (int i = 0; i < 10000; ++i) {
        std::uint64_t const bits = random() >> 17;
        std::uint64_t const back = Bits(InstantToFileTime(FileTimeToInstant(FromBits(bits))));
        EXPECT_LE(bits - back, 1u) << bits;
    }
}

TEST(FileTimes, InstantsBefore1904AreNegative) {
    UTCDateTime const time = InstantToFileTime({-kEpoch - 1'000'000});
    EXPECT_EQ(0xFFFF, time.highSeconds);
    EXPECT_EQ(0xFFFFFFFFu, +time.lowSeconds);
}
