#pragma once

// Points in time, durations and calendar dates.
//
// All arithmetic is exact to the microsecond and checked: what 64 bits of microseconds cannot hold is an
// ArithmeticOverflow, division by an interval of zero a DivisionByZero.

#include <compare>
#include <cstdint>

#include "Evaluator/Values.h"

class Buffer;

/// Microseconds since 1 January 1970, universal time.
struct Instant {
    std::int64_t microseconds = 0;

    friend constexpr auto operator<=>(Instant const&, Instant const&) = default;
};

/// A signed duration. Opaque to inspector libraries, which handle it through the operators below.
class time_interval {
  public:
    constexpr time_interval() = default;
    constexpr explicit time_interval(std::int64_t count) : microseconds(count) {}
    constexpr std::int64_t Microseconds() const { return microseconds; }

    friend constexpr auto operator<=>(time_interval const&, time_interval const&) = default;

  private:
    std::int64_t microseconds = 0;
};

/// The language's "time": an absolute point in time, to the microsecond. Opaque to inspector libraries.
class moment {
  public:
    constexpr moment() = default;
    constexpr explicit moment(Instant since1970) : instant(since1970) {}
    constexpr Instant SinceEpoch() const { return instant; }

    friend constexpr auto operator<=>(moment const&, moment const&) = default;

  private:
    Instant instant;
};

/// The moment at which 1 January 1904 began in universal time.
EVALUATOR_API moment january_1_1904_GMT();
/// The moment at which 1 January 1904 began in local time, taking the machine's present offset from universal
/// time for that of all times, so that local times do not jump: see Evaluator::LocalOffset.
EVALUATOR_API moment january_1_1904_Local();
EVALUATOR_API moment AsMoment(Instant const& instant);

/// One of each unit. A day has 24 hours.
EVALUATOR_API time_interval microsecond_of();
EVALUATOR_API time_interval second_of();
EVALUATOR_API time_interval minute_of();
EVALUATOR_API time_interval hour_of();
EVALUATOR_API time_interval day_of();

EVALUATOR_API moment operator+(moment const& start, time_interval const& duration);
EVALUATOR_API moment operator+(time_interval const& duration, moment const& start);
EVALUATOR_API moment operator-(moment const& end, time_interval const& duration);
EVALUATOR_API time_interval operator-(moment const& end, moment const& start);
EVALUATOR_API time_interval operator+(time_interval const& left, time_interval const& right);
EVALUATOR_API time_interval operator-(time_interval const& left, time_interval const& right);
EVALUATOR_API time_interval operator*(time_interval const& duration, integer const& factor);
EVALUATOR_API time_interval operator*(integer const& factor, time_interval const& duration);
/// How many times `right` goes into `left`, rounded down: -1 second divided by a day is -1.
EVALUATOR_API integer operator/(time_interval const& left, time_interval const& right);
/// What that leaves over: zero, or of the sign of `right`. -1 second modulo a day is 23:59:59.
EVALUATOR_API time_interval operator%(time_interval const& left, time_interval const& right);

enum class Month : std::uint32_t {
    January = 1,
    February,
    March,
    April,
    May,
    June,
    July,
    August,
    September,
    October,
    November,
    December,
};

enum class DayOfWeek : std::uint32_t { Sunday = 1, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday };

/// Write the English name in full. Throw DataOverflow for a number that is no month's or no day's, and when
/// the name does not fit.
EVALUATOR_API Buffer& operator<<(Buffer& buffer, Month month);
EVALUATOR_API Buffer& operator<<(Buffer& buffer, DayOfWeek day);

/// A date of the Gregorian calendar, which is taken to have been in use at all times.
struct EVALUATOR_API DateRecord {
    /// Advances by that many days, in a time that does not depend on their number. Throws ArithmeticOverflow,
    /// and changes nothing, when the year would need more than 32 bits.
    DateRecord& operator+=(unsigned long days);
    ::DayOfWeek DayOfWeek() const;

    std::uint32_t day = 1;
    std::uint32_t month = 1;
    std::uint32_t year = 1904;
};

namespace Evaluator {

/// Local time minus universal time, in whole seconds: the offset that the machine (TZ, else /etc/localtime)
/// has at present, or the one that a LocalOffsetHold holds.
EVALUATOR_API time_interval LocalOffset();

/// While one of these lives, LocalOffset() stays what it was when the hold was made, on all threads, so that
/// local times within one evaluation agree with each other. Holds nest: the end of one restores the one
/// before.
class EVALUATOR_API LocalOffsetHold {
  public:
    LocalOffsetHold();
    ~LocalOffsetHold();
    LocalOffsetHold(LocalOffsetHold const&) = delete;
    LocalOffsetHold& operator=(LocalOffsetHold const&) = delete;

  private:
    std::int64_t before;
};

}  // namespace Evaluator
