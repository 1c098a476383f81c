#include "Evaluator/PlatformStrings.h"

#include <gtest/gtest.h>

#include <memory>

#include "Evaluator/Exceptions.h"
#include "TextOf.h"

namespace {

constexpr unsigned long macRoman = kCFStringEncodingMacRoman;
constexpr unsigned long utf8 = kCFStringEncodingUTF8;
constexpr unsigned long unknown = 0x7777;

// A platform string that is released when it goes out of scope.
class Owned {
  public:
    explicit Owned(CFStringRef string) : string(string) {}
    ~Owned() { CFRelease(string); }
    Owned(Owned const&) = delete;
    operator CFStringRef() const { return string; }

  private:
    CFStringRef string;
};

// From one encoding into another.
std::string Converted(std::string const& text, unsigned long from, unsigned long to) {
    Owned const string(MakeCFString(BytesOf(text), from));
    return TextOf(MakeString(string, to));
}

}  // namespace

TEST(PlatformStrings, AreMadeFromTheBytesOfAnEncoding) {
    Owned const string(MakeCFString("na\xC3\xAFve", utf8));
    EXPECT_EQ(5, CFStringGetLength(string));
    UniChar third = 0;
    CFStringGetCharacters(string, CFRangeMake(2, 1), &third);
    EXPECT_EQ(0xEF, third);
    EXPECT_EQ(1, CFGetRetainCount(string));
}

TEST(PlatformStrings, BecomeBytesOfTheEncoding) {
    EXPECT_EQ("na\x95ve", Converted("na\xC3\xAFve", utf8, macRoman));
    EXPECT_EQ("na\xC3\xAFve", Converted("na\x95ve", macRoman, utf8));
    EXPECT_EQ("", Converted("", macRoman, utf8));
    EXPECT_EQ(std::string("a\0b", 3), Converted(std::string("a\0b", 3), macRoman, utf8));
}

TEST(PlatformStrings, EveryMacRomanByteSurvives) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    EXPECT_EQ(all, Converted(all, macRoman, macRoman));
}

TEST(PlatformStrings, CharactersThatTheEncodingLacksBecomeQuestionMarks) {
    EXPECT_EQ("a?b", Converted("a\xE4\xB8\xAD"
                               "b",
                               utf8, macRoman));
}

TEST(PlatformStrings, HaveNoByteOrderMark) {
    EXPECT_EQ(std::string("a\0", 2), Converted("a", utf8, kCFStringEncodingUTF16LE));
    EXPECT_EQ(2u, Converted("a", utf8, kCFStringEncodingUTF16).size());
}

TEST(PlatformStrings, AreNotMadeFromBytesThatTheEncodingForbids) {
    EXPECT_THROW(MakeCFString("\xFF\xFE", utf8), ParsingFailure);
    EXPECT_THROW(MakeCFString("abc", kCFStringEncodingUTF16LE), ParsingFailure);
}

TEST(PlatformStrings, KnowNoOtherEncodings) {
    EXPECT_THROW(MakeCFString("a", unknown), ParsingFailure);
    EXPECT_THROW(MakeCFString("a", 0x100000000), ParsingFailure);
    Owned const string(MakeCFString("a", macRoman));
    EXPECT_THROW(MakeString(string, unknown), ParsingFailure);
    EXPECT_THROW(MakeString(string, 0x100000000 + utf8), ParsingFailure);
}
