#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "VersionsOfTests.h"

namespace {

struct Pair {
    char const* less;
    char const* greater;
};

Pair const kPairs[] = {
    // A row of digits is a number: the longer one is larger.
    {"1.9", "1.10"},
    {"9.9", "10.0"},
    {"9", "10"},
    {"a9b", "a10a"},
    {"1.99", "1.100"},
    {"1.199", "1.1000"},
    {"x12y", "x123"},
    {"12", "123"},
    // Of one length the first difference counts.
    {"1.10", "1.11"},
    {"1.19", "1.20"},
    {"1.10z", "1.11"},
    // With zeros in front it is a fraction.
    {"1.01", "1.1"},
    {"1.00", "1.0"},
    {"1.001", "1.01"},
    {"000", "00"},
    {"00", "0"},
    {"00", "01"},
    {"01", "02"},
    {"0", "1"},
    {"0", "01"},
    {"0", "09"},
    {"1.05", "1.5"},
    // Behind the zeros that both have it is a number again.
    {"09", "010"},
    {"1.09", "1.010"},
    {"1.0", "1.1"},
    {"00.1", "0.1"},
    {"1.00b", "1.0b"},
    {"x00", "x0a"},
    // A digit that is not zero ends what leads; a character begins a row of its own.
    {"101", "110"},
    {"1.101", "1.110"},
    {"100", "1000"},
    {"10", "100"},
    {"5.01", "5.1"},
    // Other characters count as bytes, and so does the end.
    {"", "1"},
    {"", "a"},
    {"a", "b"},
    {"a", "ab"},
    {"a", "a1"},
    {"a0", "a1"},
    {"B", "a"},
    {"1.1", "1.1a"},
    {"1.1a", "1.10"},
    {"1.0", "1.0b2"},
    {"1.0", "1.0 beta"},
    {"1.0", "1.0."},
    {"1..2", "1.2"},
    {"1-2", "1.2"},
    {".5", "0.5"},
    {"a", "\x80"},
    {"z", "\xFF"},
    {"\x7F", "\x80"},
    {"\x80", "\xFF"},
    {"1", "1\x80"},
    {"1a", "1\x80"},
    {"1.2\xC3\xA4", "1.20"},
    {"9", "\x80"},
};

// The rules put down one after the other, as they are told.
int PlainCompare(std::string const& s1, std::string const& s2) {
    auto const at = [](std::string const& text, std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
    };
    auto const isDigit = [](int c) { return c >= '0' && c <= '9'; };
    bool inDigits = false;
    bool leadingZeros = true;
    std::size_t i = 0;
    while (at(s1, i) == at(s2, i) && at(s1, i) != 0) {
        int const c = at(s1, i++);
        if (!isDigit(c)) {
            leadingZeros = true;
            inDigits = false;
        } else {
            inDigits = true;
            if (c != '0') leadingZeros = false;
        }
    }
    int const c1 = at(s1, i), c2 = at(s2, i), d = c1 - c2;
    if (d == 0) return 0;
    bool const bothDigits = isDigit(c1) && isDigit(c2);
    if (!bothDigits && !inDigits) return d;
    if (leadingZeros) {
        if (c1 == '0') return -1;
        if (c2 == '0') return 1;
    }
    for (;; ++i) {
        bool const first = isDigit(at(s1, i)), second = isDigit(at(s2, i));
        if (!first && second) return -1;
        if (first && !second) return 1;
        if (!first && !second) return d;
    }
}

std::string RandomText(std::mt19937_64& engine) {
    static constexpr std::string_view kBytes = "00011299..ab-\x80";
    std::string text(engine() % 9, '\0');
    for (char& c : text) c = kBytes[engine() % kBytes.size()];
    return text;
}

}  // namespace

TEST(LinuxCompareVersions, OrdersTexts) {
    for (Pair const& pair : kPairs) {
        EXPECT_LT(LinuxCompareVersions(pair.less, pair.greater), 0)
            << Shown(pair.less) << " " << Shown(pair.greater);
        EXPECT_GT(LinuxCompareVersions(pair.greater, pair.less), 0)
            << Shown(pair.greater) << " " << Shown(pair.less);
    }
}

TEST(LinuxCompareVersions, FindsTheSameBytesEqual) {
    for (Pair const& pair : kPairs) {
        EXPECT_EQ(0, LinuxCompareVersions(pair.less, pair.less));
        EXPECT_EQ(0, LinuxCompareVersions(pair.less, std::string(pair.less).c_str())) << Shown(pair.less);
    }
}

