// Inspectors that exhaust the stack end their evaluation and nothing else.

#include <pthread.h>
#include <sys/resource.h>

#include <chrono>
#include <csetjmp>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "evaluator/NastyTest.h"

namespace {

class Stack : public NastyTest {};

std::string RanOut(std::string const& query, std::string const& caret, std::size_t limit = 8 << 20) {
    return "error: the evaluation ran out of stack\n  " + query + "\n  " + caret + "\n  hint: its limit is " +
           std::to_string(limit) + " bytes, and what is marked here recurses deeper\n";
}

Evaluator::RunOptions AtOnce() {
    Evaluator::RunOptions options;
    options.limits.time = std::chrono::milliseconds(1);
    return options;
}

TEST_F(Stack, EndlessRecursionEndsTheEvaluationWithAnError) {
    EXPECT_EQ(Ask("small frame of trouble 1").problems, RanOut("small frame of trouble 1", "^~~~~~~~~~~"));
}

TEST_F(Stack, TheGuardIsWiderThanLargeFrames) {
    EXPECT_EQ(Ask("large frame of trouble 1").problems, RanOut("large frame of trouble 1", "^~~~~~~~~~~"));
}

// The stack ends inside the C library's memory functions, which hold locks once a process has had a second
// thread.
TEST_F(Stack, TheCLibraryIsNotLeftInTheMidstOfThings) {
    std::thread([] {}).join();
    for (int i = 0; i < 5; ++i)
        ASSERT_EQ(Ask("text frame of trouble 1").problems, RanOut("text frame of trouble 1", "^~~~~~~~~~"));
}

TEST_F(Stack, InspectorMemoryOfARecursionIsFreed) {
    EXPECT_EQ(Ask("memory frame of trouble 1").problems, RanOut("memory frame of trouble 1", "^~~~~~~~~~~~"));
    Evaluator::RunOptions options;
    options.limits.inspectorMemory = 10'000;  // nothing of it counts any more
    EXPECT_EQ(Ask("exists memory 9000", options), (Outcome{{"true"}, ""}));
}

TEST_F(Stack, ExceptionsThatWereBeingHandledAreForgotten) {
    EXPECT_EQ(Ask("handler frame of trouble 2").problems,
              RanOut("handler frame of trouble 2", "^~~~~~~~~~~~~"));
    EXPECT_EQ(std::uncaught_exceptions(), 0);
    EXPECT_FALSE(std::current_exception());
    EXPECT_LE(std::stol(Answer("living exception")), 1);  // one may have been on its way
}

TEST_F(Stack, ExceptionsThatRecurseWhenTheyEndAreForgottenToo) {
    EXPECT_EQ(Ask("handler frame of trouble 1").problems,
              RanOut("handler frame of trouble 1", "^~~~~~~~~~~~~"));
    EXPECT_LE(std::stol(Answer("living exception")), 1);
}

// The caller's own exceptions are none of those.
TEST_F(Stack, AnExceptionThatTheCallerHandlesStays) {
    try {
        throw 42;
    } catch (int) {
        EXPECT_EQ(Ask("handler frame of trouble 1").problems,
                  RanOut("handler frame of trouble 1", "^~~~~~~~~~~~~"));
        EXPECT_EQ(Ask("exists abyss of trouble 1").values.size(), 0u);
        EXPECT_TRUE(std::current_exception());
        EXPECT_THROW(throw, int);
    }
    EXPECT_FALSE(std::current_exception());
}

TEST_F(Stack, ValuesThatWereDeliveredStay) {
    Outcome outcome = Ask("(if kind of it < 3 then kind of it else small frame of it) of rounds");
    EXPECT_EQ(outcome.values, (std::vector<std::string>{"1", "2"}));
    EXPECT_EQ(outcome.problems.substr(0, 39), "error: the evaluation ran out of stack\n");
}

TEST_F(Stack, WhatTheEvaluationHeldIsEndedOnce) {
    EXPECT_EQ(Ask("((trouble 1, it, (trouble 2; trouble 3) whose (small frame of it > 0)) of rounds) whose "
                  "(exists small frame of trouble 9)")
                  .problems.substr(0, 39),
              "error: the evaluation ran out of stack\n");
    EXPECT_EQ(Answer("living trouble; living round"), "0|0");
}

TEST_F(Stack, KeptValuesSurviveWithWhatTheyNeed) {
    std::vector<std::shared_ptr<Evaluator::Result const>> kept;
    {
        auto compiled = Evaluator::Query::Compile(
            "(trouble 5; it; trouble (kind of it); trouble (small frame of it)) of trouble 4");
        ASSERT_TRUE(compiled.query);
        auto problem = compiled.query->Run([&](Evaluator::Result const& result) {
            if (kept.size() < 3) kept.push_back(result.Keep());
            return true;
        });
        ASSERT_TRUE(problem);
        EXPECT_EQ(problem->message, "the evaluation ran out of stack");
    }
    ASSERT_EQ(kept.size(), 3u);
    EXPECT_EQ(Answer("living trouble"), "3");
    kept.erase(kept.begin());
    EXPECT_EQ(Answer("living trouble"), "2");
    kept.clear();
    EXPECT_EQ(Answer("living trouble"), "0");
}

TEST_F(Stack, ADestroyThatRecursesEndsTheEvaluationToo) {
    EXPECT_EQ(Ask("exists abyss of trouble 1").problems.substr(0, 39),
              "error: the evaluation ran out of stack\n");
    EXPECT_EQ(Ask("(abyss of trouble 1, abyss of trouble 2, trouble 3)").problems.substr(0, 39),
              "error: the evaluation ran out of stack\n");
}

TEST_F(Stack, ADestroyThatRecursesBringsNoKeptValueDown) {
    auto compiled = Evaluator::Query::Compile("abyss of trouble 1");
    ASSERT_TRUE(compiled.query);
    std::shared_ptr<Evaluator::Result const> kept;
    compiled.query->Run([&](Evaluator::Result const& result) {
        kept = result.Keep();
        return true;
    });
    EXPECT_EQ(Answer("living trouble"), "1");
    kept.reset();
    EXPECT_EQ(Answer("living trouble"), "0");
}

TEST_F(Stack, ADestroyThatThrowsIsReported) {
    EXPECT_EQ(Ask("exists grudge of trouble 1").problems,
              "error: NastyInspectors.dylib: type \"grudge\": it threw an exception where a value ends\n"
              "  exists grudge of trouble 1\n  ^~~~~~\n");
}

// The limit is the caller's; just below it there is no problem, just above it there is.
TEST_F(Stack, TheLimitIsAnOption) {
    Evaluator::RunOptions options;
    options.limits.stackBytes = 4 << 20;
    EXPECT_EQ(Ask("stack kilobyte of trouble 2500", options), (Outcome{{"2500"}, ""}));
    EXPECT_EQ(Ask("stack kilobyte of trouble 4100", options).problems,
              RanOut("stack kilobyte of trouble 4100", "^~~~~~~~~~~~~~", 4 << 20));
    EXPECT_EQ(Ask("stack kilobyte of trouble 4100").values.size(), 1u);
    options.limits.stackBytes = 1;  // as little as there may be
    EXPECT_EQ(Ask("kind of trouble 1", options), (Outcome{{"1"}, ""}));
}

// Wherever in memory the stack comes to lie.
TEST_F(Stack, AStackOfAnySizeFollowsOnOneOfAnyOther) {
    Evaluator::RunOptions options;
    for (std::size_t size : {8 << 20, 64 << 20, 2 << 20, 1 << 30, 16 << 20, 4 << 20, 512 << 20}) {
        options.limits.stackBytes = size;
        EXPECT_EQ(Ask("kind of trouble 1", options), (Outcome{{"1"}, ""})) << size;
    }
    options.limits.stackBytes = SIZE_MAX;  // as much as there may be
    EXPECT_EQ(Ask("kind of trouble 1", options), (Outcome{{"1"}, ""}));
}

// The stack that there was before serves the next evaluation.
TEST_F(Stack, WithoutMemoryForAStackNothingIsEvaluated) {
    EXPECT_EQ(Answer("kind of trouble 1"), "1");
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != "VmData:") {
    }
    rlim_t kilobytes = 0;
    ASSERT_TRUE(status >> kilobytes);
    rlimit before, little;
    ASSERT_EQ(getrlimit(RLIMIT_DATA, &before), 0);
    little = before;
    little.rlim_cur = (kilobytes + (256 << 10)) << 10;
    ASSERT_EQ(setrlimit(RLIMIT_DATA, &little), 0);
    Evaluator::RunOptions options;
    options.limits.stackBytes = 1 << 30;
    Outcome outcome = Ask("kind of trouble 1", options);
    ASSERT_EQ(setrlimit(RLIMIT_DATA, &before), 0);
    EXPECT_EQ(outcome,
              (Outcome{{},
                       "error: there is no memory for a stack of 1073741824 bytes\n  kind of trouble 1\n"
                       "  ^~~~\n  hint: allow a smaller one\n"}));
    EXPECT_EQ(Answer("kind of trouble 1"), "1");
    EXPECT_EQ(Ask("kind of trouble 1", options), (Outcome{{"1"}, ""}));
}

