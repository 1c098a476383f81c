#include "Evaluator/Time.h"

#include <ctime>

#include <atomic>
#include <limits>

#include "Evaluator/Exceptions.h"
#include "Evaluator/Output.h"
#include "values/Calendar.h"

using namespace Evaluator;

namespace {

constexpr std::int64_t leastNumber = std::numeric_limits<std::int64_t>::min();

std::int64_t Sum(std::int64_t left, std::int64_t right) {
    std::int64_t sum;
    if (__builtin_add_overflow(left, right, &sum)) throw ArithmeticOverflow();
    return sum;
}

std::int64_t Difference(std::int64_t left, std::int64_t right) {
    std::int64_t difference;
    if (__builtin_sub_overflow(left, right, &difference)) throw ArithmeticOverflow();
    return difference;
}

std::int64_t Product(std::int64_t left, std::int64_t right) {
    std::int64_t product;
    if (__builtin_mul_overflow(left, right, &product)) throw ArithmeticOverflow();
    return product;
}

moment MomentOf(std::int64_t microseconds) { return moment(Instant{microseconds}); }
std::int64_t Count(moment const& time) { return time.SinceEpoch().microseconds; }

constexpr time_interval oneSecond(microsecondsPerSecond);
constexpr std::int64_t secondsFrom1904To1970 = 2'082'844'800;

}  // namespace

moment january_1_1904_GMT() { return MomentOf(-secondsFrom1904To1970 * microsecondsPerSecond); }
moment january_1_1904_Local() { return january_1_1904_GMT() - LocalOffset(); }
moment AsMoment(Instant const& instant) { return moment(instant); }

time_interval microsecond_of() { return time_interval(1); }
time_interval second_of() { return oneSecond; }
time_interval minute_of() { return oneSecond * 60; }
time_interval hour_of() { return oneSecond * 3600; }
time_interval day_of() { return time_interval(microsecondsPerDay); }

moment operator+(moment const& start, time_interval const& duration) {
    return MomentOf(Sum(Count(start), duration.Microseconds()));
}
moment operator+(time_interval const& duration, moment const& start) { return start + duration; }
moment operator-(moment const& end, time_interval const& duration) {
    return MomentOf(Difference(Count(end), duration.Microseconds()));
}
time_interval operator-(moment const& end, moment const& start) {
    return time_interval(Difference(Count(end), Count(start)));
}

time_interval operator+(time_interval const& left, time_interval const& right) {
    return time_interval(Sum(left.Microseconds(), right.Microseconds()));
}
time_interval operator-(time_interval const& left, time_interval const& right) {
    return time_interval(Difference(left.Microseconds(), right.Microseconds()));
}
time_interval operator*(time_interval const& duration, integer const& factor) {
    return time_interval(Product(duration.Microseconds(), factor));
}
time_interval operator*(integer const& factor, time_interval const& duration) { return duration * factor; }

integer operator/(time_interval const& left, time_interval const& right) {
    std::int64_t const divisor = right.Microseconds();
    if (divisor == 0) throw DivisionByZero();
    if (divisor == -1 && left.Microseconds() == leastNumber) throw ArithmeticOverflow();
    return FloorDivide(left.Microseconds(), divisor);
}

time_interval operator%(time_interval const& left, time_interval const& right) {
    std::int64_t const divisor = right.Microseconds();
    if (divisor == 0) throw DivisionByZero();
    if (divisor == -1) return time_interval(0);
    return time_interval(FloorModulo(left.Microseconds(), divisor));
}

// The names

namespace {

constexpr char const* monthNames[] = {"January", "February", "March",     "April",   "May",      "June",
                                      "July",    "August",   "September", "October", "November", "December"};
constexpr char const* dayNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                    "Thursday", "Friday", "Saturday"};

template <std::uint32_t count>
ConstData NameOf(std::uint32_t number, char const* const (&names)[count]) {
    if (number < 1 || number > count) throw DataOverflow();
    return names[number - 1];
}

}  // namespace

Buffer& operator<<(Buffer& buffer, Month month) {
    return buffer << NameOf(static_cast<std::uint32_t>(month), monthNames);
}
Buffer& operator<<(Buffer& buffer, DayOfWeek day) {
    return buffer << NameOf(static_cast<std::uint32_t>(day), dayNames);
}

// Dates

DateRecord& DateRecord::operator+=(unsigned long days) {
    constexpr std::int64_t lastYear = std::numeric_limits<std::uint32_t>::max();
    constexpr std::int64_t lastDay = DaysFromDate({lastYear, 12, 31});
    std::int64_t const start = DaysFromDate({year, month, day});
    if (start > lastDay || days > static_cast<unsigned long>(lastDay - start)) throw ArithmeticOverflow();
    CivilDate const date = DateFromDays(start + static_cast<std::int64_t>(days));
    day = date.day;
    month = date.month;
    year = static_cast<std::uint32_t>(date.year);
    return *this;
}

DayOfWeek DateRecord::DayOfWeek() const {
    constexpr std::int64_t thursday = 4;  // days from a Sunday to 1 January 1970
    return static_cast<::DayOfWeek>(FloorModulo(DaysFromDate({year, month, day}) + thursday, 7) + 1);
}

// The offset of local time

namespace {

constexpr std::int64_t notHeld = leastNumber;
std::atomic<std::int64_t> heldOffset{notHeld};

std::int64_t PresentOffset() {
    tzset();
    std::time_t const now = std::time(nullptr);
    std::tm local{};
    if (localtime_r(&now, &local) == nullptr) return 0;
    return local.tm_gmtoff * microsecondsPerSecond;
}

}  // namespace

namespace Evaluator {

time_interval LocalOffset() {
    std::int64_t const held = heldOffset;
    return time_interval(held == notHeld ? PresentOffset() : held);
}

LocalOffsetHold::LocalOffsetHold() : before(heldOffset) { heldOffset = LocalOffset().Microseconds(); }
LocalOffsetHold::~LocalOffsetHold() { heldOffset = before; }

}  // namespace Evaluator
