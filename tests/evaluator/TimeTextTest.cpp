#include "values/TimeText.h"

#include <gtest/gtest.h>

#include <limits>

#include "TextOf.h"
#include "TimeZone.h"

using namespace Evaluator;

namespace {

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t second = 1'000'000;
constexpr std::int64_t noonOfThatDay = 1'795'176'000;  // 2026-11-20, universal time

std::string TextAt(std::int64_t microseconds) { return TimeText(AsMoment(Instant{microseconds})); }
std::string TextLasting(std::int64_t microseconds) { return IntervalText(time_interval(microseconds)); }

std::optional<std::int64_t> Parsed(std::string const& text) {
    std::optional<moment> const time = ParseTime(BytesOf(text));
    return time ? std::optional(time->SinceEpoch().microseconds) : std::nullopt;
}

std::optional<std::int64_t> ParsedSeconds(std::string const& text) {
    std::optional<std::int64_t> const count = Parsed(text);
    EXPECT_TRUE(!count || *count % second == 0) << text;
    return count ? std::optional(*count / second) : std::nullopt;
}

}  // namespace

TEST(TimeText, IsIso8601WithTheOffset) {
    TimeZone const zone("UTC");
    EXPECT_EQ("2026-11-20T12:00:00+00:00", TextAt(noonOfThatDay * second));
    EXPECT_EQ("1970-01-01T00:00:00+00:00", TextAt(0));
    EXPECT_EQ("1969-12-31T23:59:59+00:00", TextAt(-second));
    EXPECT_EQ("1904-01-01T00:00:00+00:00", TimeText(january_1_1904_GMT()));
}

TEST(TimeText, HasSixMoreDigitsWhenThereAreMicroseconds) {
    TimeZone const zone("UTC");
    EXPECT_EQ("1970-01-01T00:00:00.000001+00:00", TextAt(1));
    EXPECT_EQ("1970-01-01T00:00:00.500000+00:00", TextAt(second / 2));
    EXPECT_EQ("1969-12-31T23:59:59.999999+00:00", TextAt(-1));
}

TEST(TimeText, IsLocalTime) {
    struct {
        char const* zone;
        char const* text;
    } const cases[] = {{"Asia/Kolkata", "2026-11-20T17:30:00+05:30"},
                       {"XYZ13", "2026-11-19T23:00:00-13:00"},
                       {"XYZ-14", "2026-11-21T02:00:00+14:00"},
                       {"XYZ0:00:01", "2026-11-20T11:59:59-00:00:01"}};
    for (auto const& one : cases) {
        TimeZone const zone(one.zone);
        EXPECT_EQ(one.text, TextAt(noonOfThatDay * second)) << one.zone;
    }
}