// What the core's own iterations hold is freed once.
TEST_F(Stack, IterationsOfTheCoreEndOnceToo) {
    EXPECT_EQ(Ask("(small frame of trouble 1) of properties of type \"trouble\"").problems.substr(0, 39),
              "error: the evaluation ran out of stack\n");
    EXPECT_EQ(Ask("(small frame of trouble 1) of casts of type \"integer\"").problems.substr(0, 39),
              "error: the evaluation ran out of stack\n");
}

// The call that was left is over: nothing can be asked of it for what ends behind it.
TEST_F(Stack, WhatEndsAfterwardsIsGivenNoMemory) {
    EXPECT_EQ(
        Ask("(beggar of trouble 1, beggar of trouble 2, small frame of trouble 3)").problems.substr(0, 39),
        "error: the evaluation ran out of stack\n");
    EXPECT_EQ(Ask("(beggar of trouble 1, deafness of trouble 2)", AtOnce()).problems.substr(0, 45),
              "error: the time limit of 0.001 s was reached\n");
    EXPECT_EQ(Answer("exists beggar of trouble 1; true"), "true|true");
    EXPECT_EQ(Answer("beggar given memory"), "0");
}

TEST_F(Stack, AConsumerMayLetGoOfAValueWhoseDestroyRecurses) {
    auto compiled = Evaluator::Query::Compile("abysses of (trouble 1; trouble 2; trouble 3)");
    ASSERT_TRUE(compiled.query);
    int values = 0;
    auto problem = compiled.query->Run([&](Evaluator::Result const& result) {
        result.Keep();
        return ++values < 3;
    });
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->message, "the evaluation ran out of stack");
}

