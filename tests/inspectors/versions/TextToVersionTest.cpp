#include <gtest/gtest.h>

#include <string>

#include "VersionsOfTests.h"

namespace {

struct Row {
    std::string text;
    MacVersion version;
};

std::string Zeros(std::size_t count) { return std::string(count, '0'); }

Row const kNumeric[] = {
    // Each form.
    {"7", Numeric(7, 0)},
    {"10.4", Numeric(10, 4)},
    {"10.4.11", Numeric(10, 4, 11)},
    {"1.2b", Numeric(1, 2, 0, 0x60, 0)},
    {"1.2b3", Numeric(1, 2, 0, 0x60, 3)},
    {"1.2.3b", Numeric(1, 2, 3, 0x60, 0)},
    {"1.2.3b7", Numeric(1, 2, 3, 0x60, 7)},
    {"1.2.3.4", Numeric(1, 2, 3, 0xA0, 4)},
    // Each stage.
    {"1.2d", Numeric(1, 2, 0, 0x20, 0)},
    {"1.2a", Numeric(1, 2, 0, 0x40, 0)},
    {"1.2f", Numeric(1, 2, 0, 0x80, 0)},
    {"1.2.3d4", Numeric(1, 2, 3, 0x20, 4)},
    {"1.2.3a4", Numeric(1, 2, 3, 0x40, 4)},
    {"1.2.3f4", Numeric(1, 2, 3, 0x80, 4)},
    {"1.2D", Numeric(1, 2, 0, 0x20, 0)},
    {"1.2A1", Numeric(1, 2, 0, 0x40, 1)},
    {"1.2B7", Numeric(1, 2, 0, 0x60, 7)},
    {"1.2.3B7", Numeric(1, 2, 3, 0x60, 7)},
    {"1.2.3F", Numeric(1, 2, 3, 0x80, 0)},
    // Zeros.
    {"0", Numeric(0, 0)},
    {"0.0", Numeric(0, 0)},
    {"0.0.0", Numeric(0, 0)},
    {"0.0.0.0", Numeric(0, 0, 0, 0xA0, 0)},
    {"0.0d0", Numeric(0, 0, 0, 0x20, 0)},
    {"1.2.3.0", Numeric(1, 2, 3, 0xA0, 0)},
    {"1.2.0.0", Numeric(1, 2, 0, 0xA0, 0)},
    {"1.2f0", Numeric(1, 2, 0, 0x80, 0)},
    {"01.002", Numeric(1, 2)},
    {"1.05", Numeric(1, 5)},
    {"000.000.000d000", Numeric(0, 0, 0, 0x20, 0)},
    {Zeros(1000) + "1." + Zeros(1000) + "2." + Zeros(1000) + "3b" + Zeros(1000) + "4",
     Numeric(1, 2, 3, 0x60, 4)},
    {"1.2.3." + Zeros(100'000) + "65535", Numeric(1, 2, 3, 0xA0, 65535)},
    // The largest numbers.
    {"65535", Numeric(65535, 0)},
    {"65535.65535", Numeric(65535, 65535)},
    {"65535.65535.65535", Numeric(65535, 65535, 65535)},
    {"65535.65535b65535", Numeric(65535, 65535, 0, 0x60, 65535)},
    {"65535.65535.65535b65535", Numeric(65535, 65535, 65535, 0x60, 65535)},
    {"65535.65535.65535.65535", Numeric(65535, 65535, 65535, 0xA0, 65535)},
};

using namespace std::literals;

std::string const kTextual[] = {
    // A stage needs a minor revision, which a letter after the first number does not let come any more.
    "1b",
    "1b2",
    "1f",
    "1b.2",
    // Something behind a whole version.
    "1.2.3.4.5",
    "1.2.3.4b",
    "1.2.3.4b5",
    "1.2.3.4.",
    "1.2b3.4",
    "1.2.3b4.5",
    "1.2.3b4b5",
    "1.2b3b",
    "1.2b3 ",
    // Something missing.
    "1..2",
    "..",
    ".",
    ".5",
    "1.",
    "1.2.",
    "1.2.3.",
    "1.2b.",
    "1.2b.3",
    "1.2.3b.",
    "1.b",
    "1.2.b",
    "1.2.b3",
    "1.2.3.b",
    "b",
    "b1",
    ".b",
    // Words.
    "V1.2",
    "v1",
    "1.2beta",
    "1.2beta3",
    "1.2alph",
    "1.2alpha",
    "1.2ab",
    "1.2bb",
    "1.2c",
    "1.2e3",
    "1.2x3",
    "1.2final",
    "1.2bbbb",
    "1.2bbbbb",
    "1.2b3b",
    "version",
    "one",
    // Other characters.
    " ",
    " 1.2",
    "1.2 ",
    "1.2 b",
    "1.2b 3",
    "1 .2",
    "1.0 beta",
    "1.2-3",
    "-1",
    "+1",
    "1.-2",
    "1,2",
    "1.2_3",
    "1.2b+3",
    "1.2~b",
    "1:2",
    "1.2\n",
    "\t1.2",
    "1.2/3",
    "0x10",
    "1.2\xC3\xA9",
    "\x80",
    "1.2\xFF",
    "1.2\xE1",
    "1\xB2.2",
    "\0"s,
    "1.2\0"s,
    "1\0.2"s,
    "1.2b\0"s,
    "\0001.2"s,
    "1.2\0b3"s,
    // Numbers out of range, each in each place.
    "65536",
    "70000",
    "70000.1",
    "65536.1",
    "1.65536",
    "1.2.65536",
    "65536.2.3",
    "1.65536.3",
    "1.2b65536",
    "1.65536b3",
    "65536.2b3",
    "1.2.3b65536",
    "1.2.65536b4",
    "1.2.65536b",
    "1.65536b",
    "1.2.3.65536",
    "1.2.65536.4",
    "1.65536.3.4",
    "65536.2.3.4",
    "1.2.3.131072",
    "4294967295",
    "4294967296",
    "4294967297.1",
    "1.4294967298",
    "1.2.4294967299",
    "1.2b4294967300",
    "1.2.3.4294967301",
    "18446744073709551615",
    "18446744073709551616",
    "18446744073709551617.1",
    "1.18446744073709551618",
    "1.2.3b18446744073709551620",
    "99999999999999999999999999",
    // Long ones.
    std::string(100'000, '9'),
    std::string(100'000, 'b'),
    std::string(100'000, '.'),
    std::string(1'000'000, ' '),
    "1.2" + std::string(100'000, 'b'),
    "1.2b" + std::string(100'000, '9'),
};

std::string const kTooManyParts = [] {
    std::string text = "1";
    for (int i = 0; i < 10'000; ++i) text += ".1";
    return text;
}();

}  // namespace

TEST(TextToVersion, TakesEachForm) {
    for (Row const& row : kNumeric)
        EXPECT_EQ(Fields(row.version), Fields(Parsed(row.text))) << Shown(row.text);
}

TEST(TextToVersion, KeepsEveryOtherTextAsItIs) {
    for (std::string const& text : kTextual) {
        MacVersion const version = Parsed(text);
        EXPECT_TRUE(HaveSameFields(Textual(text), version)) << Shown(text) << " became " << Fields(version);
    }
    EXPECT_TRUE(HaveSameFields(Textual(kTooManyParts), Parsed(kTooManyParts)));
}

TEST(TextToVersion, MakesZerosOfTheEmptyText) {
    EXPECT_EQ("0 0 0 0x00 0", Fields(Parsed("")));
    EXPECT_EQ("0 0 0 0x00 0", Fields(TextToVersion(ConstData())));
    EXPECT_EQ("0.0", VersionToString(Parsed("")));
    EXPECT_EQ(0, CompareVersions(Parsed(""), Parsed("0")));
}

TEST(TextToVersion, TakesOnlyItsPartOfTheBytes) {
    std::string const bytes = "11.22b33";
    EXPECT_EQ("1 22 0 0x60 3", Fields(Parsed(std::string_view(bytes).substr(1, 6))));
    EXPECT_EQ("11 22 0 0x00 0", Fields(Parsed(std::string_view(bytes).substr(0, 5))));
}

// Every byte in the places of a period and of a letter.
TEST(TextToVersion, KnowsNoOtherSigns) {
    for (int byte = 0; byte < 256; ++byte) {
        char const c = static_cast<char>(byte);
        std::string const text = {'1', '.', '2', c, '3'};
        MacVersion expected = Textual(text);
        if (c >= '0' && c <= '9') expected = Numeric(1, static_cast<unsigned int>(203 + 10 * (c - '0')));
        if (c == '.') expected = Numeric(1, 2, 3);
        if (c == 'a' || c == 'A') expected = Numeric(1, 2, 0, 0x40, 3);
        if (c == 'b' || c == 'B') expected = Numeric(1, 2, 0, 0x60, 3);
        if (c == 'd' || c == 'D') expected = Numeric(1, 2, 0, 0x20, 3);
        if (c == 'f' || c == 'F') expected = Numeric(1, 2, 0, 0x80, 3);
        EXPECT_EQ(Fields(expected), Fields(Parsed(text)));
    }
}

// After each failure each text is what it is by itself.
TEST(TextToVersion, KeepsNothingFromOneTextToTheNext) {
    for (std::string const& failing : kTextual) {
        if (failing.size() > 1000) continue;
        for (Row const& row : kNumeric) {
            if (row.text.size() > 1000) continue;
            Parsed(failing);
            ASSERT_EQ(Fields(row.version), Fields(Parsed(row.text))) << Shown(failing) << " " << row.text;
        }
        Parsed(failing);
        ASSERT_EQ("0 0 0 0x00 0", Fields(Parsed(""))) << Shown(failing);
        for (std::string const& next : {"1.2-3"s, "b"s, ".5"s, "1."s, "65536"s}) {
            Parsed(failing);
            ASSERT_TRUE(HaveSameFields(Textual(next), Parsed(next))) << Shown(failing) << " " << next;
        }
    }
}

TEST(TextToVersion, KeepsNothingOfAVersionForTheNext) {
    for (Row const& before : kNumeric) {
        for (Row const& row : kNumeric) {
            if (before.text.size() + row.text.size() > 1000) continue;
            Parsed(before.text);
            ASSERT_EQ(Fields(row.version), Fields(Parsed(row.text))) << before.text << " " << row.text;
        }
    }
}

TEST(TextToVersion, GivesVersionsOfTheirOwn) {
    MacVersion const one = Parsed("1.2.3b4");
    MacVersion const other = Parsed("text that is no version, and a long one");
    Parsed("9.9.9.9");
    EXPECT_EQ("1 2 3 0x60 4", Fields(one));
    EXPECT_EQ("text that is no version, and a long one", other.text);
}

// The fourth number is kept by its stage, and so the text leads back to it, but not a third one in its place.
TEST(TextToVersion, ReadsTextFormsOfItsVersionsBack) {
    for (Row const& row : kNumeric) {
        MacVersion const again = Parsed(VersionToString(row.version));
        bool const isShifted = row.version.stage == kReleased && row.version.bugrev == 0;
        if (!isShifted || row.version.nonrel == 0) {
            EXPECT_EQ(0, CompareVersions(row.version, again)) << Shown(row.text);
        }
    }
    EXPECT_EQ("1.2.4", VersionToString(Parsed("1.2.0.4")));
    EXPECT_EQ("1 2 4 0x00 0", Fields(Parsed("1.2.4")));
}
