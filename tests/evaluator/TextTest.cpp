#include "Evaluator/Text.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include "Evaluator/Exceptions.h"
#include "TextOf.h"

namespace {

std::string Raised(std::string text) {
    std::string target(text.size(), '.');
    Ascii::RaiseCase(BytesOf(text), {reinterpret_cast<unsigned char*>(target.data()), target.size()});
    return target;
}

std::string LoweredInPlace(std::string text) {
    Data const span(reinterpret_cast<unsigned char*>(text.data()), text.size());
    Data const written = Ascii::LowerCase(span, span);
    EXPECT_EQ(span.begin(), written.begin());
    EXPECT_EQ(span.end(), written.end());
    return text;
}

// Addresses that no memory lies behind: a span of any length for which nothing is ever read.
class Addresses {
  public:
    explicit Addresses(std::size_t size)
        : size(size),
          start(mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {}
    ~Addresses() { munmap(start, size); }
    unsigned char const* Start() const { return static_cast<unsigned char const*>(start); }
    bool Valid() const { return start != MAP_FAILED; }

  private:
    std::size_t size;
    void* start;
};

constexpr std::size_t fourGiB = std::size_t{1} << 32;

}  // namespace

TEST(MakeString, CopiesTheBytes) {
    std::string original("a\0b\xFF", 4);
    inspector_string const made = MakeString(BytesOf(original));
    original.assign(4, 'x');
    EXPECT_EQ(std::string("a\0b\xFF", 4), TextOf(made));
    EXPECT_EQ(4u, made.length);
}

TEST(MakeString, MakesEmptyStringsToo) {
    EXPECT_EQ(0u, MakeString(ConstData()).length);
    EXPECT_EQ(0u, MakeString("").length);
}

TEST(MakeString, RefusesMoreThan32BitsCanTell) {
    Addresses const memory(fourGiB);
    ASSERT_TRUE(memory.Valid());
    EXPECT_THROW(MakeString({memory.Start(), fourGiB}), StringyLengthTooLong);
}

TEST(Concatenate, JoinsInOrder) {
    EXPECT_EQ("foobar", TextOf(Concatenate(StringOf("foo"), StringOf("bar"))));
    EXPECT_EQ("bar", TextOf(Concatenate(inspector_string(), StringOf("bar"))));
    EXPECT_EQ("foo", TextOf(Concatenate(StringOf("foo"), inspector_string())));
    EXPECT_EQ("", TextOf(Concatenate(inspector_string(), inspector_string())));
}

TEST(Concatenate, RefusesMoreThan32BitsCanTell) {
    Addresses const memory(fourGiB);
    ASSERT_TRUE(memory.Valid());
    inspector_string const half(memory.Start(), 0x80000000);
    EXPECT_THROW(Concatenate(half, half), StringyLengthTooLong);
}

TEST(StartsWith, ComparesBytesExactly) {
    EXPECT_TRUE(StartsWith(StringOf("foobar"), StringOf("foo")));
    EXPECT_TRUE(StartsWith(StringOf("foo"), StringOf("foo")));
    EXPECT_TRUE(StartsWith(StringOf("foo"), inspector_string()));
    EXPECT_TRUE(StartsWith(inspector_string(), inspector_string()));
    EXPECT_FALSE(StartsWith(StringOf("fo"), StringOf("foo")));
    EXPECT_FALSE(StartsWith(StringOf("Foobar"), StringOf("foo")));
    EXPECT_FALSE(StartsWith(StringOf("afoo"), StringOf("foo")));
    EXPECT_FALSE(StartsWith(inspector_string(), StringOf("f")));
}

TEST(Contains, FindsBytesExactly) {
    EXPECT_TRUE(Contains(StringOf("foobar"), StringOf("oba")));
    EXPECT_TRUE(Contains(StringOf("foobar"), StringOf("bar")));
    EXPECT_TRUE(Contains(StringOf("foobar"), inspector_string()));
    EXPECT_TRUE(Contains(inspector_string(), inspector_string()));
    EXPECT_TRUE(Contains(StringOf(std::string("a\0b", 3)), StringOf(std::string("\0b", 2))));
    EXPECT_FALSE(Contains(StringOf("foobar"), StringOf("Bar")));
    EXPECT_FALSE(Contains(StringOf("foobar"), StringOf("bart")));
    EXPECT_FALSE(Contains(inspector_string(), StringOf("a")));
}

TEST(Compare, IsTheOrderOfUnsignedBytes) {
    EXPECT_EQ(0, Compare("abc", "abc"));
    EXPECT_EQ(0, Compare("", ConstData()));
    EXPECT_LT(Compare("abc", "abd"), 0);
    EXPECT_GT(Compare("b", "abd"), 0);
    EXPECT_GT(Compare("\x80", "\x7F"), 0);
    EXPECT_LT(Compare("B", "a"), 0);
}

TEST(Compare, PutsABeginningBeforeTheWhole) {
    EXPECT_LT(Compare("ab", "abc"), 0);
    EXPECT_GT(Compare("abc", "ab"), 0);
    EXPECT_LT(Compare("", "a"), 0);
    EXPECT_GT(Compare("a", ConstData()), 0);
    EXPECT_LT(Compare("a", BytesOf(std::string("a\0", 2))), 0);
}

TEST(Ascii, FoldsLettersOnly) {
    EXPECT_EQ("ABCXYZ@[`{09\xE4", Raised("abcXYZ@[`{09\xE4"));
    EXPECT_EQ("abcxyz@[`{09\xC4", LoweredInPlace("ABCxyz@[`{09\xC4"));
    EXPECT_EQ("", Raised(""));
}

TEST(Ascii, FoldsEveryByteAtEveryPlaceOfALongText) {
    std::string text, raised, lowered;
    for (int i = 0; i < 600; ++i) {
        auto const byte = static_cast<char>(i * 7);
        text += byte;
        raised += byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 32) : byte;
        lowered += byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
        EXPECT_EQ(raised, Raised(text)) << i;
        EXPECT_EQ(lowered, LoweredInPlace(text)) << i;
    }
}

