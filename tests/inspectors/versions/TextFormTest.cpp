#include <gtest/gtest.h>

#include "VersionsOfTests.h"

namespace {

struct Row {
    char const* text;
    MacVersion version;
};

// Of each stage with a number and without, and with a bug revision and without.
Row const kRows[] = {
    {"0.0", {}},
    {"1.2", Numeric(1, 2)},
    {"1.2.3", Numeric(1, 2, 3)},
    {"1.2", Numeric(1, 2, 0, 0x80, 0)},
    {"1.2.3", Numeric(1, 2, 3, 0x80, 0)},
    {"1.0d", Numeric(1, 0, 0, 0x20, 0)},
    {"1.0d7", Numeric(1, 0, 0, 0x20, 7)},
    {"1.2.3a", Numeric(1, 2, 3, 0x40, 0)},
    {"1.2.3a1", Numeric(1, 2, 3, 0x40, 1)},
    {"1.2b", Numeric(1, 2, 0, 0x60, 0)},
    {"1.2.3b4", Numeric(1, 2, 3, 0x60, 4)},
    {"1.0f3", Numeric(1, 0, 0, 0x80, 3)},
    {"1.2.3.4", Numeric(1, 2, 3, 0xA0, 4)},
    {"1.2.3.0", Numeric(1, 2, 3, 0xA0, 0)},
    // A bug revision of zero is left out, but not a fourth number, which then is the third.
    {"1.2.0", Numeric(1, 2, 0, 0xA0, 0)},
    {"1.2.4", Numeric(1, 2, 0, 0xA0, 4)},
    // Only a resource gives a number without a stage.
    {"2.1.5", Numeric(2, 1, 0, 0x00, 5)},
    {"2.1.3.5", Numeric(2, 1, 3, 0x00, 5)},
    {"65535.65535.65535b65535", Numeric(65535, 65535, 65535, 0x60, 65535)},
    {"65535.65535.65535.65535", Numeric(65535, 65535, 65535, 0xA0, 65535)},
    {"65535.65535.65535.65535", Numeric(65535, 65535, 65535, 0x00, 65535)},
    {"10000.10000.10000d10000", Numeric(10000, 10000, 10000, 0x20, 10000)},
};

}  // namespace

TEST(VersionText, IsThatOfTheNumbers) {
    for (Row const& row : kRows) EXPECT_EQ(row.text, VersionToString(row.version)) << Fields(row.version);
}

TEST(VersionText, HasNothingForUnknownStages) {
    for (unsigned int code = 1; code < 256; ++code) {
        if (code % 0x20 == 0 && code <= 0xA0) continue;
        EXPECT_EQ("1.2", VersionToString(Numeric(1, 2, 0, code, 0))) << code;
        EXPECT_EQ("1.2.3", VersionToString(Numeric(1, 2, 3, code, 0))) << code;
        EXPECT_EQ("1.2.34", VersionToString(Numeric(1, 2, 3, code, 4))) << code;
        EXPECT_EQ("1.265535", VersionToString(Numeric(1, 2, 0, code, 65535))) << code;
    }
}

TEST(VersionText, IsTheTextOfATextualVersion) {
    std::string const withNul("1.2\0b", 5);
    std::string const longText(1'000'000, '7');
    for (std::string const& text : {std::string("1.2-3"), std::string(" "), withNul, longText})
        EXPECT_EQ(text, VersionToString(Textual(text)));
}

// The numbers beside a text carry no meaning.
TEST(VersionText, IsTheTextWhateverTheNumbers) {
    MacVersion version = Numeric(1, 2, 3, 0x60, 4);
    version.text = "other";
    EXPECT_EQ("other", VersionToString(version));
}

TEST(VersionText, OfACopyIsItsOwn) {
    MacVersion version = Textual("one of some length, which lies in memory");
    MacVersion const copy = version;
    version.text[0] = 'O';
    version.text += "!";
    EXPECT_EQ("one of some length, which lies in memory", VersionToString(copy));
}
