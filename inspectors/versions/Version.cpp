#include "versions/Version.h"

#include <array>

#include "Evaluator/Output.h"
#include "Evaluator/Text.h"

namespace {

// ---- Text

// The text of a numeric version.
class NumericText {
  public:
    explicit NumericText(MacVersion const& version) {
        Write(Numeral(version.major));
        Write(".");
        Write(Numeral(version.minor));
        if (version.bugrev != 0) {
            Write(".");
            Write(Numeral(version.bugrev));
        }
        WriteStage(version);
    }

    char const* Characters() const { return reinterpret_cast<char const*>(bytes.data()); }
    std::size_t Size() const { return kMost - room.Size(); }

  private:
    static constexpr std::size_t kMost = 24;  // the longest has 23: 65535.65535.65535b65535

    void Write(ConstData text) { room = room << text; }

    void WriteStage(MacVersion const& version) {
        bool const isPlainFinal = version.stage == kFinal && version.nonrel == 0;
        if (version.stage == kNoStage || isPlainFinal) {
            if (version.nonrel == 0) return;
            Write(".");
        } else {
            Write(LetterOf({version.stage}));
        }
        if (version.stage == kReleased || version.nonrel != 0) Write(Numeral(version.nonrel));
    }

    std::array<unsigned char, kMost + 1> bytes{};  // with a NUL behind
    Data room{bytes.data(), kMost};
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

// All that is compared before the last number, as one number: where the first difference is cannot be
// foretold, and a processor that guesses it wrong loses more time than the comparison takes.
std::uint64_t FrontOf(MacVersion const& version) {
    return std::uint64_t{version.major} << 48 | std::uint64_t{version.minor} << 32 |
           std::uint64_t{version.bugrev} << 16 | RankOf(version);
}

bool IsDigit(unsigned char byte) { return byte >= '0' && byte <= '9'; }

// Two rows of digits that differ in their first byte, if there is one: the longer one is the larger number.
int OrderDigits(unsigned char const* left, unsigned char const* right) {
    int const difference = *left - *right;
    while (IsDigit(*left) && IsDigit(*right)) ++left, ++right;
    if (IsDigit(*right)) return -1;
    return IsDigit(*left) ? 1 : difference;
}

// The texts of a textual version and another one.
int CompareTexts(MacVersion const& left, MacVersion const& right) {
    if (left.text.empty()) return LinuxCompareVersions(NumericText(left).Characters(), right.text.c_str());
    if (right.text.empty()) return LinuxCompareVersions(left.text.c_str(), NumericText(right).Characters());
    return LinuxCompareVersions(left.text.c_str(), right.text.c_str());
}

}  // namespace

std::string VersionToString(MacVersion const& version) {
    if (!version.text.empty()) return version.text;
    NumericText const text(version);
    return {text.Characters(), text.Size()};
}

int CannonicalCompareVersions(MacVersion const& left, MacVersion const& right) {
    int const order = Order(FrontOf(left), FrontOf(right));
    return order != 0 ? order : Order(left.nonrel, right.nonrel);
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

int CompareVersions(MacVersion const& left, MacVersion const& right) {
    bool const areNumeric = left.text.empty() && right.text.empty();
    return areNumeric ? CannonicalCompareVersions(left, right) : CompareTexts(left, right);
}

bool operator==(MacVersion const& left, MacVersion const& right) { return CompareVersions(left, right) == 0; }
bool operator<(MacVersion const& left, MacVersion const& right) { return CompareVersions(left, right) < 0; }
bool operator<=(MacVersion const& left, MacVersion const& right) { return CompareVersions(left, right) < 1; }

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
    std::string const text = VersionToString(version);
    return MakeString({reinterpret_cast<unsigned char const*>(text.data()), text.size()});
}

MacVersion stringAsVersion(inspector_string const& text) { return TextToVersion(text); }

MacVersion version_of(unsigned char const* text, unsigned long length) {
    return TextToVersion({text, length});
}

integer major_rev_of(MacVersion const& version) { return version.major; }
integer minor_rev_of(MacVersion const& version) { return version.minor; }
integer bug_rev_of(MacVersion const& version) { return version.bugrev; }
stage stage_of(MacVersion const& version) { return {version.stage}; }
