#include "language/Scanner.h"

#include <gtest/gtest.h>

using namespace Evaluator;

namespace {

// Tokens as `kind-number:text`, the end left out.
std::string Tokens(std::string_view query) {
    std::string shown;
    for (Token const& token : Scan(query)) {
        if (token.kind == TokenKind::end) break;
        if (!shown.empty()) shown += ' ';
        bool hasText = token.kind <= TokenKind::integer;
        shown += hasText ? token.text
                         : std::string(query.substr(token.range.begin, token.range.end - token.range.begin));
    }
    return shown;
}

std::string Failure(std::string_view query) {
    try {
        Scan(query);
    } catch (SyntaxError const& error) {
        return Render(error.problem, query);
    }
    return "no error";
}

TEST(Scanner, CutsWordsNumbersAndSigns) {
    EXPECT_EQ(Tokens("names of files whose(size of it>=10)"), "names of files whose ( size of it >= 10 )");
    EXPECT_EQ(Tokens("a!=b<=c<d>e=f"), "a != b <= c < d > e = f");
    EXPECT_EQ(Tokens("1+2-3*4/5&x,y;z"), "1 + 2 - 3 * 4 / 5 & x , y ; z");
    EXPECT_EQ(Tokens("day_of_week Time2"), "day_of_week time2");
    EXPECT_EQ(Tokens(""), "");
}

TEST(Scanner, PassesOverBlanksAndComments) {
    EXPECT_EQ(Tokens("a // b\n c /* d \n e */ f"), "a c f");
    EXPECT_EQ(Tokens("a // b"), "a");
    EXPECT_EQ(Tokens("a /* / */b"), "a b");
    EXPECT_EQ(Tokens(" \t\r\n a"), "a");
}

TEST(Scanner, ReadsEveryEscapeOfStrings) {
    EXPECT_EQ(Scan(R"("\"\\\/\b\f\n\r\t")")[0].text, "\"\\/\b\f\n\r\t");
    EXPECT_EQ(Scan(R"("\u0041\u00e9\u20AC\ud83d\ude00")")[0].text, "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(Scan(R"("\xff\x00z")")[0].text, std::string("\xff\0z", 3));
    EXPECT_EQ(Scan("\"// no comment\"")[0].text, "// no comment");
}

TEST(Scanner, PointsAtWhatIsNoToken) {
    EXPECT_EQ(Failure("name of ?"),
              "error: \"?\" means nothing here\n"
              "  name of ?\n"
              "          ^\n");
    EXPECT_EQ(Failure("1 = 2x"),
              "error: \"2x\" is neither a number nor a word\n"
              "  1 = 2x\n"
              "      ^~\n"
              "  hint: a word does not begin with a digit\n");
    EXPECT_EQ(Failure("a \"b\nc"),
              "error: this string has no end\n"
              "  a \"b\n"
              "    ^~\n"
              "  hint: a string ends with \" on the line where it begins\n");
    EXPECT_EQ(Failure("a /* b"),
              "error: this comment has no end\n"
              "  a /* b\n"
              "    ^~\n"
              "  hint: end it with */\n");
}

TEST(Scanner, RefusesBadEscapes) {
    std::string hint = "  hint: the escapes are \\\" \\\\ \\/ \\b \\f \\n \\r \\t \\uXXXX and \\xHH\n";
    EXPECT_EQ(Failure(R"("\q")"), "error: this is no escape\n  \"\\q\"\n   ^~\n" + hint);
    EXPECT_EQ(Failure(R"("\x4")"),
              "error: this escape needs 2 hexadecimal digits\n  \"\\x4\"\n   ^~~\n" + hint);
    EXPECT_EQ(Failure(R"("\u12")"),
              "error: this escape needs 4 hexadecimal digits\n  \"\\u12\"\n   ^~~~\n" + hint);
    std::string half = "error: half of a surrogate pair is no character\n";
    EXPECT_EQ(Failure(R"("\ud800")"), half + "  \"\\ud800\"\n   ^~~~~~\n");
    EXPECT_EQ(Failure(R"("\udc00")"), half + "  \"\\udc00\"\n   ^~~~~~\n");
    EXPECT_EQ(Failure(R"("\ud800\u0041")"), half + "  \"\\ud800\\u0041\"\n   ^~~~~~~~~~~~\n");
}

}  // namespace
