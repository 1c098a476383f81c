// The bytes of strings and of data.

#include "filesystem/Asking.h"
#include "plist/Lists.h"

namespace {

using namespace std::string_literals;

std::string StringOf(std::string_view bytes) { return Text(string_of_value(List(bytes).Value())); }
std::string CStringOf(std::string_view bytes) { return Text(cstring_of_value(List(bytes).Value())); }

// A list that is data alone.
std::string DataList(std::string const& bytes) {
    return Binary(BinaryList::Sized(0x40, bytes.size()) + bytes);
}

}  // namespace

TEST(StringsOfValues, AreMacRoman) {
    EXPECT_EQ("caf\x8e \xd0", StringOf("<string>caf\u00e9 \u2013</string>"));
    EXPECT_EQ("caf\x8e \xd0", CStringOf("<string>caf\u00e9 \u2013</string>"));
}

TEST(StringsOfValues, HaveQuestionMarksForWhatMacRomanLacks) {
    EXPECT_EQ("a?b", StringOf("<string>a\u4e2db</string>"));
    EXPECT_EQ("a?b", CStringOf("<string>a\u4e2db</string>"));
}

TEST(StringsOfValues, MayBeEmpty) {
    EXPECT_EQ("", StringOf("<string/>"));
    EXPECT_EQ("", CStringOf("<string/>"));
}

TEST(StringsOfValues, KeepZerosThatStandInText) {
    std::string const text = Binary("\x52"s + "a\0"s);
    EXPECT_EQ("a\0"s, StringOf(text));
    EXPECT_EQ("a\0"s, CStringOf(text));
}

TEST(StringsOfValues, AreTheBytesOfData) {
    EXPECT_EQ("\0\xff\x8e\0"s, StringOf(DataList("\0\xff\x8e\0"s)));
    EXPECT_EQ("", StringOf(DataList("")));
}

TEST(CStringsOfValues, DropOneZeroAtTheEndOfData) {
    EXPECT_EQ("ab", CStringOf(DataList("ab\0"s)));
    EXPECT_EQ("ab\0"s, CStringOf(DataList("ab\0\0"s)));
    EXPECT_EQ("", CStringOf(DataList("\0"s)));
}

TEST(CStringsOfValues, AreAllOfDataThatEndsOtherwise) {
    EXPECT_EQ("ab", CStringOf(DataList("ab")));
    EXPECT_EQ("\0a"s, CStringOf(DataList("\0a"s)));
}

TEST(CStringsOfValues, OfNoDataAreEmpty) { EXPECT_EQ("", CStringOf(DataList(""))); }

TEST(StringsOfValues, OutliveTheList) {
    inspector_string text;
    {
        List const list("<string>long enough not to lie in the object itself</string>");
        text = string_of_value(list.Value());
    }
    EXPECT_EQ("long enough not to lie in the object itself", Text(text));
}
