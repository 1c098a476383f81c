#include "versions/Version.h"

#include <array>
#include <charconv>
#include <system_error>

#include "Evaluator/Exceptions.h"
#include "Evaluator/Text.h"

namespace {

// ---- Text

// The text of a numeric version.
class NumericText {
  public:
    explicit NumericText(MacVersion const& version) {
        Write(version.major);
        Write('.');
        Write(version.minor);
        if (version.bugrev != 0) {
            Write('.');
            Write(version.bugrev);
        }
        WriteStage(version);
    }

    /// With a NUL behind them.
    char const* Characters() const { return characters.data(); }
    operator ConstData() const {
        return {reinterpret_cast<unsigned char const*>(characters.data()),
                static_cast<std::size_t>(end - characters.data())};
    }

  private:
    static constexpr std::size_t kMost = 24;  // the longest has 23: 65535.65535.65535b65535

    void Write(char character) {
        if (end == characters.data() + kMost) throw DataOverflow();
        *end++ = character;
    }
    void Write(std::uint16_t number) {
        auto const [behind, error] = std::to_chars(end, characters.data() + kMost, number);
        if (error != std::errc()) throw DataOverflow();
        end = behind;
    }

    void WriteStage(MacVersion const& version) {
        bool const isPlainFinal = version.stage == kFinal && version.nonrel == 0;
        if (version.stage == kNoStage || isPlainFinal) {
            if (version.nonrel == 0) return;
            Write('.');
        } else if (char const letter = *LetterOf({version.stage}); letter != 0) {
            Write(letter);
        }
        if (version.stage == kReleased || version.nonrel != 0) Write(version.nonrel);
    }

    std::array<char, kMost + 1> characters{};
    char* end = characters.data();
};

// ---- Order

template <class Number>
int Order(Number left, Number right) {
    return (left > right) - (left < right);
}

// The stage that counts: a final, or none, without a number is the release itself.
std::uint8_t RankOf(MacVersion const& version) {
    bool const isRelease = version.nonrel == 0 && (version.stage == kFinal || version.stage == kNoStage);
    return isRelease ? std::uint8_t{kReleased} : version.stage;
}

bool IsDigit(unsigned char byte) { return byte >= '0' && byte <= '9'; }

// Two rows of digits that differ in their first byte, if there is one: the longer one is the larger number.
int OrderDigits(unsigned char const* left, unsigned char const* right) {
    int const difference = *left - *right;
    while (IsDigit(*left) && IsDigit(*right)) ++left, ++right;
    if (IsDigit(*right)) return -1;
    return IsDigit(*left) ? 1 : difference;
}

// The order of the numbers of two versions.
inline int CompareNumbers(MacVersion const& left, MacVersion const& right) {
    if (left.major != right.major) return Order(left.major, right.major);
    if (left.minor != right.minor) return Order(left.minor, right.minor);
    if (left.bugrev != right.bugrev) return Order(left.bugrev, right.bugrev);
    if (int const order = Order(RankOf(left), RankOf(right)); order != 0) return order;
    return Order(left.nonrel, right.nonrel);
}

// The texts of a textual version and another one.
int CompareTexts(MacVersion const& left, MacVersion const& right) {
    if (left.text.empty()) return LinuxCompareVersions(NumericText(left).Characters(), right.text.c_str());
    if (right.text.empty()) return LinuxCompareVersions(left.text.c_str(), NumericText(right).Characters());
    return LinuxCompareVersions(left.text.c_str(), right.text.c_str());
}

inline int Compare(MacVersion const& left, MacVersion const& right) {
    bool const areNumeric = left.text.empty() && right.text.empty();
    return areNumeric ? CompareNumbers(left, right) : CompareTexts(left, right);
}

}  // namespace

std::string VersionToString(MacVersion const& version) {
    return version.text.empty() ? NumericText(version).Characters() : version.text;
}

int CannonicalCompareVersions(MacVersion const& left, MacVersion const& right) {
    return CompareNumbers(left, right);
}

int LinuxCompareVersions(char const* left, char const* right) {
    if (left == right) return 0;
    auto const* first = reinterpret_cast<unsigned char const*>(left);
    auto const* second = reinterpret_cast<unsigned char const*>(right);
    bool inDigits = false;
    bool leadingZeros = true;  // no digit but zeros came before in this row
    for (; *first == *second && *first != 0; ++first, ++second) {
        inDigits = IsDigit(*first);
        if (*first != '0') leadingZeros = !inDigits;
    }
    int const difference = *first - *second;
    if (difference == 0) return 0;
    if (!(IsDigit(*first) && IsDigit(*second)) && !inDigits) return difference;
    if (leadingZeros && *first == '0') return -1;
    if (leadingZeros && *second == '0') return 1;
    return OrderDigits(first, second);
}

int CompareVersions(MacVersion const& left, MacVersion const& right) { return Compare(left, right); }

bool operator==(MacVersion const& left, MacVersion const& right) { return Compare(left, right) == 0; }
bool operator<(MacVersion const& left, MacVersion const& right) { return Compare(left, right) < 0; }
bool operator<=(MacVersion const& left, MacVersion const& right) { return Compare(left, right) < 1; }

bool operator==(MacVersion const& left, inspector_string const& right) {
    return left == TextToVersion(right);
}
bool operator<(MacVersion const& left, inspector_string const& right) { return left < TextToVersion(right); }
bool operator<=(MacVersion const& left, inspector_string const& right) {
    return left <= TextToVersion(right);
}
bool operator==(inspector_string const& left, MacVersion const& right) {
    return TextToVersion(left) == right;
}
bool operator<(inspector_string const& left, MacVersion const& right) { return TextToVersion(left) < right; }
bool operator<=(inspector_string const& left, MacVersion const& right) {
    return TextToVersion(left) <= right;
}

inspector_string versionAsString(MacVersion const& version) {
    if (version.text.empty()) return MakeString(NumericText(version));
    return MakeString({reinterpret_cast<unsigned char const*>(version.text.data()), version.text.size()});
}

MacVersion stringAsVersion(inspector_string const& text) { return TextToVersion(text); }

MacVersion version_of(unsigned char const* text, unsigned long length) {
    return TextToVersion({text, length});
}

integer major_rev_of(MacVersion const& version) { return version.major; }
integer minor_rev_of(MacVersion const& version) { return version.minor; }
integer bug_rev_of(MacVersion const& version) { return version.bugrev; }
stage stage_of(MacVersion const& version) { return {version.stage}; }
