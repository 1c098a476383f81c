// What queries mean, asked of the core and of the library made for the tests.

#include <gtest/gtest.h>

#include <thread>

#include "evaluator/Asking.h"

namespace {

class Language : public testing::Test {
  protected:
    static void SetUpTestSuite() { Evaluator::LoadInspectorLibrary(TestLibrary("TestInspectors")); }
    static void TearDownTestSuite() { Evaluator::UnloadInspectorLibrary("TestInspectors.dylib"); }
};

TEST_F(Language, Literals) {
    EXPECT_EQ(Answer("\"a\\tb\""), "a\tb");
    EXPECT_EQ(Answer("-9223372036854775808"), "-9223372036854775808");
    EXPECT_EQ(Answer("TRUE; false"), "true|false");
    EXPECT_EQ(Ask("\"a\\x00b\"").values[0], std::string("a\0b", 3));
}

TEST_F(Language, IntegerArithmetic) {
    EXPECT_EQ(Answer("2 + 3 * 4"), "14");
    EXPECT_EQ(Answer("(2 + 3) * 4"), "20");
    EXPECT_EQ(Answer("-7 / 2; -7 mod 2; 7 / -2; 7 mod -2"), "-3|-1|-3|1");
    EXPECT_EQ(Answer("-9223372036854775808 mod -1"), "0");
    EXPECT_EQ(Answer("- (3)"), "-3");
    std::string overflow = "error: the result is out of range\n";
    EXPECT_EQ(Ask("9223372036854775807 + 1").problems,
              overflow + "  9223372036854775807 + 1\n                      ^\n");
    for (char const* query : {"-9223372036854775808 - 1", "4611686018427387904 * 2",
                              "-9223372036854775808 / -1", "- (-9223372036854775808)"})
        EXPECT_EQ(Ask(query).problems.substr(0, overflow.size()), overflow) << query;
    EXPECT_EQ(Ask("1 / 0").problems, "error: division by zero\n  1 / 0\n    ^\n");
    EXPECT_EQ(Ask("1 mod 0").problems, "error: division by zero\n  1 mod 0\n    ^~~\n");
}

TEST_F(Language, Relations) {
    EXPECT_EQ(Answer("1 < 2; 2 < 1; 1 <= 1; 2 > 1; 1 >= 2; 1 = 1; 1 != 1; 1 is 1; 1 is not 1"),
              "true|false|true|true|false|true|false|true|false");
    EXPECT_EQ(Answer("\"B\" < \"a\"; \"a\" < \"aa\"; \"\\xff\" > \"z\"; \"a\" = \"A\""),
              "true|true|true|false");
    EXPECT_EQ(Answer("\"abc\" contains \"bc\"; \"abc\" starts with \"bc\"; \"abc\" ends with \"bc\""),
              "true|false|true");
    EXPECT_EQ(
        Answer(
            "\"b\" is contained by \"abc\"; \"abc\" does not contain \"x\"; \"a\" is not contained by \"b\""),
        "true|true|true");
    EXPECT_EQ(
        Answer("\"abc\" does not start with \"a\"; \"abc\" does not end with \"a\"; \"\" starts with \"\""),
        "false|true|true");
    EXPECT_EQ(Answer("true = true; true = false"), "true|false");
}

TEST_F(Language, Logic) {
    EXPECT_EQ(Answer("true and false; true or false; not true; not (1 = 2)"), "false|true|false|true");
    EXPECT_EQ(Answer("false and 1 / 0 = 1; true or 1 / 0 = 1"), "false|true");
    EXPECT_EQ(Answer("if 1 < 2 then \"a\" else \"b\""), "a");
    EXPECT_EQ(Answer("if false then 1 / 0 else 5"), "5");
}

TEST_F(Language, Texts) {
    EXPECT_EQ(Answer("\"a\" & \"b\" & \"\""), "ab");
    EXPECT_EQ(Answer("\"aZ\\u00e9\" as uppercase; \"aZ\\u00c9\" as lowercase"), "AZ\xC3\xA9|az\xC3\x89");
    EXPECT_EQ(Answer("12 as string & \"3\"; true as string"), "123|true");
    EXPECT_EQ(
        Answer("\"12x\" as integer otherwise 0; \"\" as integer otherwise 1; \" 1\" as integer otherwise 2"),
        "0|1|2");
    EXPECT_EQ(Answer("\"9223372036854775808\" as integer otherwise 0; \"-12\" as integer + 1"), "0|-11");
}

TEST_F(Language, Times) {
    EXPECT_EQ(Answer("now = now"), "true");
    EXPECT_EQ(Answer("now - now"), "00:00:00");
    EXPECT_EQ(Answer("time \"2026-11-20T12:00:00Z\" - time \"2026-11-20T13:00:00+01:00\""), "00:00:00");
    EXPECT_EQ(Answer("time \"2026-11-20\" - time \"2026-11-19T23:59:59.5\""), "00:00:00.500000");
    EXPECT_EQ(Answer("time \"2026-11-20\" + 3 * day - day * 3 = time \"2026-11-20\""), "true");
    EXPECT_EQ(Answer("day + time \"2026-11-20\" > time \"2026-11-20\"; week = 7 * day; hour < day"),
              "true|true|true");
    EXPECT_EQ(Answer("(- hour + second) mod minute; hour - 2 * hour; 90 * minute"),
              "00:00:01|-01:00:00|01:30:00");
    EXPECT_EQ(Answer("- (hour) / minute; (0 * hour - second) / day"), "-60|-1");
    EXPECT_EQ(Answer("time \"soon\" = now otherwise false"), "false");
    EXPECT_EQ(Ask("hour / (0 * hour)").problems.substr(0, 23), "error: division by zero");
}

TEST_F(Language, OneAndMany) {
    EXPECT_EQ(Answer("probes up to 3"), "probe probe 1|probe probe 2|probe probe 3");
    EXPECT_EQ(Answer("ids of probes up to 3"), "1|2|3");
    EXPECT_EQ(Answer("id of probe up to 1"), "1");
    EXPECT_EQ(Answer("id of probes up to 1"), "1");
    EXPECT_EQ(Ask("id of probes up to 2").problems,
              "error: more than one object\n  id of probes up to 2\n  ^~\n");
    EXPECT_EQ(Ask("probe up to 2").problems, "error: more than one object\n  probe up to 2\n  ^~~~~~~~~~~\n");
    EXPECT_EQ(Ask("probe up to 0").problems, "error: no such object\n  probe up to 0\n  ^~~~~~~~~~~\n");
    EXPECT_EQ(Ask("id of probes up to 0").problems, "error: no such object\n  id of probes up to 0\n  ^~\n");
    EXPECT_EQ(Answer("probes up to 0"), "");
    EXPECT_EQ(Answer("ids of probe 4"), "4");
    EXPECT_EQ(Answer("probes 4"), "probe probe 4");
}

TEST_F(Language, NumberTakesThePluralWhole) {
    EXPECT_EQ(Answer("number of probes up to 5"), "5");
    EXPECT_EQ(Answer("number of probes up to 0"), "0");
    EXPECT_EQ(Answer("number of probe 3"), "1");
    EXPECT_EQ(Answer("number of (1; 2; 3)"), "3");
    EXPECT_EQ(Answer("(number of probes up to (id of it)) of probes up to 3"), "1|2|3");
    EXPECT_EQ(Ask("number").problems,
              "error: \"number\" of what?\n  number\n  ^~~~~~\n  hint: number of files of folder \"/etc\"\n");
    EXPECT_EQ(Ask("number 2 of (1; 2)").problems,
              "error: \"number\" takes no index\n  number 2 of (1; 2)\n         ^\n");
}

TEST_F(Language, Whose) {
    EXPECT_EQ(Answer("ids of probes up to 6 whose (id of it mod 2 = 0)"), "2|4|6");
    EXPECT_EQ(Answer("(ids of probes up to 6) whose (it > 4)"), "5|6");
    EXPECT_EQ(Answer("(1; 2; 3) whose (it > 1) whose (true)").substr(0, 6), "error:");
    EXPECT_EQ(Answer("((1; 2; 3) whose (it > 1)) whose (it < 3)"), "2");
    EXPECT_EQ(Answer("ids of probes up to 4 whose (exists (probes up to (id of it)) whose (id of it = 3))"),
              "3|4");
    EXPECT_EQ(Ask("id whose (it = 1) of probe 1").problems,
              "error: \"whose\" filters many, and this is one value\n"
              "  id whose (it = 1) of probe 1\n"
              "  ^~\n"
              "  hint: to filter a longer chain, put it in parentheses: (files of folders of …) whose (…)\n");
    EXPECT_EQ(Ask("probes up to 3 whose (id of it)").problems,
              "error: a boolean is wanted here, and this is an integer\n"
              "  probes up to 3 whose (id of it)\n"
              "                        ^~~~~~~~\n");
}

TEST_F(Language, ItAndStepsInParentheses) {
    EXPECT_EQ(Answer("(it + 1) of (1; 2)"), "2|3");
    EXPECT_EQ(Answer("(it; it) of (1; 2)"), "1|1|2|2");
    EXPECT_EQ(Answer("((it * 10) of it) of (1; 2)"), "10|20");
    EXPECT_EQ(Answer("(id of probe (it)) of (5; 6)"), "5|6");
    EXPECT_EQ(Answer("(id of it, name of it) of probes up to 2"), "1, probe 1|2, probe 2");
    EXPECT_EQ(Answer("(ids of probes up to (it)) of (2; 3)"), "1|2|1|2|3");
    EXPECT_EQ(Answer("(ids of probes up to (it)) whose (it = 2) of (2; 3)"), "2|2");
    EXPECT_EQ(Answer("(it = 3) of 3"), "true");
    EXPECT_EQ(
        Ask("it").problems,
        "error: \"it\" stands for nothing here\n"
        "  it\n"
        "  ^~\n"
        "  hint: it is the value at hand inside \"whose (…)\" and inside a parenthesis before \"of\"\n");
}

TEST_F(Language, TuplesCombineTheirFieldsTheLastFastest) {
    EXPECT_EQ(Answer("1, \"a\""), "1, a");
    EXPECT_EQ(Answer("((1; 2), (\"a\"; \"b\"))"), "1, a|1, b|2, a|2, b");
    EXPECT_EQ(Answer("1, (2, 3)"), "1, (2, 3)");
    EXPECT_EQ(Answer("(1, probes up to 0)"), "");
    EXPECT_EQ(Answer("(1, odd text of it) of probes up to 3"), "1, odd|1, odd");
    EXPECT_EQ(Ask("(1, 2) + 1").problems,
              "error: there is no \"+\" of a tuple and an integer\n  (1, 2) + 1\n         ^\n");
    EXPECT_EQ(Ask("probe (1, 2)").problems, "error: a tuple is no index\n  probe (1, 2)\n         ^~~~\n");
    EXPECT_EQ(Ask("id of (1, 2)").problems,
              "error: a tuple has no properties\n  id of (1, 2)\n  ^~\n  hint: ask its fields instead, in a "
              "step in parentheses\n");
}

TEST_F(Language, CollectionsHaveOneType) {
    EXPECT_EQ(Answer("1; 2; 3"), "1|2|3");
    EXPECT_EQ(Answer("probes up to 2; special probe 7"), "probe probe 1|probe probe 2|special probe probe 7");
    EXPECT_EQ(Ask("1; \"a\"").problems,
              "error: an integer and a string have no type in common\n  1; \"a\"\n     ^~~\n");
    Outcome outcome = Ask("1; id of absent of probe 1; 2");
    EXPECT_EQ(outcome.values, std::vector<std::string>{"1"});
    EXPECT_EQ(outcome.problems.substr(0, 21), "error: no such object");
}

TEST_F(Language, Exists) {
    EXPECT_EQ(Answer("exists probe 1; exists absent of probe 1; not exists probe 1"), "true|false|false");
    EXPECT_EQ(Answer("exists probes up to 0; exists probes up to 1000000000"), "false|true");
    EXPECT_EQ(Answer("exists id of probes up to 3"), "true");
    EXPECT_EQ(Answer("exists id of id of probe 1").substr(0, 6), "error:");
    EXPECT_EQ(Answer("exists (absent of probe 1; probe 1)"), "true");
    EXPECT_EQ(Ask("exists broken of probe 1").problems.substr(0, 23), "error: \"broken\" failed:");
    EXPECT_EQ(Answer("exists probe 1 = true"), "true");
}

TEST_F(Language, Otherwise) {
    EXPECT_EQ(Answer("id of absent of probe 1 otherwise 5"), "5");
    EXPECT_EQ(Answer("ids of probes up to 0 otherwise 5; ids of probes up to 2 otherwise 5"), "5|1|2");
    EXPECT_EQ(
        Ask("1 otherwise \"a\"").problems,
        "error: an integer and a string have no type in common\n  1 otherwise \"a\"\n              ^~~\n");
}

TEST_F(Language, Casts) {
    EXPECT_EQ(Answer("ids of probes up to 2 as string"), "1|2");
    EXPECT_EQ(Answer("exists (ids of probes up to 2 as string) whose (it = \"2\")"), "true");
    EXPECT_EQ(Ask("1 as strnig").problems,
              "error: an integer has no cast \"strnig\"\n  1 as strnig\n       ^~~~~~\n  hint: \"string\" is "
              "one\n");
    EXPECT_EQ(Ask("\"a\" as string").problems,
              "error: this is a string already\n  \"a\" as string\n         ^~~~~~\n");
}

TEST_F(Language, NegativeIndexOfANumberedProperty) {
    EXPECT_EQ(Answer("probe (-1) of 1").substr(0, 6), "error:");
    EXPECT_EQ(Ask("probe (-1)").problems, "error: no such object\n  probe (-1)\n  ^~~~~\n");
}

TEST_F(Language, UnknownPhrasesGetSuggestions) {
    EXPECT_EQ(Ask("naem of probe 1").problems,
              "error: a probe has no property \"naem\"\n"
              "  naem of probe 1\n"
              "  ^~~~\n"
              "  hint: \"name\" is one; so are \"part\" and \"id\"\n");
    EXPECT_EQ(Ask("extra of probe 1").problems,
              "error: a probe has no property \"extra\"\n"
              "  extra of probe 1\n"
              "  ^~~~~\n"
              "  hint: it is a property of a special probe\n");
    EXPECT_EQ(Ask("extra").problems,
              "error: \"extra\" of what?\n  extra\n  ^~~~~\n  hint: it is a property of a special probe\n");
    EXPECT_EQ(Ask("prob 1").problems.substr(0, 53),
              "error: the world has no property \"prob\" with an integ");
    EXPECT_EQ(Ask("id \"x\" of probe 1").problems,
              "error: \"id\" of a probe takes no index\n  id \"x\" of probe 1\n  ^~\n");
    EXPECT_EQ(Ask("probe").problems,
              "error: \"probe\" of the world takes an integer as index\n  probe\n  ^~~~~\n");
    EXPECT_EQ(Ask("name of things gone wrong").problems.substr(0, 53),
              "error: the world has no property \"things gone wrong\"\n");
}

TEST_F(Language, APluralWhereOneIsWantedIsAnErrorWithAHint) {
    EXPECT_EQ(Ask("ids of probes up to 2 = 1").problems,
              "error: one value is wanted here, and this may be any number of them\n"
              "  ids of probes up to 2 = 1\n"
              "  ^~~~~~~~~~~~~~~~~~~~~\n"
              "  hint: \"id\" is the singular\n");
    EXPECT_EQ(Ask("not (true; false)").problems,
              "error: one value is wanted here, and this may be any number of them\n"
              "  not (true; false)\n"
              "      ^~~~~~~~~~~~~\n"
              "  hint: ask whether there is one: exists … whose (…)\n");
}

TEST_F(Language, SeveralProblemsAreReportedTogetherUpToFive) {
    std::string problems = Ask("(aa1; aa2; aa3; aa4; aa5; aa6)").problems;
    std::size_t count = 0;
    for (std::size_t at = problems.find("error:"); at != std::string::npos;
         at = problems.find("error:", at + 1))
        ++count;
    EXPECT_EQ(count, 5u);
}

TEST_F(Language, QueriesTellTheirTypeAndWhetherTheyArePlural) {
    auto about = [](char const* text) {
        auto compiled = Evaluator::Query::Compile(text);
        return compiled.query->TypeName() + (compiled.query->IsPlural() ? " plural" : " singular");
    };
    EXPECT_EQ(about("1"), "integer singular");
    EXPECT_EQ(about("1; 2"), "integer plural");
    EXPECT_EQ(about("name of probe 1, 2"), "(string, integer) singular");
    EXPECT_EQ(about("name of probes up to 1"), "string singular");
    EXPECT_EQ(about("names of probe 1"), "string plural");
    EXPECT_EQ(about("(name of it) of probes up to 1"), "string plural");
    EXPECT_EQ(about("probe 1; special probe 1"), "probe plural");
    EXPECT_EQ(about("if true then 1 else (1; 2)"), "integer plural");
}

TEST_F(Language, ASecondThreadWaitsForTheFirst) {
    auto compiled = Evaluator::Query::Compile("probes up to 3");
    std::string other;
    std::thread thread;
    std::vector<std::string> values;
    compiled.query->Run([&](Evaluator::Result const& result) {
        if (!thread.joinable()) thread = std::thread([&] { other = Answer("1 + 1"); });
        EXPECT_EQ(other, "");
        values.push_back(result.Text());
        return true;
    });
    thread.join();
    EXPECT_EQ(values.size(), 3u);
    EXPECT_EQ(other, "2");
}

TEST_F(Language, AValueThatHoldsAnotherManyTimesOverReachesALimit) {
    std::string query = "1";
    for (int i = 0; i < 60; ++i) query = "(it, it) of (" + query + ")";
    Evaluator::RunOptions options;
    options.limits.textBytes = 1'000'000;
    EXPECT_EQ(Ask(query, options).problems.substr(0, 62),
              "error: the text of a tuple is longer than 1000000 bytes\n  (it,");
}

TEST_F(Language, APhraseAsLongAsAQueryIsShortened) {
    std::string message = Ask(std::string(1000000, 'z') + " of 1").problems;
    EXPECT_LT(message.size(), 1000u);
    EXPECT_EQ(message.substr(0, 44), "error: an integer has no property \"zzzzzzzzz");
}

}  // namespace
