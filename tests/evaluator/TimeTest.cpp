#include "Evaluator/Time.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <limits>
#include <random>

#include "Evaluator/Exceptions.h"
#include "Evaluator/Output.h"
#include "TextOf.h"
#include "TimeZone.h"

namespace {

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

moment At(std::int64_t microseconds) { return AsMoment(Instant{microseconds}); }
time_interval Lasting(std::int64_t microseconds) { return time_interval(microseconds); }
std::int64_t Count(moment const& time) { return time.SinceEpoch().microseconds; }

template <class Name>
std::string Written(Name name) {
    Buffer buffer;
    buffer << name;
    return TextOf(buffer.Written());
}

DateRecord Advanced(DateRecord date, unsigned long days) { return date += days; }

std::string TextOf(DateRecord const& date) {
    return std::to_string(date.year) + "-" + std::to_string(date.month) + "-" + std::to_string(date.day);
}

}  // namespace

TEST(Time, UnitsAreWhatTheirNamesSay) {
    EXPECT_EQ(1, microsecond_of().Microseconds());
    EXPECT_EQ(1'000'000, second_of().Microseconds());
    EXPECT_EQ(60'000'000, minute_of().Microseconds());
    EXPECT_EQ(3'600'000'000, hour_of().Microseconds());
    EXPECT_EQ(86'400'000'000, day_of().Microseconds());
}

TEST(Time, ArithmeticIsExact) {
    EXPECT_EQ(At(7), At(5) + Lasting(2));
    EXPECT_EQ(At(7), Lasting(2) + At(5));
    EXPECT_EQ(At(3), At(5) - Lasting(2));
    EXPECT_EQ(Lasting(-2), At(3) - At(5));
    EXPECT_EQ(Lasting(7), Lasting(5) + Lasting(2));
    EXPECT_EQ(Lasting(3), Lasting(5) - Lasting(2));
    EXPECT_EQ(Lasting(-15), Lasting(5) * integer(-3));
    EXPECT_EQ(Lasting(-15), integer(-3) * Lasting(5));
    EXPECT_EQ(Lasting(7'200'000'000), hour_of() * 2);
}

TEST(Time, RelationsFollowTheOrderOfTime) {
    EXPECT_TRUE(At(-1) < At(0));
    EXPECT_TRUE(At(0) <= At(0));
    EXPECT_FALSE(At(1) <= At(0));
    EXPECT_TRUE(At(4) == At(4));
    EXPECT_TRUE(Lasting(-1) < Lasting(0));
    EXPECT_TRUE(Lasting(0) <= Lasting(0));
    EXPECT_FALSE(Lasting(2) == Lasting(3));
}

TEST(Time, OverflowIsAnError) {
    EXPECT_THROW(At(largest) + Lasting(1), ArithmeticOverflow);
    EXPECT_THROW(Lasting(-1) + At(least), ArithmeticOverflow);
    EXPECT_THROW(At(least) - Lasting(1), ArithmeticOverflow);
    EXPECT_THROW(At(largest) - At(-1), ArithmeticOverflow);
    EXPECT_THROW(Lasting(largest) + Lasting(1), ArithmeticOverflow);
    EXPECT_THROW(Lasting(0) - Lasting(least), ArithmeticOverflow);
    EXPECT_THROW(Lasting(largest) * integer(2), ArithmeticOverflow);
    EXPECT_THROW(integer(-1) * Lasting(least), ArithmeticOverflow);
    EXPECT_THROW(Lasting(least) / Lasting(-1), ArithmeticOverflow);
    EXPECT_EQ(At(least), At(0) + Lasting(least));
    EXPECT_EQ(Lasting(0), Lasting(least) % Lasting(-1));
}

TEST(Time, DivisionByAnIntervalOfZeroIsAnError) {
    EXPECT_THROW(Lasting(1) / Lasting(0), DivisionByZero);
    EXPECT_THROW(Lasting(1) % Lasting(0), DivisionByZero);
}

TEST(Time, QuotientsAreRoundedDownAndRemaindersFollow) {
    struct {
        std::int64_t dividend, divisor, quotient, remainder;
    } const cases[] = {{7, 2, 3, 1},
                       {-7, 2, -4, 1},
                       {7, -2, -4, -1},
                       {-7, -2, 3, -1},
                       {6, 2, 3, 0},
                       {-6, 2, -3, 0},
                       {6, -2, -3, 0},
                       {0, 5, 0, 0},
                       {-1, largest, -1, largest - 1},
                       {1, least, -1, least + 1},
                       {least, least, 1, 0},
                       {least, 1, least, 0}};
    for (auto const& one : cases) {
        EXPECT_EQ(one.quotient, Lasting(one.dividend) / Lasting(one.divisor))
            << one.dividend << "/" << one.divisor;
        EXPECT_EQ(one.remainder, (Lasting(one.dividend) % Lasting(one.divisor)).Microseconds())
            << one.dividend << "%" << one.divisor;
    }
}

TEST(Time, TheEpochOf1904IsMidnightOfItsDay) {
    auto const start = std::chrono::sys_days(std::chrono::year(1904) / 1 / 1).time_since_epoch();
    EXPECT_EQ(std::chrono::microseconds(start).count(), Count(january_1_1904_GMT()));
}

TEST(LocalTime, HasThePresentOffsetOfTheZone) {
    struct {
        char const* zone;
        std::int64_t seconds;
    } const cases[] = {{"UTC", 0}, {"Asia/Kolkata", 19'800}, {"XYZ5:30", -19'800}, {"XYZ-14", 50'400}};
    for (auto const& one : cases) {
        TimeZone const zone(one.zone);
        EXPECT_EQ(one.seconds * 1'000'000, Evaluator::LocalOffset().Microseconds()) << one.zone;
        EXPECT_EQ(Lasting(one.seconds * 1'000'000), january_1_1904_GMT() - january_1_1904_Local())
            << one.zone;
    }
}

TEST(LocalTime, OffsetInAZoneWithSummerTimeIsThatOfNow) {
    TimeZone const zone("America/New_York");
    std::time_t const now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    EXPECT_EQ(local.tm_gmtoff * 1'000'000, Evaluator::LocalOffset().Microseconds());
    EXPECT_NE(0, local.tm_gmtoff);
}

TEST(LocalTime, OffsetCanBeHeld) {
    TimeZone const outer("XYZ-1");
    {
        Evaluator::LocalOffsetHold const hold;
        TimeZone const inner("XYZ-2");
        EXPECT_EQ(3'600'000'000, Evaluator::LocalOffset().Microseconds());
        {
            Evaluator::LocalOffsetHold const nested;
            EXPECT_EQ(3'600'000'000, Evaluator::LocalOffset().Microseconds());
        }
        EXPECT_EQ(3'600'000'000, Evaluator::LocalOffset().Microseconds());
    }
    TimeZone const later("XYZ-2");
    EXPECT_EQ(7'200'000'000, Evaluator::LocalOffset().Microseconds());
}

TEST(Names, OfMonthsAndDaysAreWrittenInFull) {
    EXPECT_EQ("January", Written(Month::January));
    EXPECT_EQ("September", Written(Month(9)));
    EXPECT_EQ("December", Written(Month(12)));
    EXPECT_EQ("Sunday", Written(DayOfWeek(1)));
    EXPECT_EQ("Wednesday", Written(DayOfWeek::Wednesday));
    EXPECT_EQ("Saturday", Written(DayOfWeek(7)));
}

TEST(Names, OfNumbersThatAreNoneAreRefused) {
    EXPECT_THROW(Written(Month(0)), DataOverflow);
    EXPECT_THROW(Written(Month(13)), DataOverflow);
    EXPECT_THROW(Written(DayOfWeek(0)), DataOverflow);
    EXPECT_THROW(Written(DayOfWeek(8)), DataOverflow);
}

TEST(DateRecord, BeginsIn1904) { EXPECT_EQ("1904-1-1", TextOf(DateRecord())); }

TEST(DateRecord, AdvancesOverMonthsAndLeapDays) {
    EXPECT_EQ("1904-1-1", TextOf(Advanced({}, 0)));
    EXPECT_EQ("1904-2-29", TextOf(Advanced({}, 59)));
    EXPECT_EQ("1904-3-1", TextOf(Advanced({}, 60)));
    EXPECT_EQ("1905-1-1", TextOf(Advanced({}, 366)));
    EXPECT_EQ("2000-2-29", TextOf(Advanced({28, 2, 2000}, 1)));
    EXPECT_EQ("2100-3-1", TextOf(Advanced({28, 2, 2100}, 1)));
    EXPECT_EQ("1970-1-1", TextOf(Advanced({31, 12, 1969}, 1)));
}

TEST(DateRecord, AgreesWithTheLibraryOnEveryDayOf800Years) {
    DateRecord stepped{1, 1, 1600};
    auto day = std::chrono::sys_days(std::chrono::year(1600) / 1 / 1);
    for (unsigned long count = 0; count < 2 * 146'097; ++count, day += std::chrono::days(1), stepped += 1) {
        std::chrono::year_month_day const expected(day);
        ASSERT_EQ(static_cast<int>(expected.year()), static_cast<int>(stepped.year));
        ASSERT_EQ(static_cast<unsigned>(expected.month()), stepped.month);
        ASSERT_EQ(static_cast<unsigned>(expected.day()), stepped.day);
        ASSERT_EQ(std::chrono::weekday(day).c_encoding() + 1, static_cast<unsigned>(stepped.DayOfWeek()));
        ASSERT_EQ(TextOf(stepped), TextOf(Advanced({1, 1, 1600}, count)));
    }
}

TEST(DateRecord, TakesTheLargestCountOf32Bits) {
    DateRecord const far = Advanced({}, 0xFFFFFFFF);
    EXPECT_EQ("11761125-1-19", TextOf(far));
    EXPECT_EQ(TextOf(far), TextOf(Advanced(Advanced({}, 0x80000000), 0x7FFFFFFF)));
}

TEST(DateRecord, RefusesAYearOfMoreThan32BitsAndStaysAsItIs) {
    DateRecord date{31, 12, 0xFFFFFFFF};
    EXPECT_THROW(date += 1, ArithmeticOverflow);
    EXPECT_THROW(date += ~0ul, ArithmeticOverflow);
    EXPECT_EQ("4294967295-12-31", TextOf(date));
    EXPECT_EQ("4294967295-12-31", TextOf(date += 0));
    EXPECT_THROW(DateRecord() += ~0ul, ArithmeticOverflow);
}

TEST(DateRecord, KnowsTheDayOfTheWeek) {
    EXPECT_EQ(DayOfWeek::Friday, DateRecord().DayOfWeek());
    EXPECT_EQ(DayOfWeek::Thursday, (DateRecord{1, 1, 1970}.DayOfWeek()));
    EXPECT_EQ(DayOfWeek::Saturday, (DateRecord{1, 1, 2000}.DayOfWeek()));
    EXPECT_EQ(DayOfWeek::Sunday, (DateRecord{31, 12, 1899}.DayOfWeek()));
    EXPECT_EQ(DayOfWeek::Monday, (DateRecord{1, 1, 1}.DayOfWeek()));
}
