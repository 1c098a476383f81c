#include "system/TimeAndDate.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <limits>

#include "Evaluator/Exceptions.h"
#include "RegistrationLog.h"
#include "Slot.h"
#include "TimeZone.h"
#include "modules/TimeAndDateModule.h"

namespace {

constexpr std::int64_t noonOfThatDay = 1'795'176'000;  // 2026-11-20 12:00, a Friday, universal time

moment AtSecond(std::int64_t seconds) { return AsMoment(Instant{seconds * 1'000'000}); }
moment LocallyAt(std::int64_t secondsSince1904) {
    return january_1_1904_Local() + second_of() * secondsSince1904;
}

std::string TextOf(inspector_string const& text) { return {text.begin(), text.end()}; }
std::string FieldsOf(thetime const& time) {
    return std::to_string(time.hour) + ":" + std::to_string(time.minute) + ":" + std::to_string(time.second);
}
std::string FieldsOf(date const& day) {
    return std::to_string(day.record.year) + "-" + std::to_string(day.record.month) + "-" +
           std::to_string(day.record.day);
}

// The answer of a registered property.
template <class R, class T>
R Answer(std::string const& row, T const& object) {
    Registration const one = RegisteredAs(row);
    Slot<R> slot;
    one.get(slot, nullptr, &object, nullptr, one.context);
    return slot.Value();
}

template <class T>
long long Number(std::string const& phrases, std::string const& type, T const& object) {
    return Answer<integer>("property " + phrases + " of \"" + type + "\": \"integer\"", object);
}

}  // namespace

TEST(TimeAndDateModule, RegistersItsTableInOrderAndWithdrawsItInTheOpposite) {
    std::vector<std::string> rows{
        "type \"hours\"",
        "property \"time\" \"times\" of \"time\": \"hours\"",
        "property \"hour\" \"hours\" of \"time\": \"integer\"",
        "property \"minute\" \"minutes\" of \"time\": \"integer\"",
        "property \"second\" \"seconds\" of \"time\": \"integer\"",
        "property \"hour\" \"hours\" of \"hours\": \"integer\"",
        "property \"minute\" \"minutes\" of \"hours\": \"integer\"",
        "property \"second\" \"seconds\" of \"hours\": \"integer\"",
        "type \"date\"",
        "property \"date\" \"dates\" of \"time\": \"date\"",
        "property \"year\" \"years\" of \"time\": \"integer\"",
        "property \"month\" \"months\" of \"time\": \"integer\"",
        "property \"day\" \"days\" of \"time\": \"integer\"",
        "property \"day_of_week\" \"days_of_week\" of \"time\": \"integer\"",
        "property \"year\" \"years\" of \"date\": \"integer\"",
        "property \"month\" \"months\" of \"date\": \"integer\"",
        "property \"day\" \"days\" of \"date\": \"integer\"",
        "property \"day_of_week\" \"days_of_week\" of \"date\": \"integer\"",
        "operator 6 \"hours\" \"hours\": \"boolean\"",
        "operator 7 \"hours\" \"hours\": \"boolean\"",
        "operator 8 \"hours\" \"hours\": \"boolean\"",
        "operator 6 \"date\" \"date\": \"boolean\"",
        "operator 7 \"date\" \"date\": \"boolean\"",
        "operator 8 \"date\" \"date\": \"boolean\"",
    };
    ForgetWithdrawn();
    {
        TimeAndDateModule const module;
        EXPECT_EQ(rows, RegisteredRows());
        for (Registration const& one : Registered()) EXPECT_EQ(nullptr, one.fingerprint) << one.row;
        EXPECT_EQ(3u, RegisteredAs("type \"hours\"").valueSize);
        EXPECT_EQ(12u, RegisteredAs("type \"date\"").valueSize);
    }
    std::reverse(rows.begin(), rows.end());
    EXPECT_EQ(rows, Withdrawn());
}