TEST(TimeText, HasASignForYearsOfAnotherLength) {
    TimeZone const zone("UTC");
    EXPECT_EQ("0000-01-01T00:00:00+00:00", TextAt(-62'167'219'200 * second));
    EXPECT_EQ("-0001-12-31T23:59:59+00:00", TextAt((-62'167'219'200 - 1) * second));
    EXPECT_EQ("9999-12-31T23:59:59+00:00", TextAt(253'402'300'799 * second));
    EXPECT_EQ("+10000-01-01T00:00:00+00:00", TextAt(253'402'300'800 * second));
}

TEST(TimeText, WritesTheExtremes) {
    TimeZone const zone("XYZ-14");
    EXPECT_EQ("+294247-01-10T18:00:54.775807+14:00", TextAt(largest));
    EXPECT_EQ("-290308-12-22T09:59:05.224192+14:00", TextAt(least));
}

TEST(ParseTime, ReadsWhatTimeTextWrites) {
    for (char const* name : {"UTC", "Asia/Kolkata", "XYZ13", "XYZ-14", "XYZ-1:02:03"}) {
        TimeZone const zone(name);
        for (std::int64_t count : {std::int64_t{0}, std::int64_t{-1}, least, least + 1, largest, largest - 1,
                                   noonOfThatDay * second, -62'167'219'200 * second - 1})
            EXPECT_EQ(count, Parsed(TextAt(count))) << TextAt(count);
    }
}

TEST(ParseTime, TakesTheFormsOfIso8601) {
    TimeZone const zone("XYZ-5");  // does not matter
    EXPECT_EQ(noonOfThatDay, ParsedSeconds("2026-11-20T12:00:00Z"));
    EXPECT_EQ(noonOfThatDay, ParsedSeconds("2026-11-20T12:00:00"));
    EXPECT_EQ(noonOfThatDay, ParsedSeconds("2026-11-20 12:00"));
    EXPECT_EQ(noonOfThatDay, ParsedSeconds("2026-11-20T12:00Z"));
    EXPECT_EQ(noonOfThatDay, ParsedSeconds("2026-11-20T17:30+05:30"));
    EXPECT_EQ(noonOfThatDay, ParsedSeconds("2026-11-20T17:30+0530"));
    EXPECT_EQ(noonOfThatDay, ParsedSeconds("2026-11-20T01:00:00-11"));
    EXPECT_EQ(noonOfThatDay - 12 * 3600, ParsedSeconds("2026-11-20"));
    EXPECT_EQ(noonOfThatDay, ParsedSeconds("+2026-11-20T12:00"));
    EXPECT_EQ(253'402'300'800, ParsedSeconds("+10000-01-01"));
    EXPECT_EQ(253'402'300'800, ParsedSeconds("+010000-01-01"));
    EXPECT_EQ(-62'167'219'200, ParsedSeconds("0000-01-01"));
    EXPECT_EQ(-62'167'219'200 - 86'400, ParsedSeconds("-0001-12-31"));
}

TEST(ParseTime, TakesFractionsOfAnyLength) {
    EXPECT_EQ(500'000, Parsed("1970-01-01T00:00:00.5"));
    EXPECT_EQ(500'000, Parsed("1970-01-01T00:00:00,5Z"));
    EXPECT_EQ(1, Parsed("1970-01-01T00:00:00.000001"));
    EXPECT_EQ(123'456, Parsed("1970-01-01T00:00:00.123456999999999999999999999+00"));
    EXPECT_EQ(-1, Parsed("1969-12-31T23:59:59.999999"));
}

TEST(ParseTime, KnowsTheCalendar) {
    EXPECT_TRUE(Parsed("2000-02-29"));
    EXPECT_TRUE(Parsed("2024-02-29"));
    EXPECT_FALSE(Parsed("2100-02-29"));
    EXPECT_FALSE(Parsed("2023-02-29"));
    EXPECT_FALSE(Parsed("2023-04-31"));
    EXPECT_FALSE(Parsed("2023-00-10"));
    EXPECT_FALSE(Parsed("2023-13-10"));
    EXPECT_FALSE(Parsed("2023-12-00"));
    EXPECT_FALSE(Parsed("2023-12-32"));
}

TEST(ParseTime, RefusesAnythingElse) {
    std::string const texts[] = {"",
                                 "now",
                                 "2026",
                                 "2026-11",
                                 "2026-1-20",
                                 "20261120",
                                 "26-11-20",
                                 "-0000-01-01",
                                 "12026-11-20",
                                 "2026-11-20T",
                                 "2026-11-20Z",
                                 "2026-11-20T12",
                                 "2026-11-20T24:00",
                                 "2026-11-20T23:60",
                                 "2026-11-20T23:59:60",
                                 "2026-11-20T12:00:",
                                 "2026-11-20T12:00:00.",
                                 "2026-11-20T12:00:00.Z",
                                 "2026-11-20T12:00:00 Z",
                                 "2026-11-20T12:00:00z",
                                 "2026-11-20T12:00:00ZZ",
                                 "2026-11-20T12:00:00+",
                                 "2026-11-20T12:00:00+5",
                                 "2026-11-20T12:00:00+05:",
                                 "2026-11-20T12:00:00+05:3",
                                 "2026-11-20T12:00:00+24:00",
                                 "2026-11-20T12:00:00+05:60",
                                 "2026-11-20T12:00:00+05:30x",
                                 "2026-11-20  12:00",
                                 "2026-11-20_12:00",
                                 " 2026-11-20",
                                 "2026-11-20 ",
                                 "2026-11--1",
                                 std::string("2026-11-20\0", 11)};
    for (std::string const& text : texts) EXPECT_FALSE(Parsed(text)) << text;
}

TEST(ParseTime, RefusesTimesOutOfRange) {
    EXPECT_TRUE(Parsed("+294247-01-10T04:00:54.775807Z"));
    EXPECT_FALSE(Parsed("+294247-01-10T04:00:54.775808Z"));
    EXPECT_TRUE(Parsed("-290308-12-21T19:59:05.224192Z"));
    EXPECT_FALSE(Parsed("-290308-12-21T19:59:05.224191Z"));
    EXPECT_FALSE(Parsed("+9999999-12-31"));
    EXPECT_FALSE(Parsed("-9999999-01-01"));
    EXPECT_FALSE(Parsed("+99999999-01-01"));
    EXPECT_FALSE(Parsed("+" + std::string(1000, '9') + "-01-01"));
}

TEST(IntervalText, LeavesOutWhatIsZero) {
    EXPECT_EQ("00:00:00", TextLasting(0));
    EXPECT_EQ("00:00:01", TextLasting(second));
    EXPECT_EQ("23:59:59.999999", TextLasting(86'400 * second - 1));
    EXPECT_EQ("1 days, 00:00:00", TextLasting(86'400 * second));
    EXPECT_EQ("36525 days, 01:02:03.000004", TextLasting((36'525 * 86'400ll + 3723) * second + 4));
}

TEST(IntervalText, HasOneSignInFront) {
    EXPECT_EQ("-00:00:00.000001", TextLasting(-1));
    EXPECT_EQ("-00:00:01.500000", TextLasting(-3 * second / 2));
    EXPECT_EQ("-2 days, 00:00:00", TextLasting(-172'800 * second));
}

TEST(IntervalText, WritesTheExtremes) {
    EXPECT_EQ("106751991 days, 04:00:54.775807", TextLasting(largest));
    EXPECT_EQ("-106751991 days, 04:00:54.775808", TextLasting(least));
}
