#include "values/TimeText.h"

#include "Evaluator/Exceptions.h"
#include "Evaluator/Output.h"
#include "values/Calendar.h"

namespace Evaluator {
namespace {

// Writing

Numeral Digits(std::int64_t number, unsigned long width) {
    return Numeral(static_cast<long long>(number), width);
}

void WriteClock(Buffer& out, std::int64_t seconds) {
    out << Digits(seconds / 3600, 2) << ":" << Digits(seconds / 60 % 60, 2) << ":" << Digits(seconds % 60, 2);
}

void WriteFraction(Buffer& out, std::int64_t microseconds) {
    if (microseconds != 0) out << "." << Digits(microseconds, 6);
}

void WriteDate(Buffer& out, CivilDate const& date) {
    if (date.year > 9999) out << "+";
    out << Digits(date.year, 4) << "-" << Digits(date.month, 2) << "-" << Digits(date.day, 2);
}

void WriteOffset(Buffer& out, std::int64_t seconds) {
    std::int64_t const size = seconds < 0 ? -seconds : seconds;
    out << (seconds < 0 ? "-" : "+") << Digits(size / 3600, 2) << ":" << Digits(size / 60 % 60, 2);
    if (size % 60 != 0) out << ":" << Digits(size % 60, 2);
}

std::string TextOf(Buffer const& out) { return {out.Written().begin(), out.Written().end()}; }

// Reading

bool IsDigit(unsigned char byte) { return byte >= '0' && byte <= '9'; }

// Reads pieces off the front of a text; a piece that is not there is a ParsingFailure.
class TextReader {
  public:
    explicit TextReader(ConstData text) : at(text.begin()), end(text.end()) {}

    bool AtEnd() const { return at == end; }

    // Takes the next byte if it is one of those in `wanted`, and returns it; otherwise 0.
    unsigned char Take(ConstData wanted) {
        if (AtEnd()) return 0;
        for (unsigned char byte : wanted) {
            if (*at == byte) return *at++;
        }
        return 0;
    }

    unsigned char Expect(ConstData wanted) {
        unsigned char const byte = Take(wanted);
        if (byte == 0) throw ParsingFailure();
        return byte;
    }

    // A number of at least `least` and at most `most` digits, which is at most `limit`.
    std::int64_t Number(int least, int most, std::int64_t limit) {
        std::int64_t number = 0;
        int digits = 0;
        for (; digits < most && !AtEnd() && IsDigit(*at); ++digits) number = number * 10 + (*at++ - '0');
        if (digits < least || number > limit) throw ParsingFailure();
        return number;
    }

    // Digits behind a decimal point, as microseconds.
    std::int64_t Fraction() {
        if (AtEnd() || !IsDigit(*at)) throw ParsingFailure();
        std::int64_t microseconds = 0;
        for (std::int64_t unit = microsecondsPerSecond / 10; !AtEnd() && IsDigit(*at); unit /= 10)
            microseconds += unit * (*at++ - '0');
        return microseconds;
    }

  private:
    unsigned char const* at;
    unsigned char const* end;
};

// Seven digits of a year are more than any time can have.
std::int64_t ReadYear(TextReader& text) {
    unsigned char const sign = text.Take("+-");
    std::int64_t const year = text.Number(4, sign == 0 ? 4 : 7, 9'999'999);
    if (sign == '-' && year == 0) throw ParsingFailure();
    return sign == '-' ? -year : year;
}

// Days since 1 January 1970. A day that the month does not have comes back as another date.
std::int64_t ReadDate(TextReader& text) {
    CivilDate date{};
    date.year = ReadYear(text);
    text.Expect("-");
    date.month = static_cast<std::uint32_t>(text.Number(2, 2, 12));
    text.Expect("-");
    date.day = static_cast<std::uint32_t>(text.Number(2, 2, 31));
    std::int64_t const days = DaysFromDate(date);
    if (date.month == 0 || DateFromDays(days).day != date.day) throw ParsingFailure();
    return days;
}

struct ClockTime {
    std::int64_t seconds = 0;
    std::int64_t microseconds = 0;
};

ClockTime ReadClock(TextReader& text) {
    ClockTime clock;
    clock.seconds = text.Number(2, 2, 23) * 3600;
    text.Expect(":");
    clock.seconds += text.Number(2, 2, 59) * 60;
    if (text.Take(":") == 0) return clock;
    clock.seconds += text.Number(2, 2, 59);
    if (text.Take(".,") != 0) clock.microseconds = text.Fraction();
    return clock;
}

// Seconds; none and Z are zero.
std::int64_t ReadOffset(TextReader& text) {
    if (text.AtEnd()) return 0;
    unsigned char const sign = text.Expect("Z+-");
    if (sign == 'Z') return 0;
    std::int64_t offset = text.Number(2, 2, 23) * 3600;
    for (std::int64_t unit : {60, 1}) {
        if (text.AtEnd()) break;
        text.Take(":");
        offset += text.Number(2, 2, 59) * unit;
    }
    return sign == '-' ? -offset : offset;
}

// The seconds alone may be out of range where they and the microseconds together are not: the first second of
// the range is not a whole one. So a negative count of seconds is brought nearer to zero by one first.
std::optional<moment> MomentAt(std::int64_t seconds, std::int64_t microseconds) {
    if (seconds < 0) {
        seconds += 1;
        microseconds -= microsecondsPerSecond;
    }
    std::int64_t count;
    if (__builtin_mul_overflow(seconds, microsecondsPerSecond, &count)) return std::nullopt;
    if (__builtin_add_overflow(count, microseconds, &count)) return std::nullopt;
    return moment(Instant{count});
}

std::optional<moment> ReadTime(TextReader text) {
    std::int64_t const days = ReadDate(text);
    ClockTime clock;
    std::int64_t offset = 0;
    if (!text.AtEnd()) {
        text.Expect("T ");
        clock = ReadClock(text);
        offset = ReadOffset(text);
    }
    if (!text.AtEnd()) throw ParsingFailure();
    return MomentAt(days * secondsPerDay + clock.seconds - offset, clock.microseconds);
}

}  // namespace

std::string TimeText(moment const& time) {
    std::int64_t const universal = time.SinceEpoch().microseconds;
    std::int64_t const offset = LocalOffset().Microseconds() / microsecondsPerSecond;
    std::int64_t const seconds = FloorDivide(universal, microsecondsPerSecond) + offset;
    Buffer out;
    WriteDate(out, DateFromDays(FloorDivide(seconds, secondsPerDay)));
    out << "T";
    WriteClock(out, FloorModulo(seconds, secondsPerDay));
    WriteFraction(out, FloorModulo(universal, microsecondsPerSecond));
    WriteOffset(out, offset);
    return TextOf(out);
}

std::optional<moment> ParseTime(ConstData text) {
    try {
        return ReadTime(TextReader(text));
    } catch (ParsingFailure const&) {
        return std::nullopt;
    }
}

std::string IntervalText(time_interval const& duration) {
    // Rounded toward zero first, so that the sign can be dropped from the least number too.
    std::int64_t const sign = duration.Microseconds() < 0 ? -1 : 1;
    std::int64_t const seconds = duration.Microseconds() / microsecondsPerSecond * sign;
    std::int64_t const microseconds = duration.Microseconds() % microsecondsPerSecond * sign;
    Buffer out;
    if (sign < 0) out << "-";
    if (seconds >= secondsPerDay) out << Digits(seconds / secondsPerDay, 1) << " days, ";
    WriteClock(out, seconds % secondsPerDay);
    WriteFraction(out, microseconds);
    return TextOf(out);
}

}  // namespace Evaluator
