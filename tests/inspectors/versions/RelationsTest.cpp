// Relations of versions and strings, casts and properties: the functions that modules register.

#include <gtest/gtest.h>

#include "VersionsOfTests.h"

namespace {

struct Row {
    char const* left;
    char const* right;
    int order;
};

Row const kRows[] = {
    // Both numeric.
    {"1.2", "1.2", 0},
    {"1.2.3", "1.2.3.0", 0},
    {"1.2", "1.2f", 0},
    {"1.2", "1.2.0.0", 0},
    {"01.002", "1.2", 0},
    {"", "0.0", 0},
    {"1.2B7", "1.2b7", 0},
    {"1.5", "1.10", -1},
    {"1.05", "1.1", 1},
    {"1.9", "1.10", -1},
    {"9.9", "10.0", -1},
    {"1.0b2", "1.0", -1},
    {"1.0f1", "1.0", -1},
    {"1.0", "1.0.0.1", -1},
    {"", "0.1", -1},
    // One textual.
    {"1.0 beta", "1.0", 1},
    {"1.0 beta", "1.0b2", -1},
    {"1.05-1", "1.1", -1},
    {"1.1-a", "1.1", 1},
    {"1.10-1", "1.9", 1},
    {"v1.2", "1.2", 1},
    {"1.2-1", "1.2.0.0", -1},
    {"70000.1", "9999.1", 1},
    {"", " ", 1},
    // Both textual.
    {"1.2-1", "1.2-1", 0},
    {"1.2-9", "1.2-10", -1},
    {"1.2-01", "1.2-1", -1},
    {"1.2.3.4.5", "1.2.3.4.10", -1},
    {"1.2beta", "1.2final", -1},
    {"1b", "1B", 1},
    {"65536.0", "65536.00", 1},
};

}  // namespace

TEST(VersionRelations, AreThoseOfTheOrder) {
    for (Row const& row : kRows) {
        MacVersion const left = Parsed(row.left), right = Parsed(row.right);
        std::string const rowText = Shown(row.left) + " and " + Shown(row.right);
        EXPECT_EQ(row.order, Sign(CompareVersions(left, right))) << rowText;
        EXPECT_EQ(row.order == 0, left == right) << rowText;
        EXPECT_EQ(row.order < 0, left < right) << rowText;
        EXPECT_EQ(row.order <= 0, left <= right) << rowText;
        EXPECT_EQ(row.order == 0, right == left) << rowText;
        EXPECT_EQ(row.order > 0, right < left) << rowText;
        EXPECT_EQ(row.order >= 0, right <= left) << rowText;
    }
}

TEST(VersionRelations, TakeStringsOnTheRight) {
    for (Row const& row : kRows) {
        std::string const rowText = Shown(row.left) + " and " + Shown(row.right);
        EXPECT_EQ(row.order == 0, Parsed(row.left) == AsString(row.right)) << rowText;
        EXPECT_EQ(row.order < 0, Parsed(row.left) < AsString(row.right)) << rowText;
        EXPECT_EQ(row.order <= 0, Parsed(row.left) <= AsString(row.right)) << rowText;
    }
}

TEST(VersionRelations, TakeStringsOnTheLeft) {
    for (Row const& row : kRows) {
        std::string const rowText = Shown(row.left) + " and " + Shown(row.right);
        EXPECT_EQ(row.order == 0, AsString(row.left) == Parsed(row.right)) << rowText;
        EXPECT_EQ(row.order < 0, AsString(row.left) < Parsed(row.right)) << rowText;
        EXPECT_EQ(row.order <= 0, AsString(row.left) <= Parsed(row.right)) << rowText;
    }
}

// A string is never compared as it stands.
TEST(VersionRelations, ReadStringsAsVersions) {
    EXPECT_TRUE(Parsed("1.2") == AsString("01.02"));
    EXPECT_TRUE(AsString("1.2.0.0") == Parsed("1.2"));
    EXPECT_TRUE(AsString("1.5") < Parsed("1.10"));
    EXPECT_TRUE(AsString("") == Parsed("0"));
    using namespace std::literals;
    EXPECT_FALSE(Parsed("1.2") == AsString("1.2 "));
    // The texts are compared up to the NUL byte.
    EXPECT_TRUE(Parsed("1.2") == AsString("1.2\0z"sv));
    EXPECT_TRUE(Parsed("1.2\0a"sv) == AsString("1.2\0z"sv));
}

TEST(VersionCasts, ToStringsGiveTheTextInInspectorMemory) {
    using namespace std::literals;
    std::string const longText(1'000'000, 'x');
    for (std::string const& text : {"1.2.3b4"s, "1.0 beta"s, "1.2\0z"s, "\x80"s, longText}) {
        MacVersion const version = Parsed(text);
        inspector_string const first = versionAsString(version), second = versionAsString(version);
        EXPECT_EQ(text, std::string(first.begin(), first.end()));
        EXPECT_NE(first.begin(), second.begin());
    }
    inspector_string const zeros = versionAsString(Parsed(""));
    EXPECT_EQ("0.0", std::string(zeros.begin(), zeros.end()));
}

TEST(VersionCasts, OfStringsReadTheVersion) {
    EXPECT_EQ("1 2 3 0x60 4", Fields(stringAsVersion(AsString("1.2.3b4"))));
    EXPECT_EQ("0 0 0 0x00 0 \"1b\"", Fields(stringAsVersion(AsString("1b"))));
    EXPECT_EQ("0 0 0 0x00 0", Fields(stringAsVersion({})));
}

TEST(VersionProperties, OfAName) {
    std::string const name = "1.2.3b45";
    EXPECT_EQ("1 2 3 0x60 4", Fields(version_of(Bytes(name).begin(), 7)));
    EXPECT_EQ("0 0 0 0x00 0 \"1.2.\"", Fields(version_of(Bytes(name).begin(), 4)));
    EXPECT_EQ("0 0 0 0x00 0", Fields(version_of(Bytes(name).begin(), 0)));
}

TEST(VersionProperties, AreItsNumbers) {
    MacVersion const version = Numeric(65535, 32768, 255, 0xA0, 7);
    EXPECT_EQ(65535, major_rev_of(version));
    EXPECT_EQ(32768, minor_rev_of(version));
    EXPECT_EQ(255, bug_rev_of(version));
    EXPECT_EQ(0xA0, stage_of(version).code);
    EXPECT_EQ(65535, bug_rev_of(Numeric(0, 0, 65535)));
    EXPECT_EQ(65535, minor_rev_of(Numeric(0, 65535)));
}

TEST(VersionProperties, OfATextualOneAreZero) {
    MacVersion const version = Parsed("7.8.9-1");
    EXPECT_EQ(0, major_rev_of(version));
    EXPECT_EQ(0, minor_rev_of(version));
    EXPECT_EQ(0, bug_rev_of(version));
    EXPECT_EQ(0, stage_of(version).code);
}
