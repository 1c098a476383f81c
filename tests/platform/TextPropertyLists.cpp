// Old-style property lists and .strings files, asked for as all property lists are.

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/ListVerbs.h"

namespace {

// A text, and the object that it is.
struct Case {
    std::string_view text;
    std::string_view shown;
};

void ExpectEach(std::initializer_list<Case> cases) {
    for (Case const& each : cases) EXPECT_EQ(each.shown, Read(each.text)) << each.text;
}

// `levels` arrays in one another.
std::string Nested(std::size_t levels) { return std::string(levels, '(') + std::string(levels, ')'); }

}  // namespace

TEST(TextPropertyLists, HaveARootOfAnyType) {
    ExpectEach({{"{a = b;}", "{a=b}"},
                {"(a, b)", "(a,b)"},
                {"<0fBd 7 7>", "<0fbd77>"},
                {"<>", "<>"},
                {"word", "word"},
                {" \"some words\" ", "some words"}});
}

TEST(TextPropertyLists, OfNothingAreAnEmptyDictionary) {
    ExpectEach({{" ", "{}"}, {"\n\t\v\f\r ", "{}"}, {"// nothing", "{}"}, {"/* nothing */\n", "{}"}});
}

TEST(TextPropertyLists, NestContainers) {
    ExpectEach({{"{a = {b = (c, {d = e;}, ());}; f = {};}", "{a={b=(c,{d=e},())};f={}}"}});
}

TEST(TextPropertyLists, TakeWordsWithoutQuotes) {
    ExpectEach({{"(aZ09, _$, /usr/a.b, x:y, -1, a//b)", "(aZ09,_$,/usr/a.b,x:y,-1,a//b)"}});
}

TEST(TextPropertyLists, TakeQuotesOfBothKinds) {
    ExpectEach({{"(\"it's\", 'a \"word\"', \"\", '')", "(it's,a \"word\",,)"}, {"\"a\nb\"", "a\nb"}});
}

TEST(TextPropertyLists, KnowEscapes) {
    ExpectEach({{R"("\a\b\f\n\r\t\v\"\'\\")", "\a\b\f\n\r\t\v\"'\\"},
                {R"("\q\/")", "q/"},
                {"\"a\\\nb\"", "a\nb"},
                {"\"\\\u00E9\"", "\u00E9"},
                {R"("before \" and behind")", "before \" and behind"}});
}

TEST(TextPropertyLists, KnowOctalEscapesOfNextStepLatin) {
    ExpectEach({{R"("\101\7x")", "A\ax"},
                {R"("\341\256\200")", "\u00C6\uFB01\u00A0"},
                {R"("\265\373")", "\u00A6\u00DF"},
                {R"("\376")", "\uFFFD"},
                {R"("\1011")", "A1"}});
}

TEST(TextPropertyLists, KnowEscapesOfUnits) {
    ExpectEach({{R"("\U00e9\u00E9")", "\u00E9\u00E9"},
                {R"("\U41 \Ug")", "!line 1: hexadecimal digits are expected in an escape, not \"g\""},
                {R"("\U41 ")", "A "},
                {R"("\U00412")", "A2"},
                {R"("\UD83D\UDE00")", "\U0001F600"}});
}

TEST(TextPropertyLists, SkipCommentsAndWhiteSpace) {
    ExpectEach({{"// one\n{a /* two */ = // three\r b /* * / */ ; /**/ } // four", "{a=b}"},
                {"{a = /**/ b /* * / */ ; /***/ } // four", "{a=b}"},
                {"(a,\u2028b\u2029)", "(a,b)"}});
}

TEST(TextPropertyLists, ForgiveWhatIsMissingAtTheEnd) {
    ExpectEach({{"{a = b}", "{a=b}"},
                {"{a = b; c = d}", "{a=b;c=d}"},
                {"a = b; c = d", "{a=b;c=d}"},
                {"(a, b,)", "(a,b)"}});
}

TEST(TextPropertyLists, TakeAKeyAloneForItsValue) {
    ExpectEach({{"{a; b = c;}", "{a=a;b=c}"}, {"a; \"b c\";", "{a=a;b c=b c}"}});
}

TEST(TextPropertyLists, LetTheLastOfEqualKeysCount) { ExpectEach({{"{a = 1; b = 2; a = 3;}", "{a=3;b=2}"}}); }

TEST(TextPropertyLists, AreStringsFilesWhereAStringIsFollowedByMore) {
    ExpectEach({{"/* The title */\n\"Title\" = \"Window\";\nkey = {a = (b);};", "{Title=Window;key={a=(b)}}"},
                {"a = b", "{a=b}"},
                {"a b", "!line 1: \"=\" or \";\" is expected behind a key, not \"b\""}});
}

TEST(TextPropertyLists, AreReadInUtf16Too) {
    using namespace std::string_view_literals;
    EXPECT_EQ("{a=\u00E9}", Read("\xFE\xFF\0a\0=\0\"\0\xE9\0\"\0;"sv));
    EXPECT_EQ("{a=\u00E9}", Read("\xFF\xFE"
                                 "a\0=\0\"\0\xE9\0\"\0;\0"sv));
}

TEST(TextPropertyLists, HoldTypedValuesOfGnustep) {
    ExpectEach({{"(<*I5>, <*I-7>, <*R1.5>, <*BY>, <*BN>)", "(5,-7,1.5,true,false)"},
                {"<*I\"5\">", "5"},
                {"<*I18446744073709551615>", "1.8446744073709552e+19"},
                {"<*D2001-01-01 00:00:00 +0000>", "@0"},
                {"<*D2001-01-01 01:30:00 +0130>", "@0"},
                {"<*D2000-12-31 19:00:00 -0500>", "@0"},
                {"<[aGVsbG8=]>", "<68656c6c6f>"}});
}

