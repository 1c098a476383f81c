#include "system/TimeAndDate.h"

#include "Evaluator/Context.h"
#include "Evaluator/Output.h"

namespace {

time_interval SinceLocalEpoch(moment const& time) { return time - january_1_1904_Local(); }

unsigned char LowByte(integer const& number) {
    return static_cast<unsigned char>(static_cast<long long>(number));
}

}  // namespace

// The time of day

thetime::thetime(moment const& time) {
    time_interval rest = SinceLocalEpoch(time) % day_of();
    hour = LowByte(rest / hour_of());
    rest = rest % hour_of();
    minute = LowByte(rest / minute_of());
    rest = rest % minute_of();
    second = LowByte(rest / second_of());
}

thetime time_of(moment const& time) { return thetime(time); }
integer hour_of(moment const& time) { return thetime(time).hour; }
integer minute_of(moment const& time) { return thetime(time).minute; }
integer second_of(moment const& time) { return thetime(time).second; }
integer hour_of(thetime const& time) { return time.hour; }
integer minute_of(thetime const& time) { return time.minute; }
integer second_of(thetime const& time) { return time.second; }

// The date

date date_of(moment const& time) {
    long long const days = SinceLocalEpoch(time) / day_of();
    date day{{1, 1, 1904}};
    day.record += static_cast<std::uint32_t>(days);
    return day;
}

integer year_of(moment const& time) { return year_of(date_of(time)); }
integer month_of(moment const& time) { return month_of(date_of(time)); }
integer day_of(moment const& time) { return day_of(date_of(time)); }
integer weekday_of(moment const& time) { return weekday_of(date_of(time)); }
integer year_of(date const& day) { return day.record.year; }
integer month_of(date const& day) { return day.record.month; }
integer day_of(date const& day) { return day.record.day; }
integer weekday_of(date const& day) { return static_cast<long long>(day.record.DayOfWeek()); }

// Texts

namespace {

constexpr unsigned int longestText = 20;

Data RoomForText() {
    return {static_cast<unsigned char*>(Allocate_Inspector_Memory(longestText)), std::size_t{longestText}};
}

inspector_string StringOf(Buffer const& text) {
    ConstData const written = text.Written();
    return {written.begin(), static_cast<std::uint32_t>(written.Size())};
}

}  // namespace

// Minute and second are left as they are on purpose: this is the form that the text has.
inspector_string hourasString(thetime const& time) {
    Buffer text(RoomForText());
    text << Numeral(time.hour).PadTo(2) << ":" << Numeral(time.minute) << ":" << Numeral(time.second);
    return StringOf(text);
}

inspector_string dateasString(date const& day) {
    DateRecord const& record = day.record;
    Buffer text(RoomForText());
    text << record.DayOfWeek() << ", " << Numeral(static_cast<unsigned long>(record.day)).PadTo(2) << " "
         << static_cast<Month>(record.month) << " " << Numeral(static_cast<unsigned long>(record.year));
    return StringOf(text);
}