TEST(TimeAndDateModule, AnswersEveryRow) {
    TimeZone const zone("UTC");
    TimeAndDateModule const module;
    moment const time = AtSecond(noonOfThatDay + 34 * 60 + 56);
    thetime const clock = Answer<thetime>("property \"time\" \"times\" of \"time\": \"hours\"", time);
    EXPECT_EQ("12:34:56", FieldsOf(clock));
    EXPECT_EQ(12, Number("\"hour\" \"hours\"", "time", time));
    EXPECT_EQ(34, Number("\"minute\" \"minutes\"", "time", time));
    EXPECT_EQ(56, Number("\"second\" \"seconds\"", "time", time));
    EXPECT_EQ(12, Number("\"hour\" \"hours\"", "hours", clock));
    EXPECT_EQ(34, Number("\"minute\" \"minutes\"", "hours", clock));
    EXPECT_EQ(56, Number("\"second\" \"seconds\"", "hours", clock));
    date const day = Answer<date>("property \"date\" \"dates\" of \"time\": \"date\"", time);
    EXPECT_EQ("2026-11-20", FieldsOf(day));
    EXPECT_EQ(2026, Number("\"year\" \"years\"", "time", time));
    EXPECT_EQ(11, Number("\"month\" \"months\"", "time", time));
    EXPECT_EQ(20, Number("\"day\" \"days\"", "time", time));
    EXPECT_EQ(6, Number("\"day_of_week\" \"days_of_week\"", "time", time));
    EXPECT_EQ(2026, Number("\"year\" \"years\"", "date", day));
    EXPECT_EQ(11, Number("\"month\" \"months\"", "date", day));
    EXPECT_EQ(20, Number("\"day\" \"days\"", "date", day));
    EXPECT_EQ(6, Number("\"day_of_week\" \"days_of_week\"", "date", day));
}

