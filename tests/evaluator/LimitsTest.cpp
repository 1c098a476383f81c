// Every limit at its bound and one past it.

#include <chrono>
#include <cstdint>

#include "evaluator/NastyTest.h"

namespace {

class LimitsHold : public NastyTest {};

TEST_F(LimitsHold, InspectorMemory) {
    Evaluator::RunOptions options;
    options.limits.inspectorMemory = 100'000;
    EXPECT_EQ(Ask("exists memory 100000", options), (Outcome{{"true"}, ""}));
    EXPECT_EQ(Ask("exists memory 100001", options).problems,
              "error: inspectors want more than 100000 bytes of memory at one time\n  exists memory 100001\n"
              "         ^~~~~~\n  hint: ask about fewer or smaller things at once\n");
    // What goes with its value does not add up.
    EXPECT_EQ(Ask("number of (memory (it)) of (40000; 40000; 40000; 40000)", options), (Outcome{{"4"}, ""}));
    EXPECT_EQ(Ask("exists (memory 50000, memory 50001)", options).values.size(), 0u);
}

TEST_F(LimitsHold, InspectorMemoryOfAnInspectorThatPretendsNothingHappened) {
    Evaluator::RunOptions options;
    options.limits.inspectorMemory = 10 << 20;
    EXPECT_EQ(
        Ask("hoard of trouble 1", options),
        (Outcome{{},
                 "error: inspectors want more than 10485760 bytes of memory at one time\n"
                 "  hoard of trouble 1\n  ^~~~~\n  hint: ask about fewer or smaller things at once\n"}));
}

TEST_F(LimitsHold, TheTextOfATuple) {
    Evaluator::RunOptions options;
    options.limits.textBytes = 13;
    EXPECT_EQ(Ask("(\"12345\", \"1234\")", options), (Outcome{{"12345, 1234"}, ""}));
    EXPECT_EQ(
        Ask("(\"12345\", \"12345\")", options).problems,
        "error: the text of a tuple is longer than 13 bytes\n  (\"12345\", \"12345\")\n   ^~~~~~~~~~~~~~~~\n"
        "  hint: ask for fewer fields at once\n");
}

TEST_F(LimitsHold, TextsThatTheLanguageMakes) {
    Evaluator::RunOptions options;
    options.limits.textBytes = 6;
    EXPECT_EQ(Ask("\"abc\" & \"def\"", options), (Outcome{{"abcdef"}, ""}));
    EXPECT_EQ(Ask("\"abc\" & \"defg\"", options).problems,
              "error: a text would be longer than 6 bytes\n  \"abc\" & \"defg\"\n        ^\n"
              "  hint: join fewer texts, or take them one at a time\n");
    EXPECT_EQ(Ask("concatenation \"-\" of (\"ab\"; \"cde\")", options), (Outcome{{"ab-cde"}, ""}));
    EXPECT_EQ(Ask("concatenation \"-\" of (\"abc\"; \"cde\")", options).problems.substr(0, 43),
              "error: a text would be longer than 6 bytes\n");
}

TEST_F(LimitsHold, NoTextIsLongerThanItsLengthCanTell) {
    Evaluator::RunOptions options;
    options.limits.textBytes = SIZE_MAX;
    EXPECT_EQ(Ask("giant & giant", options).problems,
              "error: a text would be longer than 4294967295 bytes\n  giant & giant\n        ^\n"
              "  hint: join fewer texts, or take them one at a time\n");
}

// The least and the most that can be asked for.
TEST_F(LimitsHold, LimitsOfNothingAndWithoutBounds) {
    Evaluator::RunOptions none, all;
    none.limits.stackBytes = none.limits.textBytes = none.limits.inspectorMemory =
        none.limits.gatheredValues = none.limits.suggestions = 0;
    all.limits.stackBytes = all.limits.textBytes = all.limits.inspectorMemory = all.limits.gatheredValues =
        all.limits.suggestions = all.limits.queryBytes = all.limits.nesting = all.limits.problems = SIZE_MAX;
    none.limits.time = std::chrono::nanoseconds::min();
    all.limits.time = std::chrono::nanoseconds::max();
    for (std::string query :
         {"kind of trouble 7 + 1", "number of integers up to 8", "length of \"12345678\""})
        EXPECT_EQ(Ask(query, none), (Outcome{{"8"}, ""})) << query;
    for (std::string query : {"sorted values of (8; 8)", "unique values of 8", "1 as string", "\"1\" & \"2\"",
                              "concatenation of \"1\"", "(1, 2)"})
        EXPECT_NE(Ask(query, none).problems, "") << query;
    EXPECT_EQ(Ask("concatenation of (sorted values of (2; 1) as string) & \"0\"", all),
              (Outcome{{"120"}, ""}));
    EXPECT_EQ(Ask("small frame of trouble 1; kin of 1", all).problems,
              Ask("small frame of trouble 1; kin of 1").problems);
    none.limits.queryBytes = 0;
    EXPECT_EQ(Ask("1", none).problems,
              "error: the query is longer than 0 bytes\n  1\n  ^\n  hint: ask about fewer things at once\n");
}

TEST_F(LimitsHold, GatheredValues) {
    Evaluator::RunOptions options;
    options.limits.gatheredValues = 3;
    for (std::string phrase : {"sorted values", "unique values", "last values"}) {
        std::string const caret = "^" + std::string(phrase.size() - 1, '~');
        if (phrase == "last values") phrase += " 9";
        EXPECT_EQ(Ask("number of " + phrase + " of integers up to 3", options), (Outcome{{"3"}, ""}));
        EXPECT_EQ(Ask("number of " + phrase + " of integers up to 4", options).problems,
                  "error: more than 3 values would be held at once\n  number of " + phrase +
                      " of integers up to 4\n            " + caret +
                      "\n  hint: leave some out first, with \"whose (…)\" or \"first values\"\n");
    }
}

TEST_F(LimitsHold, TheLengthOfAQuery) {
    Evaluator::RunOptions options;
    options.limits.queryBytes = 5;
    EXPECT_EQ(Ask("1 + 2", options), (Outcome{{"3"}, ""}));
    EXPECT_EQ(Ask("1 + 23", options).problems,
              "error: the query is longer than 5 bytes\n  1 + 23\n  ^\n"
              "  hint: ask about fewer things at once\n");
}

TEST_F(LimitsHold, TheNestingOfAQuery) {
    Evaluator::RunOptions options;
    options.limits.nesting = 3;
    EXPECT_EQ(Ask("- - 1", options), (Outcome{{"1"}, ""}));
    EXPECT_EQ(Ask("- - - 1", options).problems,
              "error: the query is nested more than 3 deep\n  - - - 1\n  ^~~~~~~\n"
              "  hint: split it into several queries\n");
    // No more than there is stack for, whatever is asked.
    options.limits.nesting = 1'000'000;
    std::string deep = "1";
    for (int i = 0; i < 401; ++i) deep = "- " + deep;
    EXPECT_EQ(Ask(deep, options).problems.substr(0, 46), "error: the query is nested more than 400 deep\n");
}

TEST_F(LimitsHold, ProblemsOfOneQuery) {
    auto problems = [](std::size_t limit) {
        Evaluator::Limits limits;
        limits.problems = limit;
        return Evaluator::Query::Compile("(foo of 1; bar of 1; baz of 1)", limits).problems.size();
    };
    EXPECT_EQ(problems(2), 2u);
    EXPECT_EQ(problems(3), 3u);
    EXPECT_EQ(problems(4), 3u);
    EXPECT_EQ(problems(0), 1u);  // as few as there may be
}

TEST_F(LimitsHold, SuggestionsInOneHint) {
    Evaluator::Limits limits;
    auto hint = [&] { return Evaluator::Query::Compile("kinf of trouble 1", limits).problems.at(0).hint; };
    limits.suggestions = 1;
    EXPECT_EQ(hint(), "\"kind\" is one");
    limits.suggestions = 2;
    EXPECT_EQ(hint(), "\"kind\" is one; so is \"abyss\"");
}

}  // namespace