TEST(LinuxCompareVersions, FollowsThePlainRules) {
    std::mt19937_64 engine(41);
    for (int i = 0; i < 200'000; ++i) {
        std::string const left = RandomText(engine);
        std::string right = RandomText(engine);
        if (i % 2 == 0) right = left.substr(0, engine() % (left.size() + 1)) + right;
        ASSERT_EQ(Sign(PlainCompare(left, right)), Sign(LinuxCompareVersions(left.c_str(), right.c_str())))
            << Shown(left) << " " << Shown(right);
    }
}

TEST(LinuxCompareVersions, IsNegatedByTheOppositeOrder) {
    std::mt19937_64 engine(42);
    for (int i = 0; i < 200'000; ++i) {
        std::string const left = RandomText(engine);
        std::string const right = RandomText(engine);
        ASSERT_EQ(Sign(LinuxCompareVersions(left.c_str(), right.c_str())),
                  -Sign(LinuxCompareVersions(right.c_str(), left.c_str())))
            << Shown(left) << " " << Shown(right);
    }
}

TEST(LinuxCompareVersions, ComparesLongTexts) {
    std::string const digits(1'000'000, '7');
    EXPECT_LT(LinuxCompareVersions(digits.c_str(), (digits + "0").c_str()), 0);
    EXPECT_GT(LinuxCompareVersions(("8" + digits).c_str(), (digits + "9").c_str()), 0);
    EXPECT_GT(LinuxCompareVersions(("1" + digits).c_str(), digits.c_str()), 0);
}

// ---- Of versions

TEST(CompareVersions, ComparesTextsWhenOneIsTextual) {
    // By their numbers the first would come after the second one.
    EXPECT_LT(CompareVersions(Numeric(1, 0), Textual("1.0 beta")), 0);
    EXPECT_GT(CompareVersions(Textual("1.0 beta"), Numeric(1, 0)), 0);
    EXPECT_GT(CompareVersions(Numeric(1, 0, 0, 0x60, 2), Textual("1.0 beta")), 0);
    EXPECT_LT(CompareVersions(Textual("1.0 beta"), Numeric(1, 0, 0, 0x60, 2)), 0);
    EXPECT_LT(CompareVersions(Textual("1.05-1"), Numeric(1, 5)), 0);
    EXPECT_GT(CompareVersions(Numeric(1, 5), Textual("1.05-1")), 0);
}

TEST(CompareVersions, ComparesTextsWhenBothAreTextual) {
    EXPECT_LT(CompareVersions(Textual("1.9-1"), Textual("1.10-1")), 0);
    EXPECT_GT(CompareVersions(Textual("1.10-1"), Textual("1.9-1")), 0);
    EXPECT_EQ(0, CompareVersions(Textual("1.9-1"), Textual("1.9-1")));
    MacVersion const itself = Textual("1.9-1");
    EXPECT_EQ(0, CompareVersions(itself, itself));
}

TEST(CompareVersions, TakesTheTextFormOfANumericOne) {
    for (MacVersion const& version : {Numeric(1, 2), Numeric(1, 2, 3, 0x60, 4), Numeric(1, 2, 0, 0xA0, 0),
                                      Numeric(1, 2, 0, 0x10, 7), Numeric(65535, 65535, 65535, 0xA0, 65535)}) {
        std::string const text = VersionToString(version);
        EXPECT_EQ(0, CompareVersions(version, Textual(text))) << text;
        EXPECT_EQ(0, CompareVersions(Textual(text), version)) << text;
        EXPECT_LT(CompareVersions(version, Textual(text + "-")), 0) << text;
        EXPECT_GT(CompareVersions(Textual(text + "-"), version), 0) << text;
    }
}

TEST(CompareVersions, ComparesTextsUpToANulByte) {
    using namespace std::literals;
    EXPECT_EQ(0, CompareVersions(Textual("1-2\0b"sv), Textual("1-2\0a"sv)));
    EXPECT_EQ(0, CompareVersions(Textual("1-2\0b"sv), Textual("1-2")));
    EXPECT_EQ(0, CompareVersions(Textual("1.2\0b"sv), Numeric(1, 2)));
    EXPECT_EQ(0, CompareVersions(Numeric(1, 2), Textual("1.2\0b"sv)));
    EXPECT_LT(CompareVersions(Textual("\0z"sv), Textual("a")), 0);
}
