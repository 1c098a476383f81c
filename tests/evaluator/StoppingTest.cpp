// Time limits and cancellation, with inspectors that do their best to prevent them.

#include <atomic>
#include <chrono>
#include <csignal>
#include <mutex>
#include <thread>

#include "Evaluator/Context.h"
#include "evaluator/NastyTest.h"

namespace {

using namespace std::chrono_literals;

class Stopping : public NastyTest {};

Evaluator::RunOptions Within(std::chrono::nanoseconds time) {
    Evaluator::RunOptions options;
    options.limits.time = time;
    return options;
}

std::string TimeIsUp(std::string const& query, std::string const& caret) {
    return "error: the time limit of 0.05 s was reached\n  " + query + "\n  " + caret +
           "\n  hint: allow more time, or ask for less\n";
}

TEST_F(Stopping, TheTimeLimitEndsWhatNeverEnds) {
    auto compiled = Evaluator::Query::Compile("rounds");
    ASSERT_TRUE(compiled.query);
    auto problem = compiled.query->Run([](Evaluator::Result const&) { return true; }, Within(50ms));
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->kind, Evaluator::ProblemKind::limit);
    EXPECT_EQ(problem->message, "the time limit of 0.05 s was reached");
    EXPECT_EQ(problem->range, (Evaluator::Range{0, 6}));
}

TEST_F(Stopping, AnInspectorThatGivesTimeIsStopped) {
    EXPECT_EQ(Ask("patience of trouble 1", Within(50ms)).problems,
              TimeIsUp("patience of trouble 1", "^~~~~~~~"));
    EXPECT_EQ(Ask("yielding of trouble 1", Within(50ms)).problems,
              TimeIsUp("yielding of trouble 1", "^~~~~~~~"));
}

// It answers "no such object", or a value, and is not believed: not in a plural, not under exists or
// otherwise.
TEST_F(Stopping, TheAnswerOfAnInspectorThatWasStoppedIsNotBelieved) {
    EXPECT_EQ(Ask("denial of trouble 1", Within(50ms)).problems, TimeIsUp("denial of trouble 1", "^~~~~~"));
    EXPECT_EQ(Ask("excuse of trouble 1", Within(50ms)),
              (Outcome{{}, TimeIsUp("excuse of trouble 1", "^~~~~~")}));
    EXPECT_EQ(Ask("exists denial of trouble 1", Within(50ms)),
              (Outcome{{}, TimeIsUp("exists denial of trouble 1", "       ^~~~~~")}));
    EXPECT_EQ(Ask("denial of trouble 1 otherwise 3", Within(50ms)),
              (Outcome{{}, TimeIsUp("denial of trouble 1 otherwise 3", "^~~~~~")}));
    EXPECT_EQ(Ask("denials of rounds", Within(50ms)),
              (Outcome{{}, TimeIsUp("denials of rounds", "^~~~~~~")}));
}

TEST_F(Stopping, AnInspectorThatSwallowsEveryExceptionIsGivenUp) {
    EXPECT_EQ(Ask("deafness of trouble 1", Within(50ms)).problems,
              TimeIsUp("deafness of trouble 1", "^~~~~~~~"));
    EXPECT_EQ(Ask("nevers", Within(50ms)).problems, TimeIsUp("nevers", "^~~~~~"));
}

// Wherever the answer was to be put, it ends before what it points into.
TEST_F(Stopping, AnAnswerThatIsNotBelievedEndsBeforeItsObject) {
    for (std::string query :
         {"late shadow of trouble 1", "late shadows of rounds", "(late shadows of rounds) whose (true)",
          "(later shadows of trouble 1) whose (true)",
          "number of (later shadows of rounds; late shadows of rounds)",
          "(1, (late shadows of rounds) whose (true))", "exists (late shadow of it) of rounds",
          "last values 3 of (late shadows of it) of rounds"})
        EXPECT_EQ(Ask(query, Within(50ms)).problems.substr(0, 44),
                  "error: the time limit of 0.05 s was reached\n")
            << query;
    EXPECT_EQ(Answer("orphaned shadow"), "0");
}

TEST_F(Stopping, AnInspectorThatLooksThingsUpForEverIsStopped) {
    EXPECT_EQ(Ask("search of trouble 1", Within(50ms)).problems, TimeIsUp("search of trouble 1", "^~~~~~"));
}

TEST_F(Stopping, ADestroyThatGivesTimeForEverIsGivenUp) {
    EXPECT_EQ(Ask("exists lingerer of trouble 1", Within(50ms)).problems.substr(0, 44),
              "error: the time limit of 0.05 s was reached\n");
}