// Those of a query that is gone: it must not be gone before them.
TEST_F(Stack, AConsumerMayLetGoOfValuesOfOtherQueries) {
    std::vector<std::shared_ptr<Evaluator::Result const>> kept;
    for (int i = 0; i < 3; ++i) {
        auto compiled = Evaluator::Query::Compile("(abyss of trouble 1, \"text\", trouble 2)");
        ASSERT_TRUE(compiled.query);
        compiled.query->Run([&](Evaluator::Result const& result) {
            kept.push_back(result.Keep());
            return true;
        });
    }
    auto compiled = Evaluator::Query::Compile("1; 2");
    auto problem = compiled.query->Run([&](Evaluator::Result const&) {
        kept.clear();
        return true;
    });
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->message, "the evaluation ran out of stack");
}

TEST_F(Stack, ADestroyThatThrowsIsReportedOnlyOfTheEvaluationThatItEndedIn) {
    auto compiled = Evaluator::Query::Compile("grudge of trouble 1");
    ASSERT_TRUE(compiled.query);
    std::shared_ptr<Evaluator::Result const> kept;
    compiled.query->Run([&](Evaluator::Result const& result) {
        kept = result.Keep();
        return true;
    });
    kept.reset();
    EXPECT_EQ(Answer("1 + 1"), "2");
    EXPECT_THROW(compiled.query->Run([](Evaluator::Result const&) -> bool { throw 1; }), int);
    EXPECT_EQ(Answer("1 + 1"), "2");
}

