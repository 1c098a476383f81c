// Times and time intervals. Their arithmetic is that of Evaluator/Time.h.

#include "Evaluator/Exceptions.h"
#include "core/Rows.h"
#include "language/Evaluation.h"
#include "values/TimeText.h"

namespace Evaluator {
namespace {

using Interval = time_interval;

template <class A, class B, class R>
R Add(A const& a, B const& b) {
    return a + b;
}
template <class A, class B, class R>
R Subtract(A const& a, B const& b) {
    return a - b;
}
template <class A, class B, class R>
R Multiply(A const& a, B const& b) {
    return a * b;
}
template <class A, class B, class R>
R Divide(A const& a, B const& b) {
    return a / b;
}
template <class A, class B, class R>
R Remainder(A const& a, B const& b) {
    return a % b;
}

std::uint64_t TimeHash(void const* value) {
    return HashOfNumber(
        static_cast<std::uint64_t>(static_cast<moment const*>(value)->SinceEpoch().microseconds));
}
std::uint64_t IntervalHash(void const* value) {
    return HashOfNumber(static_cast<std::uint64_t>(static_cast<Interval const*>(value)->Microseconds()));
}

inspector_string TimeAsText(moment const& time) { return CoreText(TimeText(time)); }
inspector_string IntervalAsText(Interval const& interval) { return CoreText(IntervalText(interval)); }

moment Now() { return Evaluation::Running()->now; }

moment TimeFromText(inspector_string const& text) {
    std::optional<moment> time = ParseTime(text);
    if (!time) throw NoSuchObject();
    return *time;
}

template <Interval (*unit)(), int count = 1>
Interval Unit() {
    return unit() * integer(count);
}

constexpr TypeRow kTypes[] = {
    {"time", sizeof(moment), false, NativeOrder<moment>, TimeHash},
    {"time interval", sizeof(Interval), false, NativeOrder<Interval>, IntervalHash},
};
constexpr PropertyRow kProperties[] = {
    {"now", "nows", "", "", "time", Adapted<Now>::Get},
    {"time", "times", "string", "", "time", Adapted<TimeFromText>::GetIndexed},
    {"second", "seconds", "", "", "time interval", Adapted<Unit<second_of>>::Get},
    {"minute", "minutes", "", "", "time interval", Adapted<Unit<minute_of>>::Get},
    {"hour", "hours", "", "", "time interval", Adapted<Unit<hour_of>>::Get},
    {"day", "days", "", "", "time interval", Adapted<Unit<day_of>>::Get},
    {"week", "weeks", "", "", "time interval", Adapted<Unit<day_of, 7>>::Get},
};
constexpr CastRow kCasts[] = {
    {"string", "time", "string", Adapted<TimeAsText>::Cast},
    {"string", "time interval", "string", Adapted<IntervalAsText>::Cast},
};
constexpr OperatorRow kOperators[] = {
    Row<Add<moment, Interval, moment>>(kOperatorPlus),
    Row<Add<Interval, moment, moment>>(kOperatorPlus),
    Row<Subtract<moment, Interval, moment>>(kOperatorMinus),
    Row<Subtract<moment, moment, Interval>>(kOperatorMinus),
    Row<Equal<moment>>(kRelationEqual),
    Row<Less<moment>>(kRelationLess),
    Row<LessOrEqual<moment>>(kRelationLessOrEqual),
    Row<Add<Interval, Interval, Interval>>(kOperatorPlus),
    Row<Subtract<Interval, Interval, Interval>>(kOperatorMinus),
    Row<Multiply<Interval, integer, Interval>>(kOperatorTimes),
    Row<Multiply<integer, Interval, Interval>>(kOperatorTimes),
    Row<Divide<Interval, Interval, integer>>(kOperatorDividedBy),
    Row<Remainder<Interval, Interval, Interval>>(kOperatorMod),
    Row<Equal<Interval>>(kRelationEqual),
    Row<Less<Interval>>(kRelationLess),
    Row<LessOrEqual<Interval>>(kRelationLessOrEqual),
};

}  // namespace

CorePart Times() { return {kTypes, kProperties, {}, kCasts, kOperators}; }

}  // namespace Evaluator
