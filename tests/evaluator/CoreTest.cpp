// The core's properties, casts and operators, row by row. Those whose rules fill a test of their own are in
// LanguageTest.cpp and TimeTextTest.cpp.

#include <gtest/gtest.h>

#include "evaluator/Asking.h"

namespace {

TEST(CoreOfTheLanguage, IntegersUpTo) {
    EXPECT_EQ(Answer("integers up to 3"), "1|2|3");
    EXPECT_EQ(Answer("integers up to 0; integers up to (-5)"), "");
    EXPECT_EQ(Answer("integer up to 1"), "1");
    EXPECT_EQ(Answer("first values 2 of integers up to 9223372036854775807"), "1|2");
    EXPECT_EQ(Ask("integer up to 2").problems,
              "error: more than one object\n  integer up to 2\n  ^~~~~~~~~~~~~\n");
}

TEST(CoreOfTheLanguage, LengthIsInBytes) {
    EXPECT_EQ(Answer("length of \"\"; lengths of (\"abc\"; \"\\u00e9\"; \"a\\x00b\")"), "0|3|2|3");
}

TEST(CoreOfTheLanguage, SubstringBeforeAndAfterTheFirstOccurrence) {
    EXPECT_EQ(Answer("substring before \"=\" of \"a=b=c\"; substring after \"=\" of \"a=b=c\""), "a|b=c");
    EXPECT_EQ(Answer("substrings before \"==\" of (\"a==b\"; \"==\"; \"x\"; \"c=\")"), "a|");
    EXPECT_EQ(Answer("substrings after \"==\" of (\"a==b\"; \"==\"; \"x\"; \"c=\")"), "b|");
    for (std::string query : {"substring before \"x\" of \"abc\"", "substring before \"\" of \"abc\"",
                              "substring before \"x\" of \"\""})
        EXPECT_EQ(Ask(query).problems, "error: no such object\n  " + query + "\n  ^~~~~~~~~~~~~~~~\n");
    for (std::string query : {"substring after \"x\" of \"abc\"", "substring after \"\" of \"abc\""})
        EXPECT_EQ(Ask(query).problems, "error: no such object\n  " + query + "\n  ^~~~~~~~~~~~~~~\n");
}

TEST(CoreOfTheLanguage, SubstringsSeparatedBy) {
    EXPECT_EQ(Answer("substrings separated by \",\" of \"a,b,,c\""), "a|b||c");
    EXPECT_EQ(Answer("number of substrings separated by \",\" of \",\""), "2");
    EXPECT_EQ(Answer("substrings separated by \"--\" of \"a---b\""), "a|-b");
    EXPECT_EQ(Answer("substrings separated by \",\" of \"abc\""), "abc");
    EXPECT_EQ(Answer("number of substrings separated by \",\" of \"\""), "1");
    EXPECT_EQ(Answer("substring separated by \",\" of \"abc\""), "abc");
    EXPECT_EQ(Answer("exists substring separated by \"\" of \"abc\""), "false");
    EXPECT_EQ(Answer("substrings separated by \"\" of \"abc\" otherwise \"none\""), "none");
    EXPECT_EQ(Ask("substring separated by \"\" of \"abc\"").problems,
              "error: no such object\n"
              "  substring separated by \"\" of \"abc\"\n"
              "  ^~~~~~~~~~~~~~~~~~~~~~\n");
    EXPECT_EQ(Answer("substrings separated by \" \" of concatenation \" \" of (\"x\"; \"y\")"), "x|y");
}

TEST(CoreOfTheLanguage, UnitsOfTime) {
    EXPECT_EQ(Answer("second; minute; hour; day; week"),
              "00:00:01|00:01:00|01:00:00|1 days, 00:00:00|7 days, 00:00:00");
    EXPECT_EQ(Answer("seconds; minutes; hours; days; weeks"),
              "00:00:01|00:01:00|01:00:00|1 days, 00:00:00|7 days, 00:00:00");
    EXPECT_EQ(Answer("number of nows; number of times \"2026-11-20\""), "1|1");
}

TEST(CoreOfTheLanguage, Casts) {
    EXPECT_EQ(Answer("(-5 as string) & (true as string) & (false as string) & (hour as string)"),
              "-5truefalse01:00:00");
    EXPECT_EQ(Answer("length of (time \"2026-11-20T12:00:00Z\" as string)"), "25");
    EXPECT_EQ(Answer("\"-12\" as integer; \"+1\" as integer otherwise 0; \"1 \" as integer otherwise 0"),
              "-12|0|0");
    EXPECT_EQ(Answer("\"aB1\" as uppercase; \"aB1\" as lowercase"), "AB1|ab1");
    for (std::string type : {"uppercase", "integer"})
        EXPECT_EQ(Ask("true as " + type).problems,
                  "error: a boolean has no cast \"" + type + "\"\n  true as " + type + "\n          ^" +
                      std::string(type.size() - 1, '~') + "\n  hint: \"string\" is one\n");
}

// Each operator with the operands for which it exists, as text: the sign, the operands, the result.
TEST(CoreOfTheLanguage, OperatorsRowByRow) {
    struct {
        char const *query, *answer;
    } const rows[] = {
        {"7 + 2", "9"},
        {"7 - 2", "5"},
        {"7 * 2", "14"},
        {"7 / 2", "3"},
        {"7 mod 2", "1"},
        {"7 = 2; 7 < 2; 7 <= 2; 7 > 2; 7 >= 2; 7 != 2", "false|false|false|true|true|true"},
        {"\"a\" & \"b\"", "ab"},
        {"\"a\" = \"b\"; \"a\" < \"b\"; \"a\" <= \"b\"", "false|true|true"},
        {"\"ab\" contains \"b\"; \"ab\" starts with \"b\"; \"ab\" ends with \"b\"", "true|false|true"},
        {"\"\" contains \"\"; \"\" ends with \"\"; \"b\" ends with \"ab\"", "true|true|false"},
        {"true = false; true != false", "false|true"},
        {"time \"2026-01-02\" - time \"2026-01-01\"", "1 days, 00:00:00"},
        {"time \"2026-01-01\" + day = time \"2026-01-02\"", "true"},
        {"day + time \"2026-01-01\" = time \"2026-01-02\"", "true"},
        {"time \"2026-01-02\" - day < time \"2026-01-02\"", "true"},
        {"time \"2026-01-01\" <= time \"2026-01-01\"", "true"},
        {"hour + minute", "01:01:00"},
        {"hour - minute", "00:59:00"},
        {"hour * 2", "02:00:00"},
        {"2 * hour", "02:00:00"},
        {"(hour + minute) / hour", "1"},
        {"(hour + minute) mod hour", "00:01:00"},
        {"(minute - hour) / hour", "-1"},
        {"(minute - hour) mod hour", "00:01:00"},
        {"hour = minute; hour < minute; hour <= minute", "false|false|false"},
        {"- 5", "-5"},
        {"- hour", "-01:00:00"},
    };
    for (auto const& row : rows) EXPECT_EQ(Answer(row.query), row.answer) << row.query;
}

TEST(CoreOfTheLanguage, OperatorsThatDoNotExist) {
    struct {
        std::string left, sign, right, types;
    } const rows[] = {
        {"true", "<", "false", "a boolean and a boolean"},
        {"true", "+", "true", "a boolean and a boolean"},
        {"1", "&", "2", "an integer and an integer"},
        {"\"a\"", "+", "\"b\"", "a string and a string"},
        {"now", "+", "now", "a time and a time"},
        {"hour", "*", "hour", "a time interval and a time interval"},
        {"hour", "/", "2", "a time interval and an integer"},
        {"1", "=", "\"1\"", "an integer and a string"},
    };
    for (auto const& row : rows) {
        std::string query = row.left + " " + row.sign + " " + row.right;
        EXPECT_EQ(Ask(query).problems, "error: there is no \"" + row.sign + "\" of " + row.types + "\n  " +
                                           query + "\n  " + std::string(row.left.size() + 1, ' ') + "^\n");
    }
}

}  // namespace
