// A regular expression of the forms, held against the parser with random texts.

#include <gtest/gtest.h>
#include <regex.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <new>
#include <optional>

#include "RandomTexts.h"
#include "VersionsOfTests.h"

namespace {

#ifdef ZELQ_ADDRESS_SANITIZER
constexpr int kTexts = 200'000;
#else
constexpr int kTexts = 1'000'000;
#endif

// The groups of the expression below that are of interest.
enum Group : std::size_t {
    kMajor = 1,
    kMinor = 3,
    kLetter = 5,
    kNumber,
    kBug,
    kBugLetter = 9,
    kBugNumber,
    kFourth
};
constexpr std::size_t kGroups = 12;

class Expression {
  public:
    Expression() {
        char const* const expression =
            "^([0-9]+)"
            "(\\.([0-9]+)"
            "(([abdfABDF])([0-9]*)|\\.([0-9]+)(([abdfABDF])([0-9]*)|\\.([0-9]+))?)?"
            ")?$";
        if (regcomp(&compiled, expression, REG_EXTENDED) != 0) throw std::bad_alloc();
    }
    ~Expression() { regfree(&compiled); }
    Expression(Expression const&) = delete;
    Expression& operator=(Expression const&) = delete;

    /// The groups of a text that is of one of the forms.
    std::optional<std::array<std::string_view, kGroups>> Match(std::string_view text) const {
        regmatch_t found[kGroups] = {};
        found[0].rm_eo = static_cast<regoff_t>(text.size());
        if (regexec(&compiled, text.data(), kGroups, found, REG_STARTEND) != 0) return std::nullopt;
        std::array<std::string_view, kGroups> groups;
        for (std::size_t i = 0; i < kGroups; ++i) {
            if (found[i].rm_so < 0) continue;
            auto const from = static_cast<std::size_t>(found[i].rm_so);
            groups[i] = text.substr(from, static_cast<std::size_t>(found[i].rm_eo) - from);
        }
        return groups;
    }

  private:
    regex_t compiled;
};

// The number of digits, 0 of none, when it is no larger than 65535.
std::optional<unsigned int> NumberOf(std::string_view digits) {
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    if (digits.size() > 5) return std::nullopt;
    unsigned int number = 0;
    for (char digit : digits) number = number * 10 + static_cast<unsigned int>(digit - '0');
    if (number > 65535) return std::nullopt;
    return number;
}

unsigned int StageOf(std::string_view letter) {
    switch (letter[0] | 0x20) {
        case 'd':
            return 0x20;
        case 'a':
            return 0x40;
        case 'b':
            return 0x60;
        default:
            return 0x80;
    }
}

MacVersion Recognised(std::string_view text) {
    static Expression const expression;
    auto const groups = expression.Match(text);
    if (!groups) return Textual(text);
    auto const& group = *groups;
    std::string_view const letter = group[kLetter].empty() ? group[kBugLetter] : group[kLetter];
    std::string_view const last = !group[kFourth].empty()     ? group[kFourth]
                                  : group[kBugNumber].empty() ? group[kNumber]
                                                              : group[kBugNumber];
    auto const major = NumberOf(group[kMajor]), minor = NumberOf(group[kMinor]), bug = NumberOf(group[kBug]),
               number = NumberOf(last);
    if (!major || !minor || !bug || !number) return Textual(text);
    unsigned int const stage = !group[kFourth].empty() ? 0xA0 : letter.empty() ? 0 : StageOf(letter);
    return Numeric(*major, *minor, *bug, stage, *number);
}

}  // namespace

TEST(Recogniser, KnowsTheForms) {
    EXPECT_EQ("7 0 0 0x00 0", Fields(Recognised("7")));
    EXPECT_EQ("1 2 0 0x60 0", Fields(Recognised("1.2b")));
    EXPECT_EQ("1 2 0 0x40 3", Fields(Recognised("1.2A3")));
    EXPECT_EQ("1 2 3 0x20 4", Fields(Recognised("1.02.3d4")));
    EXPECT_EQ("1 2 3 0xA0 4", Fields(Recognised("1.2.3.4")));
    EXPECT_EQ("0 0 0 0x00 0 \"1b\"", Fields(Recognised("1b")));
    EXPECT_EQ("0 0 0 0x00 0 \"1.2\\x00\"", Fields(Recognised(std::string_view("1.2\0", 4))));
    EXPECT_EQ("0 0 0 0x00 0 \"1.2\\x0A\"", Fields(Recognised("1.2\n")));
    EXPECT_EQ("0 0 0 0x00 0 \"65536\"", Fields(Recognised("65536")));
}

TEST(Recogniser, AgreesOnRandomTexts) {
    constexpr std::uint64_t seed = 20260101;
    std::cout << "seed " << seed << std::endl;
    RandomTexts random(seed);
    int numeric = 0;
    for (int i = 0; i < kTexts; ++i) {
        std::string const text = random.Any();
        MacVersion const expected = Recognised(text);
        MacVersion const version = Parsed(text);
        numeric += expected.text.empty();
        ASSERT_TRUE(HaveSameFields(expected, version)) << "text " << i << ": " << Shown(text) << " is "
                                                       << Fields(expected) << ", not " << Fields(version);
    }
    // Both kinds are common, or the texts would show little.
    EXPECT_GT(numeric, kTexts / 4);
    EXPECT_LT(numeric, kTexts * 3 / 4);
}

// All texts of up to seven of the signs that count.
TEST(Recogniser, AgreesOnAllShortTexts) {
    static constexpr std::string_view kSigns = "10.bx";
    for (std::size_t size = 0; size <= 7; ++size) {
        std::string text(size, kSigns.front());
        std::size_t count = 1;
        for (std::size_t i = 0; i < size; ++i) count *= kSigns.size();
        for (std::size_t number = 0; number < count; ++number) {
            std::size_t rest = number;
            for (char& c : text) c = kSigns[rest % kSigns.size()], rest /= kSigns.size();
            ASSERT_TRUE(HaveSameFields(Recognised(text), Parsed(text))) << text;
        }
    }
}

TEST(Recogniser, FindsThatTextFormsLeadBack) {
    RandomTexts random(7);
    for (int i = 0; i < kTexts / 10; ++i) {
        MacVersion const version = Parsed(random.Version());
        std::string const text = VersionToString(version);
        // 1.2.0.4 is told as 1.2.4.
        if (version.bugrev == 0 && version.stage == kReleased && version.nonrel != 0) continue;
        ASSERT_EQ(0, CompareVersions(version, Parsed(text))) << Fields(version);
    }
}
