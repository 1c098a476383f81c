// Queries that can be read in two ways, because a phrase with an operator in it begins with another phrase.

#include <gtest/gtest.h>

#include "evaluator/Asking.h"

namespace {

class Readings : public testing::Test {
  protected:
    static void SetUpTestSuite() { Evaluator::LoadInspectorLibrary(TestLibrary("RumourInspectors")); }
    static void TearDownTestSuite() {
        EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("RumourInspectors.dylib"));
    }
};

TEST_F(Readings, TwoSoundOnesAreAnErrorThatShowsBoth) {
    EXPECT_EQ(Ask("rumour contains \"b\"").problems,
              "error: the query can be read in two ways: (rumour contains \"b\"), and ((rumour) contains "
              "\"b\")\n"
              "  rumour contains \"b\"\n"
              "  ^~~~~~~~~~~~~~~\n"
              "  hint: the second can be asked for with its parentheses\n");
    EXPECT_EQ(Ask("1; number of (it) of (rumour contains \"b\") ").problems.substr(0, 44),
              "error: the query can be read in two ways: (1");
    auto compiled = Evaluator::Query::Compile("rumour contains \"b\"");
    EXPECT_EQ(compiled.problems[0].kind, Evaluator::ProblemKind::meaning);
}

TEST_F(Readings, ParenthesesChooseTheShorterPhrase) { EXPECT_EQ(Answer("(rumour) contains \"b\""), "true"); }

TEST_F(Readings, TheOneThatIsSoundIsTaken) {
    EXPECT_EQ(Answer("gossip contains \"b\""), "false");     // no integer contains a string
    EXPECT_EQ(Answer("hearsay starts with \"a\""), "true");  // the longer phrase takes no string
    EXPECT_EQ(Answer("hearsay starts with 1"), "false");     // no string starts with an integer
    EXPECT_EQ(Answer("tally mod 4"), "3");
    EXPECT_EQ(Answer("whisper contains \"b\""), "false");
    EXPECT_EQ(Answer("tally mod; tally mod + 1"), "7|8");
}

TEST_F(Readings, TheShorterOneMayBeTheOnlyOneOfTheGrammar) { EXPECT_EQ(Answer("tally mod tally"), "0"); }

TEST_F(Readings, CastsHaveTwoLikeSteps) {
    EXPECT_EQ(Answer("4 as noise contains"), "8");
    EXPECT_EQ(Answer("4 as noise contains \"b\""), "true");
}

TEST_F(Readings, AMinusMayMakeTwo) {
    EXPECT_EQ(Ask("tally mod -4").problems,
              "error: the query can be read in two ways: ((tally mod) - 4), and ((tally) mod -4)\n"
              "  tally mod -4\n"
              "  ^~~~~~~~~\n"
              "  hint: the second can be asked for with its parentheses\n");
    EXPECT_EQ(Answer("(tally mod) - 4; (tally) mod -4"), "3|3");
}

TEST_F(Readings, ProblemsAreThoseOfTheLongestPhrase) {
    EXPECT_EQ(Ask("hearsay starts with true").problems,
              "error: the end of the query is expected here, not \"true\"\n"
              "  hearsay starts with true\n"
              "                      ^~~~\n");
    EXPECT_EQ(Ask("hearsay starts with (true)").problems,
              "error: \"hearsay starts with\" of the world takes an integer as index\n"
              "  hearsay starts with (true)\n"
              "  ^~~~~~~~~~~~~~~~~~~\n");
}

TEST_F(Readings, OnlyTheFirstPlaceIsReadBothWays) {
    EXPECT_EQ(Answer("(tally mod 4, hearsay starts with 1)"), "3, false");
    EXPECT_EQ(Ask("(gossip contains \"b\", hearsay starts with \"a\")").problems,
              "error: \"hearsay starts with\" of the world takes an integer as index\n"
              "  (gossip contains \"b\", hearsay starts with \"a\")\n"
              "                        ^~~~~~~~~~~~~~~~~~~\n");
}

}  // namespace
