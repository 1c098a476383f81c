// What a program learns of a value without reading its text.

#include <gtest/gtest.h>

#include "evaluator/Asking.h"

namespace {

using Evaluator::Result;
using Evaluator::ValueKind;

std::vector<std::shared_ptr<Result const>> ResultsOf(std::string_view query) {
    std::vector<std::shared_ptr<Result const>> results;
    auto compiled = Evaluator::Query::Compile(query);
    if (compiled.query)
        compiled.query->Run([&](Result const& result) {
            results.push_back(result.Keep());
            return true;
        });
    return results;
}

TEST(Results, TellTheirKindAndValue) {
    struct Row {
        char const* query;
        ValueKind kind;
        std::int64_t number;
        char const *text, *type;
    };
    for (Row const& row : {
             Row{"-9223372036854775808", ValueKind::integer, INT64_MIN, "-9223372036854775808", "integer"},
             Row{"true", ValueKind::boolean, 1, "true", "boolean"},
             Row{"1 = 2", ValueKind::boolean, 0, "false", "boolean"},
             Row{"\"a\\xff\"", ValueKind::string, 0, "a\xff", "string"},
             Row{"time \"1970-01-02T00:00:00.000007Z\"", ValueKind::time, 86'400'000'007,
                 "1970-01-02T00:00:00.000007+00:00", "time"},
             Row{"-2 * hour", ValueKind::interval, -7'200'000'000, "-02:00:00", "time interval"},
         }) {
        auto results = ResultsOf(row.query);
        ASSERT_EQ(results.size(), 1u) << row.query;
        EXPECT_EQ(results[0]->Kind(), row.kind) << row.query;
        EXPECT_EQ(results[0]->Number(), row.number) << row.query;
        EXPECT_EQ(results[0]->Text(), row.text) << row.query;
        EXPECT_EQ(results[0]->TypeName(), row.type) << row.query;
        EXPECT_TRUE(results[0]->Fields().empty()) << row.query;
    }
}

TEST(Results, ATupleHasItsFields) {
    auto results = ResultsOf("(1, (true, \"x\"))");
    ASSERT_EQ(results.size(), 1u);
    Result const& tuple = *results[0];
    EXPECT_EQ(tuple.Kind(), ValueKind::tuple);
    EXPECT_EQ(tuple.Text(), "1, (true, x)");
    EXPECT_EQ(tuple.TypeName(), "(integer, (boolean, string))");
    ASSERT_EQ(tuple.Fields().size(), 2u);
    EXPECT_EQ(tuple.Fields()[0].Number(), 1);
    EXPECT_EQ(tuple.Fields()[1].Kind(), ValueKind::tuple);
    EXPECT_EQ(tuple.Fields()[1].Fields()[1].Text(), "x");
    EXPECT_EQ(tuple.Fields()[1].Fields()[1].TypeName(), "string");
}

TEST(Results, AValueOfALibrarysTypeIsOther) {
    ASSERT_EQ(Messages(Evaluator::LoadInspectorLibrary(TestLibrary("TestInspectors"))), "");
    {
        auto results = ResultsOf("probe 7; special probe 8");
        ASSERT_EQ(results.size(), 2u);
        EXPECT_EQ(results[0]->Kind(), ValueKind::other);
        EXPECT_EQ(results[0]->Text(), "probe probe 7");
        EXPECT_EQ(results[1]->TypeName(), "special probe");
    }
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("TestInspectors.dylib"));
}

TEST(Results, AFieldCanBeKept) {
    std::shared_ptr<Result const> field;
    auto compiled = Evaluator::Query::Compile("(1, \"two\")");
    ASSERT_TRUE(compiled.query);
    compiled.query->Run([&](Result const& result) {
        field = result.Fields()[1].Keep();
        return true;
    });
    compiled.query.reset();
    EXPECT_EQ(field->Text(), "two");
}

TEST(Results, TheWholeVocabularyHoldsTheCore) {
    auto all = Evaluator::AllRegistrations();
    EXPECT_TRUE(std::any_of(all.begin(), all.end(),
                            [](auto const& one) { return one.library == "core" && one.singular == "now"; }));
    EXPECT_TRUE(Evaluator::Registrations().empty());
}

TEST(Results, ProblemsHaveNamesOfTheirKinds) {
    using Evaluator::ProblemKind;
    EXPECT_EQ(NameOf(ProblemKind::syntax), "syntax");
    EXPECT_EQ(NameOf(ProblemKind::meaning), "meaning");
    EXPECT_EQ(NameOf(ProblemKind::evaluation), "evaluation");
    EXPECT_EQ(NameOf(ProblemKind::limit), "limit");
    EXPECT_EQ(NameOf(ProblemKind::cancelled), "cancelled");
    EXPECT_EQ(NameOf(ProblemKind::library), "library");
}

}  // namespace
