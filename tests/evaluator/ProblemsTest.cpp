#include <gtest/gtest.h>

#include "Evaluator/Embedding.h"
#include "language/Printable.h"
#include "language/Suggestions.h"

using namespace Evaluator;

namespace {

TEST(Problems, ShowTheLineWithACaretAndAHint) {
    Problem problem{ProblemKind::meaning, {0, 4}, "a file has no property \"naem\"", "\"name\" is one"};
    EXPECT_EQ(Render(problem, "naem of file \"/etc/hosts\""),
              "error: a file has no property \"naem\"\n"
              "  naem of file \"/etc/hosts\"\n"
              "  ^~~~\n"
              "  hint: \"name\" is one\n");
}

TEST(Problems, ShowOnlyTheLineMeant) {
    Problem problem{ProblemKind::meaning, {6, 20}, "wrong", ""};
    EXPECT_EQ(Render(problem, "one\nx two three\nfour five"),
              "error: wrong\n"
              "  x two three\n"
              "    ^~~~~~~~~\n");
}

TEST(Problems, ShowControlCharactersEscapedAndKeepTheCaretInPlace) {
    Problem problem{ProblemKind::meaning, {4, 5}, "bad \x1B[31m", ""};
    EXPECT_EQ(Render(problem,
                     "\t\x1B"
                     "ab c"),
              "error: bad \\x1B[31m\n"
              "  \\t\\x1Bab c\n"
              "          ^\n");
    problem.range = {3, 4};
    EXPECT_EQ(Render(problem, "\xC3\xA9 x"), "error: bad \\x1B[31m\n  \xC3\xA9 x\n    ^\n");
}

TEST(Problems, RangesBeyondTheTextAreClamped) {
    Problem problem{ProblemKind::meaning, {50, 90}, "wrong", ""};
    EXPECT_EQ(Render(problem, "one"), "error: wrong\n  one\n     ^\n");
}

TEST(Problems, ShowAPartOfALongLine) {
    std::string query(1000, 'a');
    query.replace(500, 3, "bcd");
    EXPECT_EQ(Render({ProblemKind::meaning, {500, 503}, "wrong", ""}, query),
              "error: wrong\n  " + std::string(60, 'a') + "bcd" + std::string(97, 'a') + "\n  " +
                  std::string(60, ' ') + "^~~\n");
}

TEST(Problems, ThoseOfLibrariesHaveNoLine) {
    EXPECT_EQ(Render({ProblemKind::library, {}, "cannot load", ""}, "query"), "error: cannot load\n");
}

TEST(Printable, EscapesWhatATerminalWouldObey) {
    EXPECT_EQ(Printable("a\tb\nc\rd\x7F\xFF"), "a\\tb\\nc\\rd\\x7F\\xFF");
    EXPECT_EQ(Printable("\xC2\x85"), "\\xC2\\x85");
    EXPECT_EQ(Printable("\xE2\x82\xAC \xF0\x9F\x98\x80"), "\xE2\x82\xAC \xF0\x9F\x98\x80");
    EXPECT_EQ(Printable("\xED\xA0\x80"), "\\xED\\xA0\\x80");
    EXPECT_EQ(Columns("\xE2\x82\xAC"
                      "a"),
              2u);
}

TEST(Problems, PointBehindTheLastThingThatIsThere) {
    Problem problem{ProblemKind::syntax, {7, 7}, "missing", ""};
    EXPECT_EQ(Render(problem, "id of \n"), "error: missing\n  id of \n       ^\n");
}

TEST(Suggestions, AreTheNearestInOrderOnePhraseOfEachThing) {
    Suggestion const name{{"name", "names"}}, size{{"size", "sizes"}}, type{{"type", "types"}};
    EXPECT_EQ(SuggestNearest("naem", {name, size, type, {{"creator", "creators"}}}, 3),
              "\"name\" is one; so are \"size\" and \"type\"");
    EXPECT_EQ(SuggestNearest("naem", {name, size}, 1), "\"name\" is one");
    EXPECT_EQ(SuggestNearest("naems", {name}, 3), "\"names\" is one");
    EXPECT_EQ(SuggestNearest("sise", {size, {{"site"}}}, 3), "\"site\" is one; so is \"size\"");
    EXPECT_EQ(SuggestNearest("sise", {size, {{"site"}, false}}, 3), "\"size\" is one; so is \"site\"");
    EXPECT_EQ(SuggestNearest("zzzz", {}, 3), "");
    EXPECT_EQ(SuggestNearest(std::string(1000000, 'z'), {name}, 3), "");
}

}  // namespace
