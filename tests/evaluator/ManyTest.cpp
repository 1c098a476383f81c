// The phrases that take a whole plural at once.

#include "evaluator/Stones.h"

namespace {

using Many = Stones;

// A plural of no integers.
std::string OfNone(std::string const& phrase) { return phrase + " of ((1; 2) whose (false))"; }

TEST_F(Many, Number) {
    EXPECT_EQ(Answer("number of (7; 8; 9)"), "3");
    EXPECT_EQ(Answer("numbers of (7; 8; 9)"), "3");
    EXPECT_EQ(Answer("number of 7"), "1");
    EXPECT_EQ(Answer(OfNone("number")), "0");
    EXPECT_EQ(Answer("number of (1, 2)"), "1");
    EXPECT_EQ(Ask("number of marks of numbered stone (-1)").problems,
              "error: no such object\n"
              "  number of marks of numbered stone (-1)\n"
              "                     ^~~~~~~~~~~~~~\n");
}

TEST_F(Many, Sum) {
    EXPECT_EQ(Answer("sum of (1; 2; -7)"), "-4");
    EXPECT_EQ(Answer("sums of (1; 2)"), "3");
    EXPECT_EQ(Answer("sum of (hour; minute)"), "01:01:00");
    EXPECT_EQ(Answer(OfNone("sum")), "0");
    EXPECT_EQ(Answer("sum of ((hour; minute) whose (false))"), "00:00:00");
    EXPECT_EQ(Ask("sum of (9223372036854775807; 1)").problems,
              "error: the result is out of range\n  sum of (9223372036854775807; 1)\n  ^~~\n");
    EXPECT_EQ(Ask("sum of (\"a\"; \"b\")").problems,
              "error: \"sum\" is of integers or time intervals, and this is a string\n"
              "  sum of (\"a\"; \"b\")\n  ^~~\n");
    EXPECT_EQ(Ask("sums of (1, 2)").problems,
              "error: \"sums\" is of integers or time intervals, and this is a tuple\n"
              "  sums of (1, 2)\n  ^~~~\n");
}

TEST_F(Many, MinimumAndMaximum) {
    EXPECT_EQ(Answer("minimum of (3; 1; 2); maximum of (3; 1; 2)"), "1|3");
    EXPECT_EQ(Answer("minimums of (\"b\"; \"a\"); maximums of (\"b\"; \"a\")"), "a|b");
    EXPECT_EQ(Answer("minimum of 5"), "5");
    for (std::string phrase : {"minimum", "maximum", "minimums", "maximums"})
        EXPECT_EQ(Ask(OfNone(phrase)).problems, "error: no such object\n  " + OfNone(phrase) + "\n  ^~~~~~~" +
                                                    (phrase.size() == 8 ? "~" : "") + "\n");
    EXPECT_EQ(Answer(OfNone("minimum") + " otherwise 4"), "4");
}

TEST_F(Many, OfEqualsTheFirstIsTheMinimumAndTheMaximum) {
    std::string const stones = "(numbered stone 25; numbered stone 12; numbered stone 11; numbered stone 24)";
    EXPECT_EQ(Answer("mark of minimum of " + stones), "12");
    EXPECT_EQ(Answer("mark of maximum of " + stones), "25");
}

TEST_F(Many, UniqueValuesInTheOrderOfTheirFirstOccurrence) {
    EXPECT_EQ(Answer("unique values of (3; 1; 3; 2; 1)"), "3|1|2");
    EXPECT_EQ(Answer("unique values of (true; false; true)"), "true|false");
    EXPECT_EQ(Answer("unique values of (\"b\"; \"a\"; \"b\"; \"\"; \"\")"), "b|a|");
    EXPECT_EQ(Answer("unique values of (hour; minute; 60 * minute)"), "01:00:00|00:01:00");
    EXPECT_EQ(Answer("number of unique values of (now; now; now + hour)"), "2");
    EXPECT_EQ(Answer("unique values of ((1; 2), (\"a\"; \"a\"))"), "1, a|2, a");
    EXPECT_EQ(Answer("unique value of (5; 5)"), "5");
    EXPECT_EQ(Answer(OfNone("unique values")), "");
    EXPECT_EQ(Ask("unique value of (5; 6)").problems,
              "error: more than one object\n  unique value of (5; 6)\n  ^~~~~~~~~~~~\n");
    EXPECT_EQ(Answer("number of unique values of (it mod 1000) of integers up to 100000"), "1000");
}

TEST_F(Many, UniqueValuesOfALibrarysTypeByItsOwnRelation) {
    EXPECT_EQ(Answer("marks of unique values of stones 25"), "1|10|20");
    EXPECT_EQ(Answer("marks of unique values of (numbered pebble 11; numbered stone 12; numbered pebble 30)"),
              "11|30");
    EXPECT_EQ(Answer("number of unique values of (it, 1) of stones 25"), "3");
    EXPECT_EQ(Ask("unique values of (numbered stone 1; numbered stone 1000)").problems,
              "error: no such object\n"
              "  unique values of (numbered stone 1; numbered stone 1000)\n"
              "  ^~~~~~~~~~~~~\n");
    EXPECT_EQ(Ask("unique values of cloud 1").problems,
              "error: \"unique values\" has to compare, and there is no \"=\" of a cloud and a cloud\n"
              "  unique values of cloud 1\n"
              "  ^~~~~~~~~~~~~\n"
              "  hint: ask for something of each that has \"=\": unique values of names of …\n");
}

TEST_F(Many, SortedValues) {
    EXPECT_EQ(Answer("sorted values of (3; 1; 2; 1; -5)"), "-5|1|1|2|3");
    EXPECT_EQ(Answer("sorted values of (\"b\"; \"\"; \"ab\"; \"a\")"), "|a|ab|b");
    EXPECT_EQ(Answer("sorted values of ((2, \"b\"); (1, \"z\"); (2, \"a\"))"), "1, z|2, a|2, b");
    EXPECT_EQ(Answer("sorted value of 5"), "5");
    EXPECT_EQ(Answer(OfNone("sorted values")), "");
    EXPECT_EQ(Ask("sorted value of (5; 6)").problems,
              "error: more than one object\n  sorted value of (5; 6)\n  ^~~~~~~~~~~~\n");
    EXPECT_EQ(Answer("number of sorted values of (it * 7919 mod 100003) of integers up to 100000"), "100000");
    EXPECT_EQ(Answer("first values 3 of sorted values of (it * 7919 mod 100003) of integers up to 100000"),
              "1|2|3");
}

TEST_F(Many, SortingIsStable) {
    EXPECT_EQ(Answer("marks of sorted values of (numbered stone 25; numbered stone 12; numbered stone 24; "
                     "numbered stone 11; numbered stone 12)"),
              "12|11|12|25|24");
}

TEST_F(Many, SortingStaysInBoundsUnderARelationThatIsNoOrder) {
    EXPECT_EQ(Answer("sum of marks of sorted values of ((cloud (it)) of integers up to 1000)"), "500500");
}

TEST_F(Many, SortingNeedsALessThanThatAnswers) {
    EXPECT_EQ(Ask("sorted values of (true; false)").problems,
              "error: \"sorted values\" has to compare, and there is no \"<\" of a boolean and a boolean\n"
              "  sorted values of (true; false)\n"
              "  ^~~~~~~~~~~~~\n"
              "  hint: ask for something of each that has \"<\": sorted values of names of …\n");
    EXPECT_EQ(Ask("maximum of (1, true)").problems,
              "error: \"maximum\" has to compare, and there is no \"<\" of a boolean and a boolean\n"
              "  maximum of (1, true)\n"
              "  ^~~~~~~\n"
              "  hint: ask for something of each that has \"<\": maximum of names of …\n");
    EXPECT_EQ(Ask("sorted values of (numbered stone 1; numbered stone 1000)").problems,
              "error: no such object\n"
              "  sorted values of (numbered stone 1; numbered stone 1000)\n"
              "  ^~~~~~~~~~~~~\n");
    EXPECT_EQ(Ask("minimum of (numbered stone 1; numbered stone 1000)").problems,
              "error: no such object\n"
              "  minimum of (numbered stone 1; numbered stone 1000)\n"
              "  ^~~~~~~\n");
}

TEST_F(Many, FirstValues) {
    EXPECT_EQ(Answer("first value of (7; 8; 9); first values of (7; 8; 9)"), "7|7");
    EXPECT_EQ(Answer("first values 2 of (7; 8; 9)"), "7|8");
    EXPECT_EQ(Answer("first values 5 of (7; 8; 9)"), "7|8|9");
    EXPECT_EQ(Answer("first values 0 of (7; 8; 9)"), "");
    EXPECT_EQ(Answer("first value 3 of 7"), "7");
    EXPECT_EQ(Answer(OfNone("first values")), "");
    EXPECT_EQ(Ask(OfNone("first value")).problems,
              "error: no such object\n  first value of ((1; 2) whose (false))\n  ^~~~~~~~~~~\n");
    EXPECT_EQ(Ask("first value 3 of (7; 8)").problems,
              "error: more than one object\n  first value 3 of (7; 8)\n  ^~~~~~~~~~~\n");
    EXPECT_EQ(Ask("first values (-1) of (7; 8)").problems,
              "error: no such object\n  first values (-1) of (7; 8)\n  ^~~~~~~~~~~~\n");
}

TEST_F(Many, LastValues) {
    EXPECT_EQ(Answer("last value of (7; 8; 9); last values of (7; 8; 9)"), "9|9");
    EXPECT_EQ(Answer("last values 2 of (7; 8; 9)"), "8|9");
    EXPECT_EQ(Answer("last values 5 of (7; 8; 9)"), "7|8|9");
    EXPECT_EQ(Answer("last values 0 of (7; 8; 9)"), "");
    EXPECT_EQ(Answer("last values 3 of integers up to 10000"), "9998|9999|10000");
    EXPECT_EQ(Answer("last values 9223372036854775807 of (7; 8)"), "7|8");
    EXPECT_EQ(Answer(OfNone("last values")), "");
    EXPECT_EQ(Ask(OfNone("last value")).problems,
              "error: no such object\n  last value of ((1; 2) whose (false))\n  ^~~~~~~~~~\n");
    EXPECT_EQ(Ask("last value 2 of (7; 8)").problems,
              "error: more than one object\n  last value 2 of (7; 8)\n  ^~~~~~~~~~\n");
    EXPECT_EQ(Ask("last values (-1) of (7; 8)").problems,
              "error: no such object\n  last values (-1) of (7; 8)\n  ^~~~~~~~~~~\n");
}

TEST_F(Many, Concatenation) {
    EXPECT_EQ(Answer("concatenation of (\"a\"; \"\"; \"b\")"), "ab");
    EXPECT_EQ(Answer("concatenation \", \" of (\"a\"; \"\"; \"b\")"), "a, , b");
    EXPECT_EQ(Answer("concatenations \"-\" of \"a\""), "a");
    EXPECT_EQ(Answer("concatenation \"-\" of ((\"a\"; \"b\") whose (false)) & \"|\""), "|");
    EXPECT_EQ(Answer("concatenation \"; \" of (integers up to 3 as string)"), "1; 2; 3");
    EXPECT_EQ(Ask("concatenation of (1; 2)").problems,
              "error: \"concatenation\" is of strings, and this is an integer\n"
              "  concatenation of (1; 2)\n  ^~~~~~~~~~~~~\n");
}

TEST_F(Many, NothingIsAskedForBeyondWhatIsNeeded) {
    EXPECT_EQ(Counted("first values 3 of stones 1000"), 3);
    EXPECT_EQ(Counted("first value of stones 1000"), 1);
    EXPECT_EQ(Counted("first value 3 of stones 1000"), 2);
    EXPECT_EQ(Counted("first values 0 of stones 1000"), 0);
    EXPECT_EQ(Counted("last values 0 of stones 1000"), 0);
    EXPECT_EQ(Counted("exists unique values of stones 1000"), 1);
    EXPECT_EQ(Counted("exists first value 5 of stones 1000"), 1);
    EXPECT_EQ(Counted("first values 2 of unique values of names of stones 1000"), 2);
}

TEST_F(Many, CollectedTextsHoldNothingOfWhatTheyWereMadeFrom) {
    EXPECT_EQ(Answer("(it, living stone) of first value of sorted values of names of stones 900"),
              "stone 1, 0");
    // "it" still stands for the last stone that the step was asked of.
    EXPECT_EQ(Answer("(it, living stone) of first value of sorted values of (name of it, 1) of stones 900"),
              "(stone 1, 1), 1");
    EXPECT_EQ(Answer("(it, living stone) of last values of names of stones 900"), "stone 900, 0");
    // The stone that was asked last is held until the next one is.
    EXPECT_EQ(Answer("last value of (number of it, living stone) of unique values of names of stones 900"),
              "1, 1");
    EXPECT_EQ(Answer("(living stone) of last values 2 of stones 900"), "2|1");
}

TEST_F(Many, OneValueHeldManyTimesOverIsDetachedOnce) {
    std::string query = "name of numbered stone 1";
    for (int i = 0; i < 60; ++i) query = "(it, it) of (" + query + ")";
    EXPECT_EQ(Answer("number of last value of (" + query + ")"), "1");
}

TEST_F(Many, TheyTakeAWholePluralWhateverItsForm) {
    EXPECT_EQ(Answer("(sum of integers up to (it)) of (2; 3)"), "3|6");
    EXPECT_EQ(Answer("number of (1; 2) + 1"), "3");
    EXPECT_EQ(Answer("sorted values whose (it > 1) of (3; 2; 1)"), "2|3");
    EXPECT_EQ(Ask("first values 2 of (1; 2) + 1").problems,
              "error: one value is wanted here, and this may be any number of them\n"
              "  first values 2 of (1; 2) + 1\n"
              "  ^~~~~~~~~~~~~~~~~~~~~~~~\n"
              "  hint: \"first value\" is the singular\n");
}

TEST_F(Many, WithoutAnObject) {
    struct {
        std::string phrase, example;
    } const rows[] = {
        {"number", "number of files of folder \"/etc\""},
        {"sum", "sum of (1; 2; 3)"},
        {"minimum", "minimum of (1; 2; 3)"},
        {"maximum", "maximum of (1; 2; 3)"},
        {"unique values", "unique values of (1; 2; 1)"},
        {"sorted values", "sorted values of (2; 3; 1)"},
        {"first values", "first values 2 of (1; 2; 3)"},
        {"last values", "last values 2 of (1; 2; 3)"},
        {"concatenation", "concatenation \", \" of (\"a\"; \"b\")"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(Ask(row.phrase).problems, "error: \"" + row.phrase + "\" of what?\n  " + row.phrase +
                                                "\n  ^" + std::string(row.phrase.size() - 1, '~') +
                                                "\n  hint: " + row.example + "\n");
}

TEST_F(Many, WithAnIndexThatTheyDoNotTake) {
    EXPECT_EQ(Ask("sum 2 of (1; 2)").problems, "error: \"sum\" takes no index\n  sum 2 of (1; 2)\n      ^\n");
    EXPECT_EQ(Ask("first values \"a\" of (1; 2)").problems,
              "error: \"first values\" takes no index, or an integer as index\n"
              "  first values \"a\" of (1; 2)\n               ^~~\n");
    EXPECT_EQ(Ask("concatenation 1 of \"a\"").problems,
              "error: \"concatenation\" takes no index, or a string as index\n"
              "  concatenation 1 of \"a\"\n                ^\n");
    EXPECT_EQ(Ask("first values (1; 2) of (1; 2)").problems,
              "error: one value is wanted here, and this may be any number of them\n"
              "  first values (1; 2) of (1; 2)\n                ^~~~\n");
}

TEST_F(Many, AreSuggestedWhenTheyAreNearlyMet) {
    EXPECT_EQ(Ask("nubmer of (1; 2)").problems,
              "error: an integer has no property \"nubmer\"\n"
              "  nubmer of (1; 2)\n  ^~~~~~\n  hint: \"number\" is one\n");
    EXPECT_EQ(Ask("sorted valuse of \"a\"").problems,
              "error: a string has no property \"sorted valuse\"\n"
              "  sorted valuse of \"a\"\n  ^~~~~~~~~~~~~\n"
              "  hint: \"sorted value\" is one; so is \"lengths\"\n");
    EXPECT_EQ(Ask("nubmer").problems.find("\"number\""), std::string::npos);
}

TEST_F(Many, AnAbsentIndexIsAbsence) {
    for (std::string phrase : {"first value", "last value"})
        EXPECT_EQ(Answer(phrase + " (\"x\" as integer) of (1; 2) otherwise 9"), "9");
    EXPECT_EQ(Answer("concatenation (substring after \"x\" of \"\") of \"a\" otherwise \"none\""), "none");
}

TEST_F(Many, WhatIsHeldAtOnceIsBounded) {
    std::string const limit = "error: more than 10000000 values would be held at once\n";
    std::string const hint = "  hint: leave some out first, with \"whose (…)\" or \"first values\"\n";
    std::string query = "last values 20000000 of (5) of integers up to 10000001";
    EXPECT_EQ(Ask("number of " + query).problems,
              limit + "  number of " + query + "\n            ^~~~~~~~~~~\n" + hint);
#ifndef ZELQ_ADDRESS_SANITIZER  // with which each of them takes most of a minute
    query = "sorted values of (5) of integers up to 10000001";
    EXPECT_EQ(Ask(query).problems, limit + "  " + query + "\n  ^~~~~~~~~~~~~\n" + hint);
    EXPECT_EQ(Answer("number of last values 20000000 of (5) of integers up to 10000000"), "10000000");
#endif
}

TEST_F(Many, TextsThatArePutTogetherAreBounded) {
    std::string text = "\"0123456789abcdef\"";
    for (int i = 0; i < 24; ++i) text = "(it & it) of (" + text + ")";  // 256 MiB
    EXPECT_EQ(Answer("length of (" + text + ")"), "268435456");
    std::string const query = "length of (it & \"1\") of (" + text + ")";
    EXPECT_EQ(Ask(query).problems.substr(0, 58),
              "error: a text would be longer than 268435456 bytes\n  lengt");
    EXPECT_EQ(Ask("(concatenation of (it; it)) of (" + text + ")").problems.substr(0, 51),
              "error: a text would be longer than 268435456 bytes\n");
}

}  // namespace