TEST_F(Stack, AnExceptionWithoutAWordIsReported) {
    EXPECT_EQ(Ask("muteness of trouble 1").problems,
              "error: \"muteness\" failed: (anonymous namespace)::muteness was thrown\n"
              "  muteness of trouble 1\n  ^~~~~~~~\n");
}

// However deep the query, its inspectors find the room that they may count on, or are not called.
TEST_F(Stack, NoInspectorIsCalledWithLessThan256KiBLeft) {
    Evaluator::RunOptions options;
    options.limits.stackBytes = 304 << 10;
    int refused = 0;
    for (std::string_view step :
         {"(%) of trouble 1", "(1; %) whose (it > 0) of trouble 1", "- %", "first value of (%)"}) {
        std::string query = "least stack left of trouble 1";
        for (std::string problems; !problems.starts_with("error: the query is nested");) {
            std::string outer(step);
            query = outer.replace(outer.find('%'), 1, query);
            problems = Ask(query, options).problems;
            refused += problems.starts_with("error: the evaluation ran out of stack\n");
        }
    }
    EXPECT_GT(refused, 0);
    long const least = std::stol(Answer("least stack left of trouble 1"));
    EXPECT_GE(least, 256);
    EXPECT_LT(least, 300);
}

TEST_F(Stack, AThreadWithASmallStackCanAsk) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 256 << 10);
    std::string answer;
    pthread_t thread;
    auto ask = [](void* answer) -> void* {
        *static_cast<std::string*>(answer) = Answer("stack kilobyte of trouble 3000");
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, ask, &answer), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    EXPECT_EQ(answer, "3000");
}

// The evaluation's handling of faults is gone when it is over, and others' faults are never taken for its
// own.
TEST_F(Stack, TheProgramsOwnHandlerIsRestored) {
    static volatile std::sig_atomic_t faults;
    static sigjmp_buf back;
    faults = 0;
    struct sigaction mine {
    }, before{};
    mine.sa_handler = [](int) {
        faults = faults + 1;
        siglongjmp(back, 1);
    };
    ASSERT_EQ(sigaction(SIGSEGV, &mine, &before), 0);
    EXPECT_EQ(Ask("small frame of trouble 1").values.size(), 0u);
    EXPECT_EQ(faults, 0);
    if (sigsetjmp(back, 1) == 0) raise(SIGSEGV);
    EXPECT_EQ(faults, 1);
    struct sigaction after {};
    sigaction(SIGSEGV, &before, &after);
    EXPECT_EQ(after.sa_handler, mine.sa_handler);
}

// A signal that somebody sends is no fault of memory, and does what it would have done.
TEST_F(Stack, ASignalThatIsSentEndsTheProcess) {
    EXPECT_EXIT(
        {
            signal(SIGSEGV, SIG_DFL);
            auto compiled = Evaluator::Query::Compile("kind of trouble 1");
            compiled.query->Run([](Evaluator::Result const&) {
                raise(SIGSEGV);
                std::_Exit(1);
                return true;
            });
        },
        testing::KilledBySignal(SIGSEGV), "");
}

}  // namespace