TEST(TimeOfDay, EndsOneSecondBeforeLocalMidnight) {
    for (char const* name : {"UTC", "Asia/Kolkata", "America/New_York"}) {
        TimeZone const zone(name);
        EXPECT_EQ("23:59:59", FieldsOf(time_of(LocallyAt(86'400 - 1)))) << name;
        EXPECT_EQ("0:0:0", FieldsOf(time_of(LocallyAt(86'400)))) << name;
        EXPECT_EQ("1904-1-1", FieldsOf(date_of(LocallyAt(86'400 - 1)))) << name;
        EXPECT_EQ("1904-1-2", FieldsOf(date_of(LocallyAt(86'400)))) << name;
    }
}

TEST(TimeOfDay, DropsFractionsOfASecond) {
    TimeZone const zone("UTC");
    EXPECT_EQ("0:0:0", FieldsOf(time_of(AsMoment(Instant{999'999}))));
    EXPECT_EQ("0:0:1", FieldsOf(time_of(AsMoment(Instant{1'000'000}))));
}

TEST(TimeAndDate, OfTheLocalEpochAreItsFirstSecond) {
    for (char const* name : {"UTC", "Asia/Kolkata", "America/New_York"}) {
        TimeZone const zone(name);
        EXPECT_EQ("0:0:0", FieldsOf(time_of(january_1_1904_Local()))) << name;
        EXPECT_EQ("1904-1-1", FieldsOf(date_of(january_1_1904_Local()))) << name;
        EXPECT_EQ(6, weekday_of(january_1_1904_Local())) << name;
    }
}

TEST(TimeAndDate, AreThoseOfTheZone) {
    struct {
        char const* zone;
        char const* time;
        char const* day;
    } const cases[] = {{"UTC", "12:0:0", "2026-11-20"},
                       {"Asia/Kolkata", "17:30:0", "2026-11-20"},
                       {"XYZ13:00:01", "22:59:59", "2026-11-19"},
                       {"XYZ-14", "2:0:0", "2026-11-21"}};
    for (auto const& one : cases) {
        TimeZone const zone(one.zone);
        EXPECT_EQ(one.time, FieldsOf(time_of(AtSecond(noonOfThatDay)))) << one.zone;
        EXPECT_EQ(one.day, FieldsOf(date_of(AtSecond(noonOfThatDay)))) << one.zone;
    }
}

TEST(TimeAndDate, UseThePresentOffsetForTimesOfAnotherSeason) {
    TimeZone const zone("America/New_York");
    moment const winter = AtSecond(1'768'478'400);  // 2026-01-15 12:00, universal time
    moment const summer = AtSecond(1'784'116'800);  // 2026-07-15 12:00, universal time
    EXPECT_EQ(hour_of(winter), hour_of(summer));
    EXPECT_EQ((24 + 12 + Evaluator::LocalOffset() / hour_of()) % 24, hour_of(summer));
}

TEST(TimeAndDate, BeforeTheEpochHaveATimeOfDayAndAFarDate) {
    TimeZone const zone("Asia/Kolkata");
    EXPECT_EQ("23:59:59", FieldsOf(time_of(LocallyAt(-1))));
    EXPECT_EQ("0:0:0", FieldsOf(time_of(LocallyAt(-86'400))));
    // One day before the epoch, counted in 32 bits without a sign.
    EXPECT_EQ("11761125-1-19", FieldsOf(date_of(LocallyAt(-1))));
    EXPECT_EQ("11761125-1-18", FieldsOf(date_of(LocallyAt(-86'401))));
}

TEST(TimeAndDate, TooFarFromTheEpochAreAnOverflow) {
    TimeZone const zone("UTC");
    moment const last = AsMoment(Instant{std::numeric_limits<std::int64_t>::max()});
    EXPECT_THROW(time_of(last), ArithmeticOverflow);
    EXPECT_THROW(date_of(last), ArithmeticOverflow);
    moment const first = AsMoment(Instant{std::numeric_limits<std::int64_t>::min()});
    EXPECT_EQ("19:59:5", FieldsOf(time_of(first)));
}

TEST(TextForms, PadTheHourOnly) {
    TimeZone const zone("UTC");
    EXPECT_EQ("09:5:7", TextOf(hourasString(time_of(AtSecond(9 * 3600 + 5 * 60 + 7)))));
    EXPECT_EQ("00:0:0", TextOf(hourasString(time_of(AtSecond(0)))));
    EXPECT_EQ("23:59:59", TextOf(hourasString(time_of(AtSecond(-1)))));
}

TEST(TextForms, OfADateNameItsDayAndMonth) {
    EXPECT_EQ("Friday, 01 May 1908", TextOf(dateasString(date{{1, 5, 1908}})));
    EXPECT_EQ("Monday, 15 June 2026", TextOf(dateasString(date{{15, 6, 2026}})));  // all of the 20 bytes
}

TEST(TextForms, OfADateThatNeedMoreThanTwentyBytesAreAnOverflow) {
    EXPECT_THROW(dateasString(date{{20, 11, 2026}}), DataOverflow);
    EXPECT_THROW(dateasString(date{{16, 6, 2026}}), DataOverflow);
    EXPECT_THROW(dateasString(date{{1, 5, 19080}}), DataOverflow);
}

// The relations

namespace {

// In a process of its own with a stack of 1 MiB. One that looped instead would be ended by the alarm.
template <class Value>
void CompareOnASmallStack(bool (*relation)(Value const&, Value const&), Value const& value) {
    rlimit const stack{1 << 20, 1 << 20};
    rlimit const noCore{0, 0};
    setrlimit(RLIMIT_STACK, &stack);
    setrlimit(RLIMIT_CORE, &noCore);
    std::signal(SIGALRM, SIG_DFL);
    alarm(60);
    bool const answer = relation(value, value);
    _exit(answer ? 10 : 11);
}

template <class Value>
void ExpectToExhaustTheStack(bool (*relation)(Value const&, Value const&), Value const& value) {
#ifdef ZELQ_ADDRESS_SANITIZER
    EXPECT_DEATH(CompareOnASmallStack(relation, value), "stack-overflow");
#else
    EXPECT_EXIT(CompareOnASmallStack(relation, value), testing::KilledBySignal(SIGSEGV), "");
#endif
}

template <class Value>
void ExpectNoRelationToReturn(Value const& value) {
    ExpectToExhaustTheStack<Value>(operator==, value);
    ExpectToExhaustTheStack<Value>(operator<, value);
    ExpectToExhaustTheStack<Value>(operator<=, value);
}

}  // namespace

TEST(RelationsOfTimesOfDay, NeverComplete) { ExpectNoRelationToReturn(time_of(AtSecond(0))); }
TEST(RelationsOfDates, NeverComplete) { ExpectNoRelationToReturn(date_of(AtSecond(0))); }
