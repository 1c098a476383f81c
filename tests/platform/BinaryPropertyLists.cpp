#include <gtest/gtest.h>

#include "platform/BinaryListBuilder.h"
#include "platform/PropertyListText.h"

namespace {

using namespace std::string_literals;

// A list of one object.
std::string ListOf(std::string const& object) {
    BinaryList list;
    list.Add(object);
    return List(list.Bytes());
}

struct Row {
    std::string object;
    std::string shown;
};

void ExpectRows(std::initializer_list<Row> rows) {
    for (Row const& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.object));
        EXPECT_EQ(row.shown, ListOf(row.object));
    }
}

TEST(BinaryObjects, AreRead) {
    ExpectRows({Row{"\x00"s, "(other)"},
                Row{"\x08", "false"},
                Row{"\x09", "true"},
                Row{"\x10\xFF", "255"},
                Row{"\x11\xFF\xFF", "65535"},
                Row{"\x12\xFF\xFF\xFF\xFF", "4294967295"},
                Row{"\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "-1"},
                Row{"\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "9223372036854775807"},
                Row{"\x14"s + std::string(16, '\xFF'), "-1"},
                Row{"\x14"s + std::string(8, '\0') + std::string(8, '\xFF'), "1.8446744073709552e+19"},
                Row{"\x22\x3F\xC0\x00\x00"s, "1.5"},
                Row{"\x23\x40\x04\x00\x00\x00\x00\x00\x00"s, "2.5"},
                Row{"\x33\xBF\xF0\x00\x00\x00\x00\x00\x00"s, "@-1"},
                Row{"\x40", "<>"},
                Row{"\x42\x00\xFF"s, "<00ff>"},
                Row{"\x50", "\"\""},
                Row{"\x53"s + "abc", "\"abc\""},
                Row{"\x62\x00\x41\x20\xAC"s, "\"A\u20AC\""},
                Row{"\x62\xD8\x3D\xDE\x00"s, "\"\U0001F600\""},
                Row{"\x80\x07", "(other)"},
                Row{"\x87\x01\x02\x03\x04\x05\x06\x07\x08", "(other)"}});
}

TEST(BinaryObjects, OfUnknownKindsAreRefused) {
    for (std::string const& object : {"\x01"s, "\x0F"s, "\x15" + std::string(32, '\0'), "\x21\x00\x00"s,
                                      "\x24" + std::string(16, '\0'), "\x32\x00\x00\x00\x00"s, "\x70"s,
                                      "\x88" + std::string(9, '\0'), "\x90"s, "\xB0"s, "\xE0"s, "\xF0"s}) {
        EXPECT_EQ("refused: binary property list: an object is of an unknown kind", ListOf(object))
            << testing::PrintToString(object);
    }
}

TEST(BinaryLists, HoldContainers) {
    BinaryList list;
    list.Add("\xD2\x01\x02\x03\x04");
    list.Add("\x51k");
    list.Add("\x51l");
    list.AddArray({5, 1});
    list.Add("\xC1\x05");
    list.Add("\x10\x2A");
    EXPECT_EQ(R"({"k" = (42, "k"); "l" = (other)})", List(list.Bytes()));
}

TEST(BinaryLists, HaveKeysInTheirOrderAndOfEqualOnesTheLastValue) {
    BinaryList list;
    list.Add("\xD3\x01\x02\x03\x04\x05\x06");
    list.Add("\x51z");
    list.Add("\x51y");
    list.Add("\x51z");
    list.Add("\x10\x01");
    list.Add("\x10\x02");
    list.Add("\x10\x03");
    EXPECT_EQ(R"({"z" = 3; "y" = 2})", List(list.Bytes()));
}

TEST(BinaryLists, MayHaveLargeSizesBehindTheMarker) {
    EXPECT_EQ('"' + std::string(300, 'x') + '"',
              ListOf(BinaryList::Sized(0x50, 300) + std::string(300, 'x')));
    EXPECT_EQ(
        "\""
        "x\"",
        ListOf("\x5F\x10\x01x"));
    EXPECT_EQ(
        "\""
        "x\"",
        ListOf("\x5F\x13\x00\x00\x00\x00\x00\x00\x00\x01x"s));
}

TEST(BinaryLists, ShareAnObjectThatIsReferredToMoreThanOnce) {
    BinaryList list;
    list.AddArray({1, 1});
    list.AddArray({2});
    list.Add("\x51x");
    std::string reason;
    Owned<CFTypeRef> const read = ReadList(list.Bytes(), reason);
    ASSERT_TRUE(read) << reason;
    auto const array = static_cast<CFArrayRef>(static_cast<CFTypeRef>(read));
    EXPECT_EQ(CFArrayGetValueAtIndex(array, 0), CFArrayGetValueAtIndex(array, 1));
    EXPECT_EQ(2, CFGetRetainCount(CFArrayGetValueAtIndex(array, 0)));
}

TEST(BinaryLists, MayHaveNumbersOfAnySize) {
    for (std::size_t offsetSize = 1; offsetSize <= 8; ++offsetSize) {
        for (std::size_t referenceSize = 1; referenceSize <= 8; ++referenceSize) {
            BinaryList list;
            list.offsetSize = offsetSize;
            list.referenceSize = referenceSize;
            list.AddArray({1});
            list.Add("\x51x");
            EXPECT_EQ("(\"x\")", List(list.Bytes())) << offsetSize << " " << referenceSize;
        }
    }
}

TEST(BinaryLists, AreOfEveryVersionZero) {
    BinaryList list;
    list.Add("\x09");
    for (char const version : {'0', '1', '5'}) {
        std::string bytes = list.Bytes();
        bytes[7] = version;
        EXPECT_EQ("true", List(bytes)) << version;
    }
}

TEST(BinaryLists, AreSpoiltByAnOddByteOfAsciiOrAKeyThatIsNoString) {
    EXPECT_EQ("refused: binary property list: a string of ASCII has other bytes", ListOf("\x51\x80"));
    BinaryList list;
    list.Add("\xD1\x01\x01");
    list.Add("\x10\x01");
    EXPECT_EQ("refused: binary property list: a key is no string", List(list.Bytes()));
}

}  // namespace
