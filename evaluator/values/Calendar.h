#pragma once

// The Gregorian calendar as arithmetic: dates to and from a count of days. Internal to the host.

#include <cstdint>

namespace Evaluator {

struct CivilDate {
    std::int64_t year;
    std::uint32_t month;
    std::uint32_t day;
};

inline constexpr std::int64_t secondsPerDay = 86'400;
inline constexpr std::int64_t microsecondsPerSecond = 1'000'000;
inline constexpr std::int64_t microsecondsPerDay = secondsPerDay * microsecondsPerSecond;

/// A quotient rounded down, and the remainder that leaves, which has the divisor's sign.
/// Requires: the divisor is not zero, and not -1 with the least number as dividend.
constexpr std::int64_t FloorDivide(std::int64_t dividend, std::int64_t divisor) {
    std::int64_t const quotient = dividend / divisor;
    bool const inexact = dividend % divisor != 0;
    return inexact && (dividend < 0) != (divisor < 0) ? quotient - 1 : quotient;
}
constexpr std::int64_t FloorModulo(std::int64_t dividend, std::int64_t divisor) {
    std::int64_t const remainder = dividend % divisor;
    return remainder != 0 && (remainder < 0) != (divisor < 0) ? remainder + divisor : remainder;
}

// The years are counted from March, so that the leap day is a year's last, in eras of 400 years, after which
// the calendar repeats. The months from March on are 31, 30, 31, 30, 31 days long, and again, which is what
// (153 * month + 2) / 5 counts. Day 0 is 1 January 1970, day 719468 of the calendar that begins on 1 March 0.

/// Days from 1 January 1970 to the date. Requires: a year of at most 48 bits.
constexpr std::int64_t DaysFromDate(CivilDate const& date) {
    std::int64_t const year = date.month <= 2 ? date.year - 1 : date.year;
    std::int64_t const era = FloorDivide(year, 400);
    std::int64_t const yearOfEra = year - era * 400;
    std::int64_t const month = (std::int64_t{date.month} + 9) % 12;
    std::int64_t const dayOfYear = (153 * month + 2) / 5 + date.day - 1;
    std::int64_t const dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146'097 + dayOfEra - 719'468;
}

/// The date that many days after 1 January 1970. Requires: a count of at most 60 bits.
constexpr CivilDate DateFromDays(std::int64_t days) {
    std::int64_t const shifted = days + 719'468;
    std::int64_t const era = FloorDivide(shifted, 146'097);
    std::int64_t const dayOfEra = shifted - era * 146'097;
    std::int64_t const yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
    std::int64_t const dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    std::int64_t const month = (5 * dayOfYear + 2) / 153;
    std::int64_t const day = dayOfYear - (153 * month + 2) / 5 + 1;
    std::int64_t const calendarMonth = month < 10 ? month + 3 : month - 9;
    return {yearOfEra + era * 400 + (calendarMonth <= 2 ? 1 : 0), static_cast<std::uint32_t>(calendarMonth),
            static_cast<std::uint32_t>(day)};
}

}  // namespace Evaluator
