#pragma once

// A time taken apart: the local time of day and the local calendar date.
//
// Local time is universal time plus the machine's present offset, for all moments alike. What these throw is
// the host's: ArithmeticOverflow for a moment too far from 1904.

#include "Evaluator/Time.h"
#include "Evaluator/Values.h"

/// A local time of day; fractions of a second are dropped.
struct thetime {
    explicit thetime(moment const& time);

    unsigned char hour;
    unsigned char minute;
    unsigned char second;
};

/// A local date. Days are counted from 1904 without a sign, in 32 bits: a moment before 1904 has a date in
/// the far future.
struct date {
    DateRecord record;
};

thetime time_of(moment const& time);
integer hour_of(moment const& time);
integer minute_of(moment const& time);
integer second_of(moment const& time);
integer hour_of(thetime const& time);
integer minute_of(thetime const& time);
integer second_of(thetime const& time);

date date_of(moment const& time);
integer year_of(moment const& time);
integer month_of(moment const& time);
integer day_of(moment const& time);
/// 1 is Sunday.
integer weekday_of(moment const& time);
integer year_of(date const& day);
integer month_of(date const& day);
integer day_of(date const& day);
integer weekday_of(date const& day);

/// Times of day and dates have no order and no equality: none of these relations ever returns. Each calls
/// itself until the stack is exhausted.
bool operator==(thetime const& left, thetime const& right);
bool operator<(thetime const& left, thetime const& right);
bool operator<=(thetime const& left, thetime const& right);
bool operator==(date const& left, date const& right);
bool operator<(date const& left, date const& right);
bool operator<=(date const& left, date const& right);

/// Texts of at most 20 bytes in inspector memory; DataOverflow when there would be more. Not offered to
/// queries.
///
/// The hour has two digits, minute and second as many as they need: 09:5:7.
inspector_string hourasString(thetime const& time);
/// The day of the week, ", ", the day of the month in two digits, the month's name and the year: Friday, 01
/// May 1908.
inspector_string dateasString(date const& day);
