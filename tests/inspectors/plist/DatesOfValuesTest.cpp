// Dates as times of the language.

#include <cmath>
#include <limits>

#include "Evaluator/Time.h"
#include "plist/Lists.h"

namespace {

// Seconds from the beginnings of 1970 and of 1904 to that of 2001, universal time.
constexpr std::int64_t since1970 = 978'307'200, since1904 = 3'061'152'000;
constexpr std::int64_t microsecondsOf1904 = (since1970 - since1904) * 1'000'000;

// The microseconds since the beginning of 1970.
std::int64_t MicrosecondsOf(std::string_view bytes) {
    return date_of_value(List(bytes).Value()).SinceEpoch().microseconds;
}
// The microseconds since the beginning of 2001.
std::int64_t Rounded(double seconds) { return MicrosecondsOf(BinaryDate(seconds)) - since1970 * 1'000'000; }

}  // namespace

TEST(DatesOfValues, CountFromTheBeginningOf2001) {
    List const list("<date>2001-01-01T00:00:00Z</date>");
    EXPECT_EQ(january_1_1904_GMT() + second_of() * since1904, date_of_value(list.Value()));
}

TEST(DatesOfValues, AreUniversalTimes) {
    EXPECT_EQ(1'767'323'045'000'000, MicrosecondsOf("<date>2026-01-02T03:04:05Z</date>"));
}

TEST(DatesOfValues, MayLieBefore1904) {
    EXPECT_EQ(-3'155'673'600'000'000, MicrosecondsOf("<date>1870-01-01T00:00:00Z</date>"));
}

TEST(DatesOfValues, AreExactToTheMicrosecond) {
    EXPECT_EQ(500'000, Rounded(0.5));
    EXPECT_EQ(-250'000, Rounded(-0.25));
    EXPECT_EQ(1, Rounded(0.000001));
}

// Half a microsecond can be told from a whole one near the beginning of 1904 only.
TEST(DatesOfValues, RoundHalvesAwayFromZero) {
    double const half = 0x1p-21;  // seconds: 0.477 microseconds, below a half
    double const start = -static_cast<double>(since1904);
    EXPECT_EQ(microsecondsOf1904, MicrosecondsOf(BinaryDate(start)));
    EXPECT_EQ(microsecondsOf1904, MicrosecondsOf(BinaryDate(start + half)));
    EXPECT_EQ(microsecondsOf1904 + 1, MicrosecondsOf(BinaryDate(start + 2 * half)));
    // 1/128 of a second is 7812.5 microseconds.
    EXPECT_EQ(microsecondsOf1904 + 7813, MicrosecondsOf(BinaryDate(start + 0x1p-7)));
    EXPECT_EQ(microsecondsOf1904 - 7813, MicrosecondsOf(BinaryDate(start - 0x1p-7)));
}

TEST(DatesOfValues, ThatAreNoNumbersAreNone) {
    double const infinity = std::numeric_limits<double>::infinity();
    for (double seconds : {std::nan(""), infinity, -infinity})
        EXPECT_THROW(Rounded(seconds), NoSuchObject) << seconds;
}

TEST(DatesOfValues, ThatNoTimeCanHoldAreNone) {
    for (double seconds : {1e300, -1e300, 0x1p63 / 1e6, -0x1p63 / 1e6 - since1904})
        EXPECT_THROW(Rounded(seconds), NoSuchObject) << seconds;
}

// Microseconds since 1904 that 64 bits hold, while those since 1970 are too many for them.
TEST(DatesOfValues, ThatNoTimeOfTheLanguageCanHoldAreNone) {
    EXPECT_THROW(MicrosecondsOf(BinaryDate(-0x1p63 / 1e6 - since1904 + 1e9)), NoSuchObject);
}

TEST(DatesOfValues, ReachAsFarAsTimesDo) {
    double const late = 0x1p63 / 1e6 - since1904 - 1e6;
    EXPECT_GT(MicrosecondsOf(BinaryDate(late)), 0x1p62);
}
