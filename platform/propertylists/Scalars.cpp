#include "propertylists/Scalars.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <limits>
#include <string>

namespace Platform {

namespace {

void SkipWhite(std::string_view& text) {
    while (!text.empty() && IsWhite(text.front())) text.remove_prefix(1);
}

// Takes a sign, if there is one, and returns whether it was a minus.
bool TakeSign(std::string_view& text) {
    if (text.empty() || (text.front() != '-' && text.front() != '+')) return false;
    bool const isMinus = text.front() == '-';
    text.remove_prefix(1);
    return isMinus;
}

// The number that the whole text is, in digits alone.
std::optional<UInt64> ParseDigits(std::string_view text, int base) {
    UInt64 number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

bool EqualsWord(std::string_view text, std::string_view lowerCaseWord) {
    return std::ranges::equal(text, lowerCaseWord, [](char letter, char wanted) {
        return (letter >= 'A' && letter <= 'Z' ? letter + ('a' - 'A') : letter) == wanted;
    });
}

// Whether a decimal number is less than 1; of one with a digit other than 0.
bool IsBelowOne(std::string_view text) {
    std::string_view const digits = text.substr(0, text.find_first_of("eE"));
    long long exponent = 0;
    if (digits.size() < text.size()) {
        std::string_view behind = text.substr(digits.size() + 1);
        bool const isMinus = TakeSign(behind);
        constexpr long long beyond = 1LL << 60;  // any number of digits
        auto const read = std::from_chars(behind.data(), behind.data() + behind.size(), exponent);
        if (read.ec != std::errc()) exponent = beyond;
        if (isMinus) exponent = -exponent;
    }
    auto const point = static_cast<long long>(std::min(digits.find('.'), digits.size()));
    auto const first = static_cast<long long>(digits.find_first_of("123456789"));
    // The power of ten that the first digit counts.
    long long const place = first < point ? point - 1 - first : point - first;
    return place + exponent < 0;
}

std::optional<double> ParseMagnitude(std::string_view text) {
    using Limits = std::numeric_limits<double>;
    if (EqualsWord(text, "inf") || EqualsWord(text, "infinity")) return Limits::infinity();
    if (EqualsWord(text, "nan")) return Limits::quiet_NaN();
    if (text.empty() || !(IsDigit(text.front()) || text.front() == '.')) return std::nullopt;
    double number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end != text.data() + text.size()) return std::nullopt;
    if (error == std::errc::result_out_of_range) return IsBelowOne(text) ? 0.0 : Limits::infinity();
    if (error != std::errc()) return std::nullopt;
    return number;
}

// The digits of a field of a date; -1 when there are others.
int Field(std::string_view text, std::size_t at, std::size_t size) {
    int number = 0;
    for (char const digit : text.substr(at, size)) {
        if (!IsDigit(digit)) return -1;
        number = 10 * number + (digit - '0');
    }
    return number;
}

constexpr UInt8 kNoDigit = 0xFF;

constexpr std::array<UInt8, 128> kBase64Digits = [] {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<UInt8, 128> digits{};
    digits.fill(kNoDigit);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        digits[static_cast<unsigned char>(alphabet[i])] = static_cast<UInt8>(i);
    return digits;
}();

}  // namespace

std::optional<WideInteger> ParseInteger(std::string_view text) {
    SkipWhite(text);
    bool const isMinus = TakeSign(text);
    bool const isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (isHexadecimal) text.remove_prefix(2);
    auto const magnitude = ParseDigits(text, isHexadecimal ? 16 : 10);
    if (!magnitude) return std::nullopt;
    if (!isMinus) return WideInteger{*magnitude};
    constexpr UInt64 mostBelowZero = UInt64{1} << 63;
    if (*magnitude > mostBelowZero) return std::nullopt;
    return -WideInteger{*magnitude};
}

std::optional<double> ParseReal(std::string_view text) {
    SkipWhite(text);
    bool const isMinus = TakeSign(text);
    auto const magnitude = ParseMagnitude(text);
    if (!magnitude) return std::nullopt;
    return isMinus ? -*magnitude : *magnitude;
}

std::optional<CFAbsoluteTime> ParseDate(std::string_view text) {
    constexpr std::string_view form = "YYYY-MM-DDThh:mm:ssZ";
    if (text.size() != form.size()) return std::nullopt;
    for (std::size_t const at : {4, 7, 10, 13, 16, 19}) {
        if (text[at] != form[at]) return std::nullopt;
    }
    int const year = Field(text, 0, 4), month = Field(text, 5, 2), day = Field(text, 8, 2);
    int const hour = Field(text, 11, 2), minute = Field(text, 14, 2), second = Field(text, 17, 2);
    constexpr int mostSeconds = 60;  // a leap second is the next minute's first one
    bool const isTime =
        hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second <= mostSeconds;
    if (year < 0 || month < 0 || day < 0 || !isTime) return std::nullopt;
    using namespace std::chrono;
    year_month_day const date(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                              std::chrono::day(static_cast<unsigned>(day)));
    if (!date.ok()) return std::nullopt;
    constexpr sys_days beginning = sys_days(2001y / January / 1);
    auto const days = (sys_days(date) - beginning).count();
    return static_cast<double>(((days * 24L + hour) * 60 + minute) * 60 + second);
}

std::optional<CFAbsoluteTime> ParseDateOfZone(std::string_view text) {
    constexpr std::string_view form = "YYYY-MM-DD hh:mm:ss +hhmm";
    if (text.size() != form.size() || text[10] != ' ' || text[19] != ' ') return std::nullopt;
    std::string universal(text.substr(0, 19));
    universal[10] = 'T';
    universal += 'Z';
    auto const time = ParseDate(universal);
    int const hours = Field(text, 21, 2), minutes = Field(text, 23, 2);
    bool const isZone =
        (text[20] == '+' || text[20] == '-') && hours >= 0 && hours < 24 && minutes >= 0 && minutes < 60;
    if (!time || !isZone) return std::nullopt;
    int const ahead = (hours * 60 + minutes) * 60;
    return *time - (text[20] == '+' ? ahead : -ahead);
}

std::optional<std::vector<UInt8>> DecodeBase64(std::string_view text) {
    std::vector<UInt8> bytes;
    bytes.reserve(text.size() / 4 * 3 + 3);
    unsigned group = 0, digits = 0, fillers = 0;
    for (char const character : text) {
        auto const byte = static_cast<unsigned char>(character);
        if (byte >= 128) return std::nullopt;
        bool const isFiller = character == '=';
        if (!isFiller && kBase64Digits[byte] == kNoDigit) continue;
        fillers = isFiller ? fillers + 1 : 0;
        group = group << 6 | (isFiller ? 0u : kBase64Digits[byte]);
        if (++digits % 4 != 0) continue;
        bytes.push_back(static_cast<UInt8>(group >> 16));
        if (fillers < 2) bytes.push_back(static_cast<UInt8>(group >> 8));
        if (fillers < 1) bytes.push_back(static_cast<UInt8>(group));
        group = 0;
    }
    return bytes;
}

}  // namespace Platform