TEST(TextPropertyLists, RefuseTypedValuesThatAreNone) {
    for (std::string const bad :
         {"<*>", "<*X1>", "<*Ifive>", "<*I>", "<*R>", "<*BM>", "<*D2001-01-01>",
          "<*D2001-01-01 00:00:00 +2400>", "<*D2001-01-01 00:00:00  0000>", "<*D2001-02-30 00:00:00 +0000>"})
        EXPECT_EQ("!line 1: no value of a known type: \"" + bad + "\"", Read("(" + bad + ")"));
    EXPECT_EQ("!line 1: a value that begins here has no end", Read("(<*I5)"));
    EXPECT_EQ("!line 1: data that begins here is not base64 up to \"]>\"", Read("(<[aGVs]x>)"));
}

TEST(TextPropertyLists, TellWhatTheyMetAndWhere) {
    ExpectEach(
        {{"{a = b;\n c d;}", "!line 2: \"=\" or \";\" is expected behind a key, not \"d\""},
         {"{a = b\r\n\rc = d;}", "!line 3: \";\" is expected behind a value, not \"c\""},
         {"(a b)", "!line 1: \",\" or \")\" is expected behind an element, not \"b\""},
         {"(,a)", "!line 1: a string, data, array or dictionary is expected, not \",\""},
         {"{a = ;}", "!line 1: a string, data, array or dictionary is expected, not \";\""},
         {"{(a) = b;}", "!line 1: a key is expected, not \"(\""},
         {"{a}", "!line 1: \"=\" or \";\" is expected behind a key, not \"}\""},
         {"a = ", "!line 1: a string, data, array or dictionary is expected, not the end of the text"},
         {"{}\n}", "!line 2: the end of the text is expected behind the list, not \"}\""},
         {"{} a = b;", "!line 1: the end of the text is expected behind the list, not \"a\""},
         {"\u00E9", "!line 1: a string, data, array or dictionary is expected, not \"\u00E9\""},
         {"\x01", "!line 1: a string, data, array or dictionary is expected, not the control character 1"}});
}

TEST(TextPropertyLists, TellWhereWhatHasNoEndBegins) {
    ExpectEach({{"\n{a = (\nb", "!line 2: the array that begins here has no end"},
                {"\n{a = b;\n", "!line 2: the dictionary that begins here has no end"},
                {"\n\"a\n\n", "!line 2: the string that begins here has no end"},
                {"\n\"a\\n\n", "!line 2: the string that begins here has no end"},
                {"\"\\", "!line 1: the string that begins here has no end"},
                {"a = b;\n/* c\n", "!line 2: the comment that begins here has no end"}});
}

TEST(TextPropertyLists, RefuseBadDataAndEscapes) {
    ExpectEach(
        {{"(<0fb>)", "!line 1: data has an odd number of digits"},
         {"(<0x>)", "!line 1: a hexadecimal digit or \">\" is expected in data, not \"x\""},
         {"(<0f", "!line 1: a hexadecimal digit or \">\" is expected in data, not the end of the text"},
         {R"("\400")", R"(!line 1: the escape "\400" is no character)"}});
}

TEST(TextPropertyLists, AreUtf8EverywhereInThem) {
    ExpectEach({{"(a,\n\"\xE9\")", "!line 2: the text is not UTF-8"},
                {"a = b;\n\n// \xC3", "!line 3: the text is not UTF-8"},
                {"a = b;\r\r\n\"\xC3\" = b;", "!line 3: the text is not UTF-8"},
                {"(\"\u00E9\U0001F600\")", "(\u00E9\U0001F600)"}});
}

TEST(TextPropertyLists, TellWhyTheyAreNoXmlEither) {
    EXPECT_THAT(Read("<plist><oops/></plist>"),
                testing::AllOf(testing::StartsWith("!as XML: line 1: "),
                               testing::HasSubstr("; as old-style text: line 1: a hexadecimal digit")));
}

TEST(TextPropertyLists, AreNotTooDeep) {
    EXPECT_EQ(Nested(512), Read(Nested(512)));
    std::string const refused = "!containers lie more than 512 deep in one another, which is the limit";
    EXPECT_EQ(refused, Read(Nested(513)));
    EXPECT_EQ("{a=" + Nested(511) + "}", Read("a = " + Nested(511)));
    EXPECT_EQ(refused, Read("a = " + Nested(512)));
    EXPECT_EQ("(" + Nested(511) + "," + Nested(511) + ")", Read("(" + Nested(511) + "," + Nested(511) + ")"));
}

TEST(TextPropertyLists, WrittenByGnustepAreRead) {
    ASSERT_EQ(0, std::system("command -v pl > /dev/null")) << "needs the package gnustep-base-runtime";
    TemporaryFolder const here;
    std::string const source = here.Write("source", R"({"a key" = "q\"\\\n\t\U00e9\U20ac";
        list = (one, "", (), <>, {}, "-5/x:y", <0fbd77 00>); UPPER = "$a@b";})");
    std::string const written = here.Path("written");
    ASSERT_EQ(0, std::system(("pl < " + source + " > " + written).c_str()));
    EXPECT_EQ(Read(FileText(source)), Read(FileText(written))) << FileText(written);
    EXPECT_NE(FileText(source), FileText(written));
}