TEST_F(Stopping, ATimeLimitThatIsNotReachedIsNoProblem) {
    EXPECT_EQ(Ask("kinds of (trouble 1; trouble 2)", Within(1h)), (Outcome{{"1", "2"}, ""}));
    EXPECT_EQ(Ask("kind of trouble 1", Within(std::chrono::nanoseconds::max())), (Outcome{{"1"}, ""}));
}

TEST_F(Stopping, ACancellationEndsTheEvaluationFromAnotherThread) {
    for (std::string query :
         {"rounds", "patience of trouble 1", "deafness of trouble 1", "search of trouble 1",
          "number of rounds", "exists rounds whose (kind of it < 0)"}) {
        Evaluator::Cancellation cancellation;
        Evaluator::RunOptions options;
        options.cancellation = &cancellation;
        auto compiled = Evaluator::Query::Compile(query);
        ASSERT_TRUE(compiled.query) << query;
        std::thread other([&] {
            std::this_thread::sleep_for(30ms);
            cancellation.Request();
        });
        auto problem = compiled.query->Run({}, options);
        other.join();
        ASSERT_TRUE(problem) << query;
        EXPECT_EQ(problem->kind, Evaluator::ProblemKind::cancelled) << query;
        EXPECT_EQ(problem->message, "the evaluation was cancelled") << query;
        cancellation.Clear();
        EXPECT_EQ(Ask("kind of trouble 3", options), (Outcome{{"3"}, ""}));
    }
}

TEST_F(Stopping, ACancellationBeforeTheStartLeavesNoValues) {
    Evaluator::Cancellation cancellation;
    cancellation.Request();
    Evaluator::RunOptions options;
    options.cancellation = &cancellation;
    EXPECT_EQ(Ask("1 + 1", options), (Outcome{{}, "error: the evaluation was cancelled\n  1 + 1\n    ^\n"}));
    EXPECT_EQ(Ask("kinds of rounds", options),
              (Outcome{{}, "error: the evaluation was cancelled\n  kinds of rounds\n           ^~~~~~\n"}));
}

TEST_F(Stopping, ACancellationWorksFromASignalHandler) {
    static Evaluator::Cancellation cancellation;
    struct sigaction mine {
    }, before{};
    mine.sa_handler = [](int) { cancellation.Request(); };
    ASSERT_EQ(sigaction(SIGUSR1, &mine, &before), 0);
    Evaluator::RunOptions options;
    options.cancellation = &cancellation;
    pthread_t self = pthread_self();
    std::thread other([&] {
        std::this_thread::sleep_for(30ms);
        pthread_kill(self, SIGUSR1);
    });
    EXPECT_EQ(Ask("patience of trouble 1", options).problems,
              "error: the evaluation was cancelled\n  patience of trouble 1\n  ^~~~~~~~\n");
    other.join();
    sigaction(SIGUSR1, &before, nullptr);
}

TEST_F(Stopping, AConsumerMayCancel) {
    Evaluator::Cancellation cancellation;
    Evaluator::RunOptions options;
    options.cancellation = &cancellation;
    auto compiled = Evaluator::Query::Compile("kinds of rounds");
    ASSERT_TRUE(compiled.query);
    long values = 0;
    auto problem = compiled.query->Run(
        [&](Evaluator::Result const&) {
            if (++values == 3) cancellation.Request();
            return true;
        },
        options);
    ASSERT_TRUE(problem);
    EXPECT_EQ(values, 3);
}

// A thread that waits for another's evaluation can be told to wait no longer.
TEST_F(Stopping, WaitingForAnotherEvaluationEndsToo) {
    Evaluator::Cancellation first, second;
    std::mutex started;
    started.lock();
    std::thread other([&] {
        Evaluator::RunOptions options;
        options.cancellation = &first;
        bool told = false;
        auto compiled = Evaluator::Query::Compile("rounds");
        compiled.query->Run(
            [&](Evaluator::Result const&) {
                if (!std::exchange(told, true)) started.unlock();
                return true;
            },
            options);
    });
    started.lock();
    auto compiled = Evaluator::Query::Compile("kind of trouble 1");  // waits for nobody
    second.Request();
    Evaluator::RunOptions options;
    options.cancellation = &second;
    auto problem = compiled.query->Run({}, options);
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->message, "the evaluation was cancelled");
    problem = compiled.query->Run({}, Within(20ms));
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->message, "the time limit was reached while another query was being evaluated");
    first.Request();
    other.join();
}

}  // namespace
