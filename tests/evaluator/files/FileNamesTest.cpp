#include <gtest/gtest.h>

#include "evaluator/files/Naming.h"

using MacintoshPlatform::ExactFileName;
using MacintoshPlatform::HasSuffix;
using MacintoshPlatform::MakeUTF8String;

TEST(FileNames, OfUtf8GoToUnitsAndBack) {
    HFSUniStr255 const name = Name("caf\xC3\xA9");
    EXPECT_EQ(u"caf\u00e9", std::u16string(name.unicode, name.unicode + name.length));
    EXPECT_EQ("caf\xC3\xA9", MakeUTF8String(name));
}

TEST(FileNames, OfOtherBytesSurviveTheTrip) {
    for (char const* bytes : {"\xFF", "a\x80z", "\xE2\x82", "\xED\xA0\x80"})
        EXPECT_EQ(bytes, MakeUTF8String(Name(bytes)));
}

TEST(FileNames, OrdinaryCharactersAreManyMore) {
    for (char const* bytes : {":", "~", "...", ".a", " ", "a:b", "\\", "\n"})
        EXPECT_EQ(bytes, MakeUTF8String(Name(bytes)));
}

TEST(FileNames, ThatNoFileHasAreIllegal) {
    for (std::string_view const bytes :
         {std::string_view(""), std::string_view("."), std::string_view(".."), std::string_view("a/b"),
          std::string_view("/"), std::string_view("a\0b", 3)}) {
        EXPECT_THROW(Name(bytes), IllegalFileName) << bytes;
    }
}

TEST(FileNames, HaveAtMost255Bytes) {
    EXPECT_EQ(255, Name(std::string(255, 'x')).length);
    EXPECT_THROW(Name(std::string(256, 'x')), IllegalFileNameLength);
    std::string accents;
    for (int i = 0; i < 127; ++i) accents += "\xC3\xA9";
    EXPECT_EQ(127, Name(accents).length);
    EXPECT_THROW(Name(accents + "\xC3\xA9"), IllegalFileNameLength);
}

TEST(FileNames, InOtherEncodings) {
    std::string_view const macRoman = "caf\x8E";
    EXPECT_EQ("caf\xC3\xA9",
              MakeUTF8String(ExactFileName({Bytes(macRoman), macRoman.size()}, kCFStringEncodingMacRoman)));
    std::string_view const notAscii = "\xFF";
    EXPECT_THROW(ExactFileName({Bytes(notAscii), 1}, kCFStringEncodingASCII), IllegalFileName);
    EXPECT_THROW(ExactFileName({Bytes(notAscii), 1}, 0x0A01), IllegalFileName);
}

TEST(FileNames, CompareUnitForUnit) {
    EXPECT_TRUE(Name("a") == Name("a"));
    EXPECT_FALSE(Name("a") == Name("A"));
    EXPECT_FALSE(Name("a") == Name("ab"));
    EXPECT_FALSE(Name("\xC3\xA9") == Name("e\xCC\x81"));
}

TEST(FileNames, SuffixNeedsNoDotAndTheSameCase) {
    EXPECT_TRUE(HasSuffix(Name("file.txt"), ".txt"));
    EXPECT_TRUE(HasSuffix(Name("file.txt"), "xt"));
    EXPECT_TRUE(HasSuffix(Name("file.txt"), "file.txt"));
    EXPECT_TRUE(HasSuffix(Name("file.txt"), ""));
    EXPECT_FALSE(HasSuffix(Name("file.txt"), ".TXT"));
    EXPECT_FALSE(HasSuffix(Name("file.txt"), "a file.txt"));
    EXPECT_TRUE(HasSuffix(Name("caf\xC3\xA9"), "\xC3\xA9"));
    EXPECT_TRUE(HasSuffix(Name("caf\xFF"), "\xFF"));
}
