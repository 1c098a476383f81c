// Text to bytes of each encoding.

#include <CoreFoundation/CFString.h>
#include <gtest/gtest.h>

#include "support/Owned.h"

namespace {

struct Result {
    CFIndex converted;
    std::string bytes;

    bool operator==(Result const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Result const& result) {
    return out << result.converted << " units: " << testing::PrintToString(result.bytes);
}

CFStringRef NewText(std::u16string_view text) {
    std::vector<UniChar> const units(text.begin(), text.end());
    return CFStringCreateWithCharacters(kCFAllocatorDefault, units.data(),
                                        static_cast<CFIndex>(units.size()));
}

// Converts all of a text with room for all of it, after a measuring pass that must agree.
Result Convert(std::u16string_view text, CFStringEncoding encoding, UInt8 lossByte = 0,
               bool external = false) {
    Owned<CFStringRef> const string(NewText(text));
    CFRange const all = CFRangeMake(0, CFStringGetLength(string));
    CFIndex needed = -1;
    CFIndex const measured = CFStringGetBytes(string, all, encoding, lossByte, external, nullptr, 0, &needed);
    std::string buffer(static_cast<std::size_t>(needed), '\0');
    CFIndex used = -1;
    CFIndex const converted = CFStringGetBytes(string, all, encoding, lossByte, external,
                                               reinterpret_cast<UInt8*>(buffer.data()), needed, &used);
    EXPECT_EQ(measured, converted);
    EXPECT_EQ(needed, used);
    return {converted, buffer};
}

Result ConvertInto(CFIndex room, std::u16string_view text, CFStringEncoding encoding, bool external = false) {
    Owned<CFStringRef> const string(NewText(text));
    std::string buffer(16, '*');
    CFIndex used = -1;
    CFIndex const converted =
        CFStringGetBytes(string, CFRangeMake(0, CFStringGetLength(string)), encoding, 0, external,
                         reinterpret_cast<UInt8*>(buffer.data()), room, &used);
    EXPECT_EQ('*', buffer[static_cast<std::size_t>(std::max<CFIndex>(room, 0))]) << "wrote behind the room";
    return {converted, buffer.substr(0, static_cast<std::size_t>(used))};
}

std::u16string const kLoneSurrogate(1, static_cast<char16_t>(0xDC80));

}  // namespace

TEST(StringBytes, Utf8OfEveryLength) {
    EXPECT_EQ((Result{5, "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"}),
              Convert(u"a\u00e9\u20ac\U0001F600", kCFStringEncodingUTF8));
}

TEST(StringBytes, Utf16InEachByteOrder) {
    EXPECT_EQ((Result{1, std::string("\x20\xAC", 2)}), Convert(u"\u20ac", kCFStringEncodingUTF16BE));
    EXPECT_EQ((Result{1, std::string("\xAC\x20", 2)}), Convert(u"\u20ac", kCFStringEncodingUTF16LE));
}

TEST(StringBytes, MarkStandsBeforeExternalUtf16OfTheMachineOnly) {
    char16_t const expected[] = {0xFEFF, u'a'};
    std::string const bytes(reinterpret_cast<char const*>(expected), sizeof expected);
    EXPECT_EQ((Result{1, bytes}), Convert(u"a", kCFStringEncodingUTF16, 0, true));
    EXPECT_EQ((Result{1, std::string("\0a", 2)}), Convert(u"a", kCFStringEncodingUTF16BE, 0, true));
    EXPECT_EQ((Result{1, "a"}), Convert(u"a", kCFStringEncodingUTF8, 0, true));
    EXPECT_EQ((Result{1, "a"}), Convert(u"a", kCFStringEncodingMacRoman, 0, true));
}

TEST(StringBytes, StopsBeforeACharacterWithoutForm) {
    EXPECT_EQ((Result{1, "a"}), Convert(u"a\u4e2db", kCFStringEncodingMacRoman));
    EXPECT_EQ((Result{1, "a"}), Convert(u"a\u00e9", kCFStringEncodingASCII));
    EXPECT_EQ((Result{1, "\xE9"}), Convert(u"\u00e9\u0152", kCFStringEncodingISOLatin1));
    EXPECT_EQ((Result{0, ""}), Convert(kLoneSurrogate, kCFStringEncodingUTF8));
}

TEST(StringBytes, LossByteReplacesACharacterWithoutForm) {
    EXPECT_EQ((Result{3, "a?b"}), Convert(u"a\u4e2db", kCFStringEncodingMacRoman, '?'));
    EXPECT_EQ((Result{2, "?b"}), Convert(kLoneSurrogate + u"b", kCFStringEncodingUTF8, '?'));
    EXPECT_EQ((Result{1, "?"}), Convert(u"\u00e9", kCFStringEncodingASCII, '?'));
}

TEST(StringBytes, SurrogatePairIsTwoLossBytes) {
    EXPECT_EQ((Result{3, "??a"}), Convert(u"\U0001F600a", kCFStringEncodingMacRoman, '?'));
    EXPECT_EQ((Result{2, "??"}), Convert(u"\U0001F600", kCFStringEncodingASCII, '?'));
}

TEST(StringBytes, BaseAndMarkAreComposedForMacRoman) {
    EXPECT_EQ((Result{2, "\x8E"}), Convert(u"e\u0301", kCFStringEncodingMacRoman));
    EXPECT_EQ((Result{2, "\xD9"}), Convert(u"Y\u0308", kCFStringEncodingMacRoman));
    EXPECT_EQ((Result{4,
                      "a\x82"
                      "b"}),
              Convert(u"aC\u0327b", kCFStringEncodingMacRoman));
    EXPECT_EQ((Result{2, "\xAD"}), Convert(u"=\u0338", kCFStringEncodingMacRoman));
}

TEST(StringBytes, ClusterThatDoesNotComposeIsOneLossByte) {
    EXPECT_EQ((Result{4, "?a"}), Convert(u"e\u0301\u0302a", kCFStringEncodingMacRoman, '?'));
    EXPECT_EQ((Result{2, "?"}), Convert(u"x\u0301", kCFStringEncodingMacRoman, '?'));
    EXPECT_EQ((Result{1, "a"}), Convert(u"ax\u0301", kCFStringEncodingMacRoman));
    EXPECT_EQ((Result{1, "?"}), Convert(u"\u0301", kCFStringEncodingMacRoman, '?'));
}

TEST(StringBytes, OhmSignIsTheOmegaOfMacRoman) {
    EXPECT_EQ((Result{1, "\xBD"}), Convert(u"\u2126", kCFStringEncodingMacRoman));
}

TEST(StringBytes, CharacterIsNeverSplit) {
    EXPECT_EQ((Result{1, "a"}), ConvertInto(3, u"a\u20ac", kCFStringEncodingUTF8));
    EXPECT_EQ((Result{2, "a\xE2\x82\xAC"}), ConvertInto(4, u"a\u20ac", kCFStringEncodingUTF8));
    EXPECT_EQ((Result{0, ""}), ConvertInto(3, u"\U0001F600", kCFStringEncodingUTF16BE));
    EXPECT_EQ((Result{0, ""}), ConvertInto(3, u"\U0001F600", kCFStringEncodingUTF8));
}

TEST(StringBytes, NoRoomConvertsNothing) {
    EXPECT_EQ((Result{0, ""}), ConvertInto(0, u"a", kCFStringEncodingUTF8));
    EXPECT_EQ((Result{0, ""}), ConvertInto(-1, u"a", kCFStringEncodingUTF8));
    EXPECT_EQ((Result{0, ""}), ConvertInto(1, u"a", kCFStringEncodingUTF16, true));
}

TEST(StringBytes, RangeIsConvertedAndNoMore) {
    Owned<CFStringRef> const text(NewString("abcdef"));
    UInt8 buffer[6] = {};
    CFIndex used = 0;
    EXPECT_EQ(3,
              CFStringGetBytes(text, CFRangeMake(2, 3), kCFStringEncodingASCII, 0, false, buffer, 6, &used));
    EXPECT_EQ("cde", std::string(buffer, buffer + used));
}

TEST(StringBytes, UsedMayBeNull) {
    Owned<CFStringRef> const text(NewString("ab"));
    EXPECT_EQ(
        2, CFStringGetBytes(text, CFRangeMake(0, 2), kCFStringEncodingUTF8, 0, false, nullptr, 0, nullptr));
}

TEST(StringBytes, RangeOutsideTheTextAndUnknownEncodingConvertNothing) {
    Owned<CFStringRef> const text(NewString("ab"));
    CFIndex used = 7;
    EXPECT_EQ(0,
              CFStringGetBytes(text, CFRangeMake(1, 2), kCFStringEncodingUTF8, 0, false, nullptr, 0, &used));
    EXPECT_EQ(0, used);
    EXPECT_EQ(0,
              CFStringGetBytes(text, CFRangeMake(-1, 1), kCFStringEncodingUTF8, 0, false, nullptr, 0, &used));
    EXPECT_EQ(0, CFStringGetBytes(text, CFRangeMake(0, 2), 0x0A01, '?', false, nullptr, 0, &used));
    EXPECT_EQ(0, used);
}
