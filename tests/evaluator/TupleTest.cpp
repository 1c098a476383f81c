// Tuples compare field by field; nothing else is asked of them.

#include "evaluator/Stones.h"

namespace {

using Tuples = Stones;

TEST_F(Tuples, EqualWhenAllFieldsAre) {
    EXPECT_EQ(Answer("(1, \"a\") = (1, \"a\"); (1, \"a\") = (1, \"b\"); (2, \"a\") = (1, \"a\")"),
              "true|false|false");
    EXPECT_EQ(Answer("(1, \"a\") != (1, \"a\"); (1, \"a\") is not (1, \"b\"); (true, 1) is (true, 1)"),
              "false|true|true");
}

TEST_F(Tuples, TheFirstFieldThatDiffersDecidesTheOrder) {
    EXPECT_EQ(Answer("(1, 2) < (1, 3); (1, 3) < (1, 3); (1, 9) < (2, 0); (2, 0) < (1, 9)"),
              "true|false|true|false");
    EXPECT_EQ(Answer("(1, 2) <= (1, 3); (1, 3) <= (1, 3); (1, 4) <= (1, 3); (2, 0) <= (1, 9)"),
              "true|true|false|false");
    EXPECT_EQ(Answer("(1, 2) > (1, 3); (1, 3) > (1, 2); (1, 3) >= (1, 3); (1, 2) >= (1, 3)"),
              "false|true|true|false");
}

TEST_F(Tuples, WithinTuplesTheSame) {
    EXPECT_EQ(Answer("(1, (2, 3)) < (1, (2, 4)); (1, (2, 3)) = (1, (2, 3)); ((1, 2), 3) < ((1, 1), 9)"),
              "true|true|false");
}

TEST_F(Tuples, FieldsOfALibrarysTypeCompareByItsOwnRelations) {
    std::string const light = "(numbered stone 11, 1)", same = "(numbered stone 12, 1)",
                      heavy = "(numbered stone 20, 0)", sameTwo = "(numbered stone 11, 2)";
    auto answer = [](std::string const& left, std::string const& relation, std::string const& right) {
        return Answer(left + " " + relation + " " + right);
    };
    EXPECT_EQ(answer(light, "=", same), "true");
    EXPECT_EQ(answer(light, "=", heavy), "false");
    EXPECT_EQ(answer(light, "<", same), "false");
    EXPECT_EQ(answer(light, "<", heavy), "true");
    EXPECT_EQ(answer(heavy, "<", light), "false");
    EXPECT_EQ(answer(same, "<", sameTwo), "true");
    EXPECT_EQ(answer(light, "<=", same), "true");
    EXPECT_EQ(answer(sameTwo, "<=", same), "false");
    EXPECT_EQ(answer(heavy, ">=", light), "true");
    for (std::string relation : {"=", "<"})
        EXPECT_EQ(Ask("(numbered stone 1, 1) " + relation + " (numbered stone 1000, 1)").problems,
                  "error: no such object\n  (numbered stone 1, 1) " + relation +
                      " (numbered stone 1000, 1)\n                        ^\n");
}

TEST_F(Tuples, ARelationThatAFieldDoesNotHave) {
    EXPECT_EQ(Ask("(1, true) < (1, false)").problems,
              "error: these tuples do not compare: there is no \"<\" of a boolean and a boolean\n"
              "  (1, true) < (1, false)\n            ^\n");
    EXPECT_EQ(Ask("(1, cloud 1) = (1, cloud 1)").problems,
              "error: these tuples do not compare: there is no \"=\" of a cloud and a cloud\n"
              "  (1, cloud 1) = (1, cloud 1)\n               ^\n");
}

TEST_F(Tuples, OfOtherFieldTypesDoNotCompare) {
    std::string const hint = "  hint: tuples whose fields have the same types compare with = != < <= > >=\n";
    EXPECT_EQ(Ask("(1, 2) = (1, \"a\")").problems,
              "error: there is no \"=\" of (integer, integer) and (integer, string)\n"
              "  (1, 2) = (1, \"a\")\n         ^\n" +
                  hint);
    EXPECT_EQ(Ask("(1, 2) >= (1, 2, 3)").problems,
              "error: there is no \">=\" of (integer, integer) and (integer, integer, integer)\n"
              "  (1, 2) >= (1, 2, 3)\n         ^~\n" +
                  hint);
    EXPECT_EQ(Ask("(1, 2) does not contain (1, 2)").problems,
              "error: there is no \"does not contain\" of (integer, integer) and (integer, integer)\n"
              "  (1, 2) does not contain (1, 2)\n         ^~~~~~~~~~~~~~~~\n" +
                  hint);
}

TEST_F(Tuples, AreNoOperandsIndexesOrConditions) {
    EXPECT_EQ(Ask("(1, 2) + (1, 2)").problems,
              "error: there is no \"+\" of a tuple and a tuple\n  (1, 2) + (1, 2)\n         ^\n");
    EXPECT_EQ(Ask("(1, 2) = 1").problems,
              "error: there is no \"=\" of a tuple and an integer\n  (1, 2) = 1\n         ^\n");
    EXPECT_EQ(Ask("- (1, 2)").problems, "error: there is no \"-\" of a tuple\n  - (1, 2)\n  ^\n");
    EXPECT_EQ(Ask("(1, 2) as string").problems,
              "error: a tuple has no cast \"string\"\n  (1, 2) as string\n            ^~~~~~\n");
    EXPECT_EQ(Ask("first values (1, 2) of (1; 2)").problems,
              "error: a tuple is no index\n  first values (1, 2) of (1; 2)\n                ^~~~\n");
    EXPECT_EQ(Ask("not (true, true)").problems,
              "error: a boolean is wanted here, and this is a tuple\n  not (true, true)\n      "
              "^~~~~~~~~~~~\n");
    EXPECT_EQ(
        Ask("(1; 2) whose (it, it)").problems,
        "error: a boolean is wanted here, and this is a tuple\n  (1; 2) whose (it, it)\n                "
        "^~~~~~\n");
}

TEST_F(Tuples, WithTooManyFieldsDoNotCompare) {
    std::string tuple = "1";
    for (int i = 0; i < 60; ++i) tuple = "(it, it) of (" + tuple + ")";
    EXPECT_EQ(Ask("(it = it) of (" + tuple + ")").problems.substr(0, 89),
              "error: these tuples do not compare: a tuple is compared that has more than 1000 fields\n  ");
}

TEST_F(Tuples, SortTheirFieldsInOrder) {
    EXPECT_EQ(Answer("sorted values of (it mod 2, it) of integers up to 5"), "0, 2|0, 4|1, 1|1, 3|1, 5");
    EXPECT_EQ(Answer("minimum of (it mod 2, it) of integers up to 5"), "0, 2");
    EXPECT_EQ(Answer("unique values of (it mod 2, 7) of integers up to 5"), "1, 7|0, 7");
}

}  // namespace
