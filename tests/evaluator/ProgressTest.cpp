// How far an evaluation has come, as another thread may see it.

#include <gtest/gtest.h>

#include <optional>
#include <thread>

#include "evaluator/Asking.h"
#include "support/TemporaryFolder.h"

namespace {

using Evaluator::Progress;
using Evaluator::Result;

class ProgressTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(Messages(Evaluator::LoadInspectors(Evaluator::StandardInspectorsFolder())), "");
    }
    void TearDown() override {
        for (std::string const& name : Evaluator::LoadedLibraries())
            EXPECT_FALSE(Evaluator::UnloadInspectorLibrary(name));
    }
    std::optional<Evaluator::Problem> Run(std::string_view text, Evaluator::Consumer const& consumer = {}) {
        Evaluator::RunOptions options;
        options.progress = &progress;
        options.cancellation = &cancellation;
        return Evaluator::Query::Compile(text).query->Run(consumer, options);
    }
    Progress progress;
    Evaluator::Cancellation cancellation;
};

TEST_F(ProgressTest, IsZeroBeforeAnyRun) {
    EXPECT_EQ(progress.Values(), 0u);
    EXPECT_EQ(progress.Items(), 0u);
}

TEST_F(ProgressTest, CountsTheValuesThatTheConsumerGets) {
    std::uint64_t given = 0;
    Run("(1; 2; 3; 4) whose (it > 1)", [&](Result const&) {
        EXPECT_EQ(progress.Values(), ++given);
        return true;
    });
    EXPECT_EQ(progress.Values(), 3u);
    Run("1; 2; 3", [](Result const& value) { return value.Number() < 2; });
    EXPECT_EQ(progress.Values(), 2u);
    Run("1; 2; 3");
    EXPECT_EQ(progress.Values(), 3u);
    EXPECT_EQ(progress.Items(), 0u);
}

// How many items it takes to find one is the platform's affair.
TEST_F(ProgressTest, CountsTheItemsThatAreLookedUp) {
    Run("exists file \"/etc/hosts\"");
    std::uint64_t const one = progress.Items();
    EXPECT_GE(one, 1u);
    Run("exists file \"/etc/hosts\"; exists file \"/etc/passwd\"; exists file \"/etc/group\"");
    EXPECT_EQ(progress.Items(), 3 * one);
    Run("number of (file \"/etc/hosts\"; file \"/etc/no-such-file\")");
    EXPECT_GT(progress.Items(), one);
}

TEST_F(ProgressTest, CountsEveryItemOfAListing) {
    TemporaryFolder folder;
    std::string const query = "number of items of folder \"" + folder.Path() + "\"";
    Run(query);
    std::uint64_t const empty = progress.Items();
    for (int i = 0; i < 20; ++i) folder.Write(std::to_string(i));
    Run(query);
    EXPECT_EQ(progress.Items(), empty + 20);
}

TEST_F(ProgressTest, ALookUpThatIsRefusedDoesNotCount) {
    auto problem = Run("1; (1; 2) whose (exists file \"/etc/hosts\")", [&](Result const&) {
        cancellation.Request();
        return true;
    });
    EXPECT_EQ(problem->kind, Evaluator::ProblemKind::cancelled);
    EXPECT_EQ(progress.Values(), 1u);
    EXPECT_EQ(progress.Items(), 0u);
}

TEST_F(ProgressTest, EachRunBeginsAtZero) {
    Run("exists file \"/etc/hosts\"; exists folder \"/etc\"");
    EXPECT_EQ(progress.Values(), 2u);
    EXPECT_NE(progress.Items(), 0u);
    Run("1");
    EXPECT_EQ(progress.Values(), 1u);
    EXPECT_EQ(progress.Items(), 0u);
    Run("2 / 0");
    EXPECT_EQ(progress.Values(), 0u);
}

// The evaluation goes on until the other thread has seen both move.
TEST_F(ProgressTest, AnotherThreadReadsMeanwhile) {
    std::thread other([&] {
        while (progress.Values() < 1000 || progress.Items() < 1000) std::this_thread::yield();
        cancellation.Request();
    });
    auto problem = Run("(integers up to 1000000000) whose (not exists file (\"/no such \" & it as string))");
    other.join();
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->kind, Evaluator::ProblemKind::cancelled);
    EXPECT_GE(progress.Values(), 1000u);
    EXPECT_GE(progress.Items(), progress.Values());
}

}  // namespace
