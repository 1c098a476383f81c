// Bytes of each encoding to text.

#include <CoreFoundation/CFString.h>
#include <gtest/gtest.h>

#include <optional>

#include "support/Owned.h"

namespace {

constexpr char16_t kMacRomanUpperHalf[128] = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, 0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5,
    0x00E7, 0x00E9, 0x00E8, 0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3, 0x00F2, 0x00F4,
    0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, 0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6,
    0x00DF, 0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8, 0x221E, 0x00B1, 0x2264, 0x2265,
    0x00A5, 0x00B5, 0x2202, 0x2211, 0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8, 0x00BF,
    0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB, 0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5,
    0x0152, 0x0153, 0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA, 0x00FF, 0x0178, 0x2044,
    0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1,
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4, 0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9,
    0x0131, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7,
};

std::optional<std::u16string> Decoded(std::string_view bytes, CFStringEncoding encoding,
                                      bool external = false) {
    Owned<CFStringRef> const text(CFStringCreateWithBytes(
        kCFAllocatorDefault, Bytes(bytes), static_cast<CFIndex>(bytes.size()), encoding, external));
    if (text == nullptr) return std::nullopt;
    return Units(text);
}

}  // namespace

TEST(StringEncodings, EveryMacRomanByteIsItsCharacterAndComesBack) {
    for (int byte = 0; byte < 256; ++byte) {
        std::string const bytes(1, static_cast<char>(byte));
        char16_t const expected = byte < 128 ? static_cast<char16_t>(byte) : kMacRomanUpperHalf[byte - 128];
        Owned<CFStringRef> const text(NewString(bytes, kCFStringEncodingMacRoman));
        ASSERT_EQ(std::u16string(1, expected), Units(text)) << byte;
        UInt8 back = 0;
        CFIndex used = 0;
        ASSERT_EQ(1, CFStringGetBytes(text, CFRangeMake(0, 1), kCFStringEncodingMacRoman, 0, false, &back, 1,
                                      &used));
        ASSERT_EQ(byte, back);
        ASSERT_EQ(1, used);
    }
}

TEST(StringEncodings, Utf8OfEveryLength) {
    EXPECT_EQ(u"a\u00e9\u20ac\U0001F600",
              Decoded("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", kCFStringEncodingUTF8));
    EXPECT_EQ(u"", Decoded("", kCFStringEncodingUTF8));
}

TEST(StringEncodings, GarbageIsNoUtf8) {
    char const* const garbage[] = {"\xFF",
                                   "\x80",
                                   "\xC3",
                                   "\xC3(",
                                   "\xC0\xAF",
                                   "\xE2\x82",
                                   "\xE0\x80\x80",
                                   "\xED\xA0\x80",
                                   "\xF0\x9F\x98",
                                   "\xF4\x90\x80\x80",
                                   "\xF0\x80\x80\x80",
                                   "\xF8\x88\x80\x80\x80"};
    for (char const* bytes : garbage) EXPECT_EQ(std::nullopt, Decoded(bytes, kCFStringEncodingUTF8)) << bytes;
}

TEST(StringEncodings, ByteOrderMarkIsDroppedFromTheExternalFormOnly) {
    EXPECT_EQ(u"a", Decoded("\xEF\xBB\xBF"
                            "a",
                            kCFStringEncodingUTF8, true));
    EXPECT_EQ(u"\uFEFFa", Decoded("\xEF\xBB\xBF"
                                  "a",
                                  kCFStringEncodingUTF8));
}

TEST(StringEncodings, Utf16InEachByteOrder) {
    using namespace std::string_view_literals;
    EXPECT_EQ(u"a\u20ac", Decoded("\0a\x20\xAC"sv, kCFStringEncodingUTF16BE));
    EXPECT_EQ(u"a\u20ac", Decoded("a\0\xAC\x20"sv, kCFStringEncodingUTF16LE));
    char16_t const native[] = {u'a', 0x20AC};
    EXPECT_EQ(u"a\u20ac",
              Decoded({reinterpret_cast<char const*>(native), sizeof native}, kCFStringEncodingUTF16));
}

TEST(StringEncodings, MarkOfTheExternalFormTellsTheByteOrderOfUtf16) {
    using namespace std::string_view_literals;
    EXPECT_EQ(u"a", Decoded("\xFE\xFF\0a"sv, kCFStringEncodingUTF16, true));
    EXPECT_EQ(u"a", Decoded("\xFF\xFE"
                            "a\0"sv,
                            kCFStringEncodingUTF16, true));
}

TEST(StringEncodings, HalfAUnitIsNoUtf16) {
    EXPECT_EQ(std::nullopt, Decoded("abc", kCFStringEncodingUTF16));
    EXPECT_EQ(std::nullopt, Decoded("abc", kCFStringEncodingUTF16BE));
    EXPECT_EQ(std::nullopt, Decoded("abc", kCFStringEncodingUTF16LE));
}

TEST(StringEncodings, AsciiHasSevenBitsAndLatin1Eight) {
    EXPECT_EQ(u"\x7F", Decoded("\x7F", kCFStringEncodingASCII));
    EXPECT_EQ(std::nullopt, Decoded("\x80", kCFStringEncodingASCII));
    EXPECT_EQ(u"\u0080\u00FF", Decoded("\x80\xFF", kCFStringEncodingISOLatin1));
}

TEST(StringEncodings, VolumeEncodingIsThatOfFileNames) {
    EXPECT_EQ(u"\u00e9", Decoded("\xC3\xA9", kCFStringEncodingMacHFS));
    std::u16string const escaped{static_cast<char16_t>(0xDCFF), u'a'};
    EXPECT_EQ(escaped, Decoded("\xFF"
                               "a",
                               kCFStringEncodingMacHFS));
}

TEST(StringEncodings, UnknownEncodingAndNegativeLengthAreRefused) {
    EXPECT_EQ(std::nullopt, Decoded("a", 0x0A01));
    EXPECT_EQ(nullptr,
              CFStringCreateWithBytes(kCFAllocatorDefault, Bytes("a"), -1, kCFStringEncodingASCII, false));
    EXPECT_EQ(nullptr, CFStringCreateWithCharacters(kCFAllocatorDefault, nullptr, -1));
}

TEST(StringEncodings, CharactersAreTakenAsTheyAre) {
    UniChar const units[] = {0xD800, 0, 0xDC80};
    Owned<CFStringRef> const text(CFStringCreateWithCharacters(kCFAllocatorDefault, units, 3));
    EXPECT_EQ(3, CFStringGetLength(text));
    EXPECT_EQ(std::u16string(units, units + 3), Units(text));
}

TEST(StringEncodings, CharactersOutsideTheTextAreNotCopied) {
    Owned<CFStringRef> const text(NewString("abc"));
    UniChar units[3] = {1, 1, 1};
    CFStringGetCharacters(text, CFRangeMake(1, 3), units);
    CFStringGetCharacters(text, CFRangeMake(-1, 2), units);
    EXPECT_EQ(1, units[0]);
    CFStringGetCharacters(text, CFRangeMake(1, 2), units);
    EXPECT_EQ(u'b', units[0]);
    EXPECT_EQ(u'c', units[1]);
    EXPECT_EQ(1, units[2]);
}
