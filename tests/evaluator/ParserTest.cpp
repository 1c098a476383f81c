#include "language/Parser.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "core/Core.h"
#include "language/Limits.h"

using namespace Evaluator;

namespace {

std::string Show(Syntax const& syntax);

std::string ShowParts(Syntax const& syntax, std::string_view separator) {
    std::string shown;
    for (SyntaxPointer const& part : syntax.parts)
        shown += (shown.empty() ? "" : std::string(separator)) + Show(*part);
    return "(" + shown + ")";
}

std::string ShowTail(Syntax const& syntax) {
    std::string tail;
    if (syntax.condition) tail += " whose " + Show(*syntax.condition);
    if (syntax.object) tail += " of " + Show(*syntax.object);
    return tail;
}

// The tree with all its parentheses.
std::string Show(Syntax const& syntax) {
    switch (syntax.kind) {
        case SyntaxKind::string:
            return "\"" + syntax.text + "\"";
        case SyntaxKind::integer:
            return std::to_string(syntax.number);
        case SyntaxKind::truth:
            return syntax.number ? "true" : "false";
        case SyntaxKind::it:
            return "it";
        case SyntaxKind::step: {
            return "[" + syntax.text + (syntax.index ? " " + Show(*syntax.index) : "") + ShowTail(syntax) +
                   "]";
        }
        case SyntaxKind::group:
            return "{" + Show(*syntax.parts[0]) + ShowTail(syntax) + "}";
        case SyntaxKind::collection:
            return ShowParts(syntax, "; ");
        case SyntaxKind::tuple:
            return ShowParts(syntax, ", ");
        case SyntaxKind::choice:
            return "if" + ShowParts(syntax, " : ");
        case SyntaxKind::fallback:
            return ShowParts(syntax, " otherwise ");
        case SyntaxKind::both:
            return ShowParts(syntax, " and ");
        case SyntaxKind::either:
            return ShowParts(syntax, " or ");
        case SyntaxKind::negation:
            return "not" + ShowParts(syntax, "");
        case SyntaxKind::existence:
            return "exists" + ShowParts(syntax, "");
        case SyntaxKind::minus:
            return "minus" + ShowParts(syntax, "");
        case SyntaxKind::cast:
            return ShowParts(syntax, "") + " as " + syntax.text;
        case SyntaxKind::arithmetic:
            return ShowParts(syntax, fmt::format(" #{} ", syntax.number));
        case SyntaxKind::relation:
            return ShowParts(syntax, fmt::format(" {}{}#{} ", syntax.relation.negated ? "!" : "",
                                                 syntax.relation.exchanged ? "~" : "", syntax.relation.code));
    }
    return "";
}

class Parsing : public testing::Test {
  protected:
    static void SetUpTestSuite() { RegisterCore(); }
    static std::string Tree(std::string_view query) { return Show(*Parse(query, Vocabulary::Present())); }
    static std::string Failure(std::string_view query) {
        try {
            return Tree(query);
        } catch (SyntaxError const& error) {
            return Render(error.problem, query);
        }
    }
};

TEST_F(Parsing, OperatorsBindAsTheGrammarSays) {
    EXPECT_EQ(Tree("1 + 2 * 3"), "(1 #0 (2 #2 3))");
    EXPECT_EQ(Tree("1 - 2 - 3"), "((1 #1 2) #1 3)");
    EXPECT_EQ(Tree("7 mod 2 / 3"), "((7 #32 2) #3 3)");
    EXPECT_EQ(Tree("\"a\" & \"b\" = \"ab\""), "((\"a\" #33 \"b\") #6 \"ab\")");
    EXPECT_EQ(Tree("not 1 = 2 and true or false"), "((not((1 #6 2)) and true) or false)");
    EXPECT_EQ(Tree("hour of now + 1"), "([hour of [now]] #0 1)");
    EXPECT_EQ(Tree("1 as string & \"x\""), "((1) as string #33 \"x\")");
    EXPECT_EQ(Tree("exists 1 * 2 = true"), "(exists((1 #2 2)) #6 true)");
    EXPECT_EQ(Tree("not exists now"), "not(exists([now]))");
    EXPECT_EQ(Tree("1 otherwise 2 otherwise 3"), "(1 otherwise (2 otherwise 3))");
    EXPECT_EQ(Tree("if true then 1 else if false then 2 else 3"), "if(true : 1 : if(false : 2 : 3))");
    EXPECT_EQ(Tree("1, 2; 3"), "((1, 2); 3)");
}

TEST_F(Parsing, AMinusDirectlyBeforeALiteralBelongsToIt) {
    EXPECT_EQ(Tree("-5"), "-5");
    EXPECT_EQ(Tree("- 5"), "minus(5)");
    EXPECT_EQ(Tree("2-5"), "(2 #1 5)");
    EXPECT_EQ(Tree("2 - -5"), "(2 #1 -5)");
    EXPECT_EQ(Tree("--5"), "minus(-5)");
    EXPECT_EQ(Tree("-9223372036854775808"), "-9223372036854775808");
    EXPECT_EQ(Failure("9223372036854775808"),
              "error: this number is out of range\n"
              "  9223372036854775808\n"
              "  ^~~~~~~~~~~~~~~~~~~\n"
              "  hint: integers go from -9223372036854775808 to 9223372036854775807\n");
}

TEST_F(Parsing, EveryRelationInWords) {
    EXPECT_EQ(Tree("1 is 2"), "(1 #6 2)");
    EXPECT_EQ(Tree("1 is not 2"), "(1 !#6 2)");
    EXPECT_EQ(Tree("1 != 2"), "(1 !#6 2)");
    EXPECT_EQ(Tree("1 > 2"), "(1 ~#7 2)");
    EXPECT_EQ(Tree("1 >= 2"), "(1 ~#8 2)");
    EXPECT_EQ(Tree("1 <= 2"), "(1 #8 2)");
    EXPECT_EQ(Tree("1 contains 2"), "(1 #11 2)");
    EXPECT_EQ(Tree("1 does not contain 2"), "(1 !#11 2)");
    EXPECT_EQ(Tree("1 is contained by 2"), "(1 ~#11 2)");
    EXPECT_EQ(Tree("1 is not contained by 2"), "(1 !~#11 2)");
    EXPECT_EQ(Tree("1 starts with 2"), "(1 #34 2)");
    EXPECT_EQ(Tree("1 does not start with 2"), "(1 !#34 2)");
    EXPECT_EQ(Tree("1 ends with 2"), "(1 #35 2)");
    EXPECT_EQ(Tree("1 does not end with 2"), "(1 !#35 2)");
    EXPECT_EQ(Failure("1 = 2 = 3"),
              "error: relations do not chain\n"
              "  1 = 2 = 3\n"
              "        ^\n"
              "  hint: join two relations with \"and\", or use parentheses\n");
}

TEST_F(Parsing, ChainsOfStepsGroupToTheRight) {
    EXPECT_EQ(Tree("hour of hour of now"), "[hour of [hour of [now]]]");
    EXPECT_EQ(Tree("(it, it) of (1; 2)"), "{(it, it) of {(1; 2)}}");
    EXPECT_EQ(Tree("(hours of now) whose (it > 1) of now"), "{[hours of [now]] whose (it ~#7 1) of [now]}");
    EXPECT_EQ(Tree("hours whose (true) of now"), "[hours whose true of [now]]");
    EXPECT_EQ(Tree("it whose (true)"), "{it whose true}");
    EXPECT_EQ(Failure("\"a\" of now"),
              "error: before \"of\" stands a phrase or a parenthesis, not a value\n"
              "  \"a\" of now\n"
              "  ^~~\n");
}

TEST_F(Parsing, AnIndexStandsDirectlyBehindItsPhrase) {
    EXPECT_EQ(Tree("time \"2026\""), "[time \"2026\"]");
    EXPECT_EQ(Tree("hour 3 of now"), "[hour 3 of [now]]");
    EXPECT_EQ(Tree("hour (-3) of now"), "[hour -3 of [now]]");
    EXPECT_EQ(Tree("HOUR (1 + 2)"), "[hour (1 #0 2)]");
}

TEST_F(Parsing, APhraseIsTheLongestRegisteredRun) {
    EXPECT_EQ(Tree("hour contains 1"), "([hour] #11 1)");
    EXPECT_EQ(Tree("hour mod hour"), "([hour] #32 [hour])");
    EXPECT_EQ(Tree("naem of now"), "[naem of [now]]");
    EXPECT_EQ(Tree("hour glass half full of now"), "[hour glass half full of [now]]");
    EXPECT_EQ(Tree("naem starts with 1"), "([naem] #34 1)");
    EXPECT_EQ(Tree("naem startin with \"x\" of now"), "[naem startin with \"x\" of [now]]");
    EXPECT_EQ(Tree("hour by 1"), "[hour by 1]");
    EXPECT_EQ(Tree("1 as strnig"), "(1) as strnig");
}

TEST_F(Parsing, SaysWhatIsMissing) {
    EXPECT_EQ(Failure(""), "error: the query is empty\n  \n  ^\n");
    EXPECT_EQ(Failure("1 +"),
              "error: a phrase or a value is missing at the end of the query\n  1 +\n     ^\n");
    EXPECT_EQ(Failure("(1"), "error: \")\" is missing at the end of the query\n  (1\n    ^\n");
    EXPECT_EQ(Failure("1 2"), "error: the end of the query is expected here, not \"2\"\n  1 2\n    ^\n");
    EXPECT_EQ(Failure("if true 1"),
              "error: \"then\" is expected here, not \"1\"\n  if true 1\n          ^\n");
    EXPECT_EQ(Failure("hours whose it"),
              "error: \"(\" is expected here, not \"it\"\n"
              "  hours whose it\n"
              "              ^~\n"
              "  hint: a condition stands in parentheses: files whose (size of it > 0)\n");
    EXPECT_EQ(Failure("1 does 2"),
              "error: a relation is expected here, not \"does\"\n"
              "  1 does 2\n"
              "    ^~~~\n"
              "  hint: such as \"does not contain\", \"does not start with\"\n");
    EXPECT_EQ(Failure("with"), "error: a phrase or a value is expected here, not \"with\"\n  with\n  ^~~~\n");
}

TEST_F(Parsing, NestingIsBounded) {
    auto deep = [](std::size_t count, std::string const& open, std::string const& close) {
        std::string text;
        for (std::size_t i = 0; i < count; ++i) text += open;
        text += "1";
        for (std::size_t i = 0; i < count; ++i) text += close;
        return text;
    };
    EXPECT_EQ(Tree(deep(Limits().nesting - 1, "- ", "")).substr(0, 6), "minus(");
    std::string const limit = "error: the query is nested more than 400 deep\n";
    EXPECT_EQ(Failure(deep(Limits().nesting, "- ", "")).substr(0, limit.size()), limit);
    EXPECT_EQ(Failure(deep(1000000, "(", "")).substr(0, 5), "error");
    EXPECT_EQ(Failure(deep(300000, "(", ")")).substr(0, limit.size()), limit);
    EXPECT_EQ(Failure(deep(200000, "", " + 1")).substr(0, limit.size()), limit);
    EXPECT_EQ(Failure(deep(100000, "hour of ", "")).substr(0, limit.size()), limit);
    EXPECT_EQ(Failure(deep(100000, "not ", "")).substr(0, limit.size()), limit);
    EXPECT_EQ(Failure(deep(60000, "if true then 1 else ", "")).substr(0, 5), "error");
}

TEST_F(Parsing, LengthIsBounded) {
    std::string longest(Limits().queryBytes - 1, ' ');
    EXPECT_EQ(Tree("1" + longest), "1");
    EXPECT_EQ(Failure("11" + longest), "error: the query is longer than 1048576 bytes\n  11" +
                                           std::string(158, ' ') +
                                           "\n  ^\n  hint: ask about fewer things at once\n");
}

}  // namespace
