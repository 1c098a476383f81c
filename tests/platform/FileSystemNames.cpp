// Names and paths, which are bytes, to text and back.

#include <gtest/gtest.h>

#include "support/Owned.h"

namespace {

CFStringRef NewName(char const* bytes) {
    return CFStringCreateWithFileSystemRepresentation(kCFAllocatorDefault, bytes);
}

std::string NameOfUnits(std::u16string_view text) {
    std::vector<UniChar> const units(text.begin(), text.end());
    Owned<CFStringRef> const string(
        CFStringCreateWithCharacters(kCFAllocatorDefault, units.data(), static_cast<CFIndex>(units.size())));
    return NameBytes(string);
}

}  // namespace

TEST(FileSystemNames, OfUtf8AreItsText) {
    Owned<CFStringRef> const name(NewName("caf\xC3\xA9 \xF0\x9F\x98\x80"));
    EXPECT_EQ(u"caf\u00e9 \U0001F600", Units(name));
    EXPECT_EQ("caf\xC3\xA9 \xF0\x9F\x98\x80", NameBytes(name));
}

TEST(FileSystemNames, BytesThatAreNotUtf8BecomeLoneSurrogates) {
    Owned<CFStringRef> const name(NewName("a\x80\xFF"));
    EXPECT_EQ((std::u16string{u'a', static_cast<char16_t>(0xDC80), static_cast<char16_t>(0xDCFF)}),
              Units(name));
}

TEST(FileSystemNames, AnyBytesSurviveTheTrip) {
    char const* const names[] = {"\xC3(",
                                 "\xE2\x82",
                                 "\xED\xA0\x80\xED\xB0\x80",
                                 "\xC0\x80",
                                 "\xF4\x90\x80\x80",
                                 "\xED\xB2\x80",
                                 "\xC3\xC3\xA9\xA9",
                                 "x\xF0\x9F\x98"};
    for (char const* bytes : names) {
        Owned<CFStringRef> const name(NewName(bytes));
        EXPECT_EQ(bytes, NameBytes(name));
    }
    std::string all;
    for (int byte = 1; byte < 256; ++byte) all += static_cast<char>(byte);
    Owned<CFStringRef> const name(NewName(all.c_str()));
    EXPECT_EQ(all, NameBytes(name));
}

TEST(FileSystemNames, OtherLoneSurrogatesAndNulAreNoNames) {
    EXPECT_EQ("(no name)", NameOfUnits(std::u16string(1, static_cast<char16_t>(0xD800))));
    EXPECT_EQ("(no name)", NameOfUnits(std::u16string(1, static_cast<char16_t>(0xDC7F))));
    EXPECT_EQ("(no name)", NameOfUnits(std::u16string_view(u"a\0b", 3)));
    EXPECT_EQ("", NameOfUnits(u""));
}

TEST(FileSystemNames, NeedRoomForTheNul) {
    Owned<CFStringRef> const name(NewName("abc"));
    char buffer[4] = {'*', '*', '*', '*'};
    EXPECT_FALSE(CFStringGetFileSystemRepresentation(name, buffer, 3));
    EXPECT_FALSE(CFStringGetFileSystemRepresentation(name, buffer, -1));
    EXPECT_TRUE(CFStringGetFileSystemRepresentation(name, buffer, 4));
    EXPECT_STREQ("abc", buffer);
}