TEST(Ascii, RefusesATargetThatIsTooSmallAndWritesNothing) {
    unsigned char target[] = "...";
    EXPECT_THROW(Ascii::RaiseCase("abcd", Data(target, 3)), DataOverflow);
    EXPECT_THROW(Ascii::LowerCase("ABCD", Data(target, 3)), DataOverflow);
    EXPECT_EQ("...", TextOf({target, 3}));
}

TEST(Ascii, LeavesTheRestOfALargerTarget) {
    unsigned char target[] = "......";
    Data const written = Ascii::LowerCase("AB", Data(target, 6));
    EXPECT_EQ("ab", TextOf(written));
    EXPECT_EQ("ab....", TextOf({target, 6}));
}

TEST(Ascii, ComparesAsIfAllWereCapitals) {
    EXPECT_EQ(0, Ascii::CompareUppercase("FooBar", "fOObAR"));
    EXPECT_LT(Ascii::CompareUppercase("a", "B"), 0);
    EXPECT_GT(Ascii::CompareUppercase("_", "a"), 0);  // '_' lies between the capitals and the small letters
    EXPECT_LT(Ascii::CompareUppercase("ab", "ABC"), 0);
    EXPECT_GT(Ascii::CompareUppercase("\xE4", "z"), 0);
    EXPECT_EQ(0, Ascii::CompareUppercase(ConstData(), ""));
}

TEST(Ascii, TellsEqualityIgnoringCase) {
    EXPECT_TRUE(
        Ascii::EqualIgnoringCase("Stra\xDF"
                                 "e",
                                 "sTRA\xDF"
                                 "E"));
    EXPECT_FALSE(Ascii::EqualIgnoringCase("a", "ab"));
    EXPECT_FALSE(Ascii::EqualIgnoringCase("[", "{"));
    EXPECT_FALSE(Ascii::EqualIgnoringCase("\xE4", "\xC4"));
    EXPECT_TRUE(Ascii::EqualIgnoringCase("", ConstData()));
}

TEST(Ascii, KnowsItsLettersAndDigits) {
    std::string letters;
    std::string digits;
    for (int byte = 0; byte < 256; ++byte) {
        if (Ascii::Alphabetic().Contains(static_cast<unsigned char>(byte)))
            letters += static_cast<char>(byte);
        if (Ascii::Numeric().Contains(static_cast<unsigned char>(byte))) digits += static_cast<char>(byte);
    }
    EXPECT_EQ("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz", letters);
    EXPECT_EQ("0123456789", digits);
}

TEST(Ascii, HasAFilterForSmallLetters) {
    EXPECT_EQ('q', Ascii::lowerCase('Q'));
    EXPECT_EQ('q', Ascii::lowerCase('q'));
    EXPECT_EQ(0xC4, Ascii::lowerCase(0xC4));
}
