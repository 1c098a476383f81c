#include "language/Bracketed.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "core/Core.h"
#include "language/Parser.h"

using namespace Evaluator;

namespace {

class Brackets : public testing::Test {
  protected:
    static void SetUpTestSuite() { RegisterCore(); }
    static std::string Of(std::string_view query) { return Bracketed(*Parse(query, Vocabulary::Present())); }
};

TEST_F(Brackets, StandAroundEveryOfAndIndex) {
    EXPECT_EQ(Of("name of file \"/etc/hosts\""), "(name of (file \"/etc/hosts\"))");
    EXPECT_EQ(Of("number of files of f + 1"), "((number of (files of f)) + 1)");
    EXPECT_EQ(Of("line (-3) of now"), "(line (-3) of now)");
    EXPECT_EQ(Of("line ((3)) of now"), "(line 3 of now)");
    EXPECT_EQ(Of("line (1 + 2)"), "(line (1 + 2))");
    EXPECT_EQ(Of("line (now)"), "(line (now))");
    EXPECT_EQ(Of("NOW"), "now");
}

TEST_F(Brackets, StandAroundEveryOperator) {
    EXPECT_EQ(Of("1 + 2 * 3 - 4 / 5"), "((1 + (2 * 3)) - (4 / 5))");
    EXPECT_EQ(Of("7 mod 2 & \"a\""), "((7 mod 2) & \"a\")");
    EXPECT_EQ(Of("- 5 + -5 - - now"), "(((- 5) + -5) - (- now))");
    EXPECT_EQ(Of("not 1 = 2 and true or false"), "(((not (1 = 2)) and true) or false)");
    EXPECT_EQ(Of("exists a * b as integer"), "(exists (a * (b as integer)))");
    EXPECT_EQ(Of("a otherwise b otherwise c"), "(a otherwise (b otherwise c))");
    EXPECT_EQ(Of("if true then 1 else if false then 2 else 3"),
              "(if true then 1 else (if false then 2 else 3))");
    EXPECT_EQ(Of("1, 2; 3, (4, 5)"), "((1, 2); (3, (4, 5)))");
}

TEST_F(Brackets, StandAroundEveryRelation) {
    for (std::string relation :
         {"=", "!=", "<", "<=", ">", ">=", "contains", "does not contain", "is contained by",
          "is not contained by", "starts with", "does not start with", "ends with", "does not end with"})
        EXPECT_EQ(Of("1 " + relation + " 2"), "(1 " + relation + " 2)");
    EXPECT_EQ(Of("1 is 2; 1 is not 2"), "((1 = 2); (1 != 2))");
}

TEST_F(Brackets, KeepAPhraseApartFromAnOperatorInWords) {
    EXPECT_EQ(Of("hour contains 1"), "((hour) contains 1)");
    EXPECT_EQ(Of("(hour) mod hour"), "((hour) mod hour)");
    EXPECT_EQ(Of("hour starts with 1"), "((hour) starts with 1)");
    EXPECT_EQ(Of("hour is contained by 1"), "(hour is contained by 1)");
    EXPECT_EQ(Of("hour by - 4"), "((hour by) - 4)");
}

TEST_F(Brackets, OfStepsAndConditions) {
    EXPECT_EQ(Of("(it, name of it) of files whose (size of it > 1) of f"),
              "((it, (name of it)) of (files whose ((size of it) > 1) of f))");
    EXPECT_EQ(Of("(files of f) whose (true) of g"), "((files of f) whose (true) of g)");
    EXPECT_EQ(Of("it whose (true)"), "((it) whose (true))");
    EXPECT_EQ(Of("(it) of (((now)))"), "((it) of now)");
}

TEST_F(Brackets, WriteTextsInTheLanguagesOwnEscapes) {
    EXPECT_EQ(Of("\"a\\\"\\\\\\/\\n\\r\\t\\b\\f\\u0000\\x7f\\xff\\u00e9\""),
              "\"a\\\"\\\\/\\n\\r\\t\\b\\f\\x00\\x7f\\xff\xC3\xA9\"");
}

// Every string literal of a C++ file, as the compiler reads it but for rare escapes.
std::set<std::string> LiteralsOf(std::filesystem::path const& file) {
    std::stringstream text;
    text << std::ifstream(file).rdbuf();
    std::string const code = text.str();
    std::set<std::string> literals;
    for (std::size_t at = 0; (at = code.find('"', at)) != std::string::npos; ++at) {
        std::string literal;
        for (++at; at < code.size() && code[at] != '"'; ++at) {
            if (code[at] == '\\') ++at;
            literal += code[at];
        }
        literals.insert(literal);
    }
    return literals;
}

TEST_F(Brackets, AreReadAsTheSameQuery) {
    std::size_t queries = 0;
    for (auto const& file : std::filesystem::directory_iterator(TESTS_FOLDER)) {
        if (file.path().extension() != ".cpp") continue;
        for (std::string const& query : LiteralsOf(file.path())) {
            std::string once;
            try {
                once = Of(query);
            } catch (SyntaxError const&) {
                continue;  // no query
            }
            EXPECT_EQ(Of(once), once) << query;
            ++queries;
        }
    }
    EXPECT_GT(queries, 500u);
}

}  // namespace
