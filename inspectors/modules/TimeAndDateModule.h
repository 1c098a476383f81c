#pragma once

#include "frame/Adapters.h"
#include "system/TimeAndDate.h"

/// Times of day and dates of times. The type's name "hours" is the plural phrase of "hour" as well.
class TimeAndDateModule {
    TypeRecord<thetime> hours{"hours"};
    Property<moment, thetime> timeOfTime{"time", "times", "time", "hours", time_of};
    Property<moment, integer> hourOfTime{"hour", "hours", "time", "integer", hour_of};
    Property<moment, integer> minuteOfTime{"minute", "minutes", "time", "integer", minute_of};
    Property<moment, integer> secondOfTime{"second", "seconds", "time", "integer", second_of};
    Property<thetime, integer> hourOfHours{"hour", "hours", "hours", "integer", hour_of};
    Property<thetime, integer> minuteOfHours{"minute", "minutes", "hours", "integer", minute_of};
    Property<thetime, integer> secondOfHours{"second", "seconds", "hours", "integer", second_of};
    TypeRecord<date> dates{"date"};
    Property<moment, date> dateOfTime{"date", "dates", "time", "date", date_of};
    Property<moment, integer> yearOfTime{"year", "years", "time", "integer", year_of};
    Property<moment, integer> monthOfTime{"month", "months", "time", "integer", month_of};
    Property<moment, integer> dayOfTime{"day", "days", "time", "integer", day_of};
    Property<moment, integer> weekdayOfTime{"day_of_week", "days_of_week", "time", "integer", weekday_of};
    Property<date, integer> yearOfDate{"year", "years", "date", "integer", year_of};
    Property<date, integer> monthOfDate{"month", "months", "date", "integer", month_of};
    Property<date, integer> dayOfDate{"day", "days", "date", "integer", day_of};
    Property<date, integer> weekdayOfDate{"day_of_week", "days_of_week", "date", "integer", weekday_of};
    RelationEqual<thetime, thetime> equalHours{"hours", "hours"};
    RelationLess<thetime, thetime> lessHours{"hours", "hours"};
    RelationLessOrEqual<thetime, thetime> lessOrEqualHours{"hours", "hours"};
    RelationEqual<date, date> equalDates{"date", "date"};
    RelationLess<date, date> lessDates{"date", "date"};
    RelationLessOrEqual<date, date> lessOrEqualDates{"date", "date"};
};
