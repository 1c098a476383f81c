// A query as the evaluator has understood it.

#include <gtest/gtest.h>

#include "evaluator/Asking.h"

namespace {

// words: type, one or many [<- library: registration], the parts indented.
std::string Tree(Evaluator::Explanation const& node, std::size_t depth = 0) {
    std::string text =
        std::string(2 * depth, ' ') + node.words + ": " + node.typeName + (node.plural ? ", many" : ", one");
    if (!node.registration.empty()) text += " <- " + node.library + ": " + node.registration;
    text += "\n";
    for (auto const& part : node.parts) text += Tree(part, depth + 1);
    return text;
}

std::string Explained(std::string_view query) {
    auto compiled = Evaluator::Query::Compile(query);
    return compiled.query ? Tree(compiled.query->Explain()) : "not sound";
}

TEST(Explain, EachPhraseWithItsRegistration) {
    EXPECT_EQ(Explained("lengths of substrings separated by \" \" of \"a b\""),
              "lengths: integer, many <- core: property \"length\" of \"string\"\n"
              "  substrings separated by: string, many <- core: iterated property \"substring separated by\" "
              "with index \"string\" of \"string\"\n"
              "    \" \": string, one\n"
              "    \"a b\": string, one\n");
}

TEST(Explain, OperatorsCastsAndLogic) {
    EXPECT_EQ(Explained("not (1 as string > \"\\x01\") and exists now or true"),
              "or: boolean, one\n"
              "  and: boolean, one\n"
              "    not: boolean, one\n"
              "      <: boolean, one <- core: operator \"<\" of \"string\" and \"string\"\n"
              "        \"\\x01\": string, one\n"
              "        as string: string, one <- core: cast \"string\" of \"integer\"\n"
              "          1: integer, one\n"
              "    exists: boolean, one\n"
              "      now: time, one <- core: property \"now\" of the world\n"
              "  true: boolean, one\n");
}

TEST(Explain, GatheringsAndSteps) {
    EXPECT_EQ(Explained("(it, number of (it; 2) whose (it > 1)) of (if true then 1 else 2 otherwise 3)"),
              "(…) of: (integer, integer), one\n"
              "  ,: (integer, integer), one\n"
              "    it: integer, one\n"
              "    number: integer, one\n"
              "      whose: integer, many\n"
              "        ;: integer, many\n"
              "          it: integer, one\n"
              "          2: integer, one\n"
              "        <: boolean, one <- core: operator \"<\" of \"integer\" and \"integer\"\n"
              "          1: integer, one\n"
              "          it: integer, one\n"
              "  if: integer, one\n"
              "    true: boolean, one\n"
              "    1: integer, one\n"
              "    otherwise: integer, one\n"
              "      2: integer, one\n"
              "      3: integer, one\n");
    EXPECT_EQ(Explained("(1, 2) >= (1, 3)"),
              "<=: boolean, one\n"
              "  ,: (integer, integer), one\n    1: integer, one\n    3: integer, one\n"
              "  ,: (integer, integer), one\n    1: integer, one\n    2: integer, one\n");
}

TEST(Explain, NodesKnowWhereTheyStand) {
    auto compiled = Evaluator::Query::Compile("length of \"abc\"");
    ASSERT_TRUE(compiled.query);
    Evaluator::Explanation tree = compiled.query->Explain();
    EXPECT_EQ(tree.range, (Evaluator::Range{0, 6}));
    ASSERT_EQ(tree.parts.size(), 1u);
    EXPECT_EQ(tree.parts[0].range, (Evaluator::Range{10, 15}));
    EXPECT_EQ(compiled.query->Bracketed(), "(length of \"abc\")");
}

}  // namespace
