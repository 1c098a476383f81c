// How values live, seen through an inspector library that watches its own. Under the address sanitizer these
// tests show as well that nothing is used after its end and nothing is lost.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <thread>

#include "Evaluator/Context.h"
#include "Evaluator/Exceptions.h"
#include "evaluator/Asking.h"

namespace {

class ValueLife : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(Messages(Evaluator::LoadInspectorLibrary(TestLibrary("TestInspectors"))), "");
    }
    void TearDown() override {
        EXPECT_EQ(Answer("living probe; living walk"), "0|0");
        EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("TestInspectors.dylib"));
    }
};

TEST_F(ValueLife, EveryValueIsEndedOnce) { EXPECT_EQ(Answer("id of probe 7"), "7"); }

TEST_F(ValueLife, ValuesWithRingLinksAreNeverMoved) {
    EXPECT_EQ(Answer("id of ring twin of ring twin of probe 7"), "7");
    EXPECT_EQ(Answer("ids of ring twins of probes up to 3"), "1|2|3");
}

TEST_F(ValueLife, AValueKeepsTheObjectThatItPointsInto) {
    EXPECT_EQ(Answer("id of part of probe 5"), "5");
    EXPECT_EQ(Answer("ids of parts of probes up to 3"), "1|2|3");
    EXPECT_EQ(Answer("ids of (parts of probes up to 4) whose (id of it > 2)"), "3|4");
    EXPECT_EQ(Answer("(id of part of it, id of it) of probes up to 2"), "1, 1|2, 2");
}

TEST_F(ValueLife, AValueUsedAsItsBaseIsEndedByItsOwnType) {
    EXPECT_EQ(Answer("id of special probe 3"), "3");
    EXPECT_EQ(Answer("extra of special probe 3"), "77");
    EXPECT_EQ(Answer("ids of (probe 1; special probe 2)"), "1|2");
    EXPECT_EQ(Answer("special probe 9"), "special probe probe 9");
}

TEST_F(ValueLife, WhatFirstAskedForStaysWhileAnyValueOfTheIterationLives) {
    EXPECT_EQ(Answer("echoes of probe 4"), "echo of 4|echo of 4|echo alone");
    EXPECT_EQ(Answer("(echoes of probe 4, echoes of probe 5) whose (true)"),
              "echo of 4, echo of 5|echo of 4, echo of 5|echo of 4, echo alone|"
              "echo of 4, echo of 5|echo of 4, echo of 5|echo of 4, echo alone|"
              "echo alone, echo of 5|echo alone, echo of 5|echo alone, echo alone");
}

TEST_F(ValueLife, AKeptValueOutlivesItsEvaluationWithAllThatItNeeds) {
    std::vector<std::shared_ptr<Evaluator::Result const>> kept;
    {
        auto compiled = Evaluator::Query::Compile("parts of ring twins of probes up to 3; part of probe 9");
        ASSERT_TRUE(compiled.query);
        EXPECT_FALSE(compiled.query->Run([&](Evaluator::Result const& result) {
            kept.push_back(result.Keep());
            return true;
        }));
    }
    EXPECT_EQ(kept.size(), 4u);
    EXPECT_EQ(Answer("living probe"), "7");  // three probes, their twins and the ninth
    auto refused = Evaluator::UnloadInspectorLibrary("TestInspectors.dylib");
    ASSERT_TRUE(refused);
    EXPECT_EQ(
        refused->message,
        "cannot unload \"TestInspectors.dylib\": a compiled query, a kept value or an evaluation uses it");
    kept.erase(kept.begin());
    EXPECT_EQ(Answer("living probe"), "5");
}

TEST_F(ValueLife, AKeptValueAndItsFieldsMayBeKeptAgain) {
    std::shared_ptr<Evaluator::Result const> kept, field;
    {
        auto compiled = Evaluator::Query::Compile("(probe 1, (\"text\", part of probe 2))");
        ASSERT_TRUE(compiled.query);
        compiled.query->Run([&](Evaluator::Result const& result) {
            kept = result.Keep();
            return true;
        });
    }
    field = kept->Fields()[1].Fields()[1].Keep();
    kept = kept->Keep();
    EXPECT_EQ(kept->Fields()[1].TypeName(), "(string, part)");
    kept.reset();
    EXPECT_EQ(field->TypeName(), "part");
    EXPECT_EQ(Answer("living probe"), "1");
    EXPECT_TRUE(Evaluator::UnloadInspectorLibrary("TestInspectors.dylib"));
}

TEST_F(ValueLife, WhatConstructAskedForStaysUntilTheStateHasEnded) {
    EXPECT_EQ(Answer("hoards of probe 1"), "");
    EXPECT_EQ(Answer("hoards of probes up to 3"), "");
}

TEST_F(ValueLife, AnIterationWithoutValuesEndsItsStateToo) {
    EXPECT_EQ(Answer("ids of probes up to 0"), "");
    EXPECT_EQ(Answer("living walk"), "0");
}

TEST_F(ValueLife, TheEvaluationsContextCarriesTheYieldHooks) {
    auto compiled = Evaluator::Query::Compile("probe 1");
    bool found = false;
    compiled.query->Run([&](Evaluator::Result const&) {
        found = dynamic_cast<InspectorYieldContext*>(Get_Generic_Inspector_Context()) != nullptr;
        return true;
    });
    EXPECT_TRUE(found);
}

TEST_F(ValueLife, AConsumerMayLetGoOfItsQuery) {
    auto compiled = Evaluator::Query::Compile("names of probes up to 3");
    int count = 0;
    Evaluator::Query const* running = &*compiled.query;
    running->Run([&](Evaluator::Result const&) {
        compiled.query.reset();
        return ++count < 3;
    });
    EXPECT_EQ(count, 3);
}

TEST_F(ValueLife, NothingIsUnloadedDuringAnEvaluation) {
    auto compiled = Evaluator::Query::Compile("1 + 1");
    std::string message;
    compiled.query->Run([&](Evaluator::Result const&) {
        message = Evaluator::UnloadInspectorLibrary("TestInspectors.dylib")->message;
        return true;
    });
    EXPECT_EQ(message, "cannot unload \"TestInspectors.dylib\": a query is being evaluated");
}

TEST_F(ValueLife, AnotherThreadIsNotInTheEvaluation) {
    auto compiled = Evaluator::Query::Compile("probe 1");
    bool inside = false, outside = true;
    compiled.query->Run([&](Evaluator::Result const&) {
        inside = Get_Generic_Inspector_Context() != nullptr;
        std::thread([&] { outside = Get_Generic_Inspector_Context() != nullptr; }).join();
        return true;
    });
    EXPECT_TRUE(inside);
    EXPECT_FALSE(outside);
    EXPECT_EQ(Get_Generic_Inspector_Context(), nullptr);
    EXPECT_THROW(Allocate_Inspector_Memory(1), MemoryFullError);
}

TEST_F(ValueLife, AKeptValueMayBeLetGoOnAnotherThread) {
    auto compiled = Evaluator::Query::Compile("part of probe 1");
    std::shared_ptr<Evaluator::Result const> kept;
    compiled.query->Run([&](Evaluator::Result const& result) {
        kept = result.Keep();
        return true;
    });
    std::thread([&] { kept.reset(); }).join();
}

// Compiling, loading and unloading, evaluating, keeping and letting go, each on its own thread.
TEST_F(ValueLife, ThreadsMayDoEverythingAtOnce) {
    constexpr int rounds = 100;
    std::mutex keptLock;
    std::vector<std::shared_ptr<Evaluator::Result const>> kept;
    auto evaluate = [&](std::string const& query) {
        for (int i = 0; i < rounds; ++i) {
            auto compiled = Evaluator::Query::Compile(query);
            ASSERT_TRUE(compiled.query);
            EXPECT_FALSE(compiled.query->Run([&](Evaluator::Result const& result) {
                std::lock_guard locked(keptLock);
                kept.push_back(result.Keep());
                return true;
            }));
        }
    };
    std::atomic<bool> done = false;
    std::vector<std::thread> others;
    others.emplace_back([&] {
        for (int i = 0; i < rounds / 10; ++i) {
            EXPECT_EQ(Messages(Evaluator::LoadInspectorLibrary(TestLibrary("SoundInspectors"))), "");
            EXPECT_EQ(Answer("second answer"), "42");
            EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("SoundInspectors.dylib"));
        }
    });
    others.emplace_back([&] {
        while (!done) {
            EXPECT_TRUE(Evaluator::Query::Compile("ids of parts of probes up to 3").query);
            EXPECT_FALSE(Evaluator::AllRegistrations().empty());
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    others.emplace_back([&] {
        while (!done) {
            std::vector<std::shared_ptr<Evaluator::Result const>> some;
            {
                std::lock_guard locked(keptLock);
                some.swap(kept);
            }
            some.clear();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    std::thread second(evaluate, "(part of it, echoes of it) of probes up to 3");
    evaluate("sorted values of ids of ring twins of probes up to 5");
    second.join();
    done = true;
    for (std::thread& thread : others) thread.join();
    kept.clear();
}

TEST_F(ValueLife, AStreamOfValuesTakesNoMoreMemoryThanAFewOfThem) {
#ifdef ZELQ_ADDRESS_SANITIZER
    constexpr long mayGrow =
        600 << 10;  // KiB; the sanitizer holds freed memory back, up to a bound of its own
#else
    constexpr long mayGrow = 2 << 10;  // KiB; a million values at once would take a hundred times that
#endif
    auto peak = [] {
        rusage usage;
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss;
    };
    EXPECT_EQ(Answer("number of (names of ring twins of probes up to 1000) whose (it contains \"77\")"),
              "19");
    long const before = peak();
    EXPECT_EQ(Answer("number of (names of ring twins of probes up to 1000000) whose (it contains \"77\")"),
              "45739");
    EXPECT_LT(peak() - before, mayGrow);
}

TEST_F(ValueLife, AConsumerMayStop) {
    auto compiled = Evaluator::Query::Compile("probes up to 1000000");
    ASSERT_TRUE(compiled.query);
    int count = 0;
    EXPECT_FALSE(compiled.query->Run([&](Evaluator::Result const&) { return ++count < 3; }));
    EXPECT_EQ(count, 3);
}

TEST_F(ValueLife, AConsumerThatThrowsLeavesNothingBehind) {
    auto compiled = Evaluator::Query::Compile("probes up to 10");
    ASSERT_TRUE(compiled.query);
    EXPECT_THROW(compiled.query->Run([](Evaluator::Result const&) -> bool { throw 1; }), int);
}

// The deepest queries of every shape, compiled, explained and let go on the stack as it is by default.
TEST_F(ValueLife, AConsumerMayCompile) {
    for (std::string step : {"- %", "(%)", "(%; 1) whose (it > 0)", "(1, %)", "if true then % else 0",
                             "% otherwise 0", "(%) of 1", "not (% = 1)", "integers up to (sum of %)"}) {
        std::string deep = "1";
        for (int i = 0; i < 190; ++i) {
            std::string outer = step;
            deep = outer.replace(outer.find('%'), 1, deep);
        }
        auto compiled = Evaluator::Query::Compile("1");
        bool answered = false;
        compiled.query->Run([&](Evaluator::Result const&) {
            auto inner = Evaluator::Query::Compile(deep);
            answered = inner.query ? inner.query->Explain().typeName != "" : !inner.problems.empty();
            return true;
        });
        EXPECT_TRUE(answered) << step;
    }
}

// The library's static objects end before those that the program made earlier.
TEST_F(ValueLife, AProcessMayEndWithAKeptValue) {
    EXPECT_EXIT(
        {
            static std::shared_ptr<Evaluator::Result const> kept;
            Evaluator::UnloadInspectorLibrary("TestInspectors.dylib");
            Evaluator::LoadInspectorLibrary(TestLibrary("TestInspectors"));
            auto compiled = Evaluator::Query::Compile("(part of probe 1, probe 2, echoes of probe 3)");
            compiled.query->Run([&](Evaluator::Result const& result) {
                kept = result.Keep();
                return true;
            });
            compiled.query.reset();
            std::exit(kept ? 7 : 1);
        },
        testing::ExitedWithCode(7), "");
}

TEST_F(ValueLife, AConsumerCannotStartAQuery) {
    auto compiled = Evaluator::Query::Compile("probe 1");
    ASSERT_TRUE(compiled.query);
    std::string message;
    compiled.query->Run([&](Evaluator::Result const&) {
        auto inner = Evaluator::Query::Compile("1 + 1");
        message = inner.query->Run([](Evaluator::Result const&) { return true; })->message;
        return true;
    });
    EXPECT_EQ(message, "another query is being evaluated");
}

TEST_F(ValueLife, AnInspectorThatThrowsHalfWayLeavesNothingBehind) {
    EXPECT_EQ(Ask("absent of probe 1").problems,
              "error: no such object\n"
              "  absent of probe 1\n"
              "  ^~~~~~\n");
    EXPECT_EQ(Ask("broken of probe 1").problems,
              "error: \"broken\" failed: the platform's error -36 (input or output error)\n"
              "  broken of probe 1\n"
              "  ^~~~~~\n");
}

TEST_F(ValueLife, AnIterationThatFailsLeavesNothingBehindButTheValuesFound) {
    Outcome outcome = Ask("ids of failings of probe 1");
    EXPECT_EQ(outcome.values, (std::vector<std::string>{"1", "2"}));
    EXPECT_EQ(outcome.problems,
              "error: \"failing\" failed: the platform's error -1401 (stale file reference)\n"
              "  ids of failings of probe 1\n"
              "         ^~~~~~~~\n");
}

TEST_F(ValueLife, AFailureIsNotToldByThatOfAnotherCall) {
    EXPECT_EQ(Ask("unreadable of unopened of probe 1 otherwise unreadable of probe 1").problems,
              "error: \"unreadable\" failed: the file cannot be read\n"
              "  unreadable of unopened of probe 1 otherwise unreadable of probe 1\n"
              "                                              ^~~~~~~~~~\n");
}

TEST_F(ValueLife, FailuresAreToldApart) {
    EXPECT_EQ(Ask("forbidden of probe 1").problems,
              "error: \"forbidden\" failed: it may not be read\n"
              "  forbidden of probe 1\n"
              "  ^~~~~~~~~\n");
    EXPECT_EQ(Ask("missing of probe 1").problems,
              "error: the item is not there\n"
              "  missing of probe 1\n"
              "  ^~~~~~~\n");
    EXPECT_EQ(Ask("unreachable of probe 1").problems,
              "error: the item cannot be looked up: the platform's error -5000 (access denied)\n"
              "  unreachable of probe 1\n"
              "  ^~~~~~~~~~~\n");
    EXPECT_EQ(Ask("stray of probe 1").problems,
              "error: \"stray\" failed: int was thrown\n"
              "  stray of probe 1\n"
              "  ^~~~~\n");
    EXPECT_EQ(Ask("wrong of probe 1").problems,
              "error: \"wrong\" failed: std::runtime_error was thrown: wrong\n"
              "  wrong of probe 1\n"
              "  ^~~~~\n");
}

TEST_F(ValueLife, CachesAreClearedAtTheStartOfEveryEvaluation) {
    std::string before = Answer("cleared cache");
    EXPECT_EQ(Answer("cleared cache"), std::to_string(std::stoi(before) + 1));
}

TEST_F(ValueLife, NoSuchObjectIsSilentForAValueOfAPlural) {
    EXPECT_EQ(Answer("odd texts of probes up to 3"), "odd|odd");
    EXPECT_EQ(Answer("(odd text of it) of probes up to 3"), "odd|odd");
    EXPECT_EQ(Answer("ids of probes whose (odd text of it = \"odd\") up to 1 of probe 1").substr(0, 6),
              "error:");
    EXPECT_EQ(Answer("ids of probes up to 5 whose (odd text of it = \"odd\")"), "1|3|5");
}

TEST_F(ValueLife, AMissingItemIsSilentOnlyUnderExistsAndOtherwise) {
    EXPECT_EQ(Answer("exists missing of probe 1"), "false");
    EXPECT_EQ(Answer("exists missings of probes up to 2"), "false");
    EXPECT_EQ(Answer("id of missing of probe 1 otherwise 5"), "5");
    EXPECT_EQ(Ask("ids of missings of probes up to 2").problems,
              "error: the item is not there\n"
              "  ids of missings of probes up to 2\n"
              "         ^~~~~~~~\n");
}

TEST_F(ValueLife, AMissingItemAmongManyDoesNotHideTheOthersUnderExistsAndOtherwise) {
    std::string some = "probes up to 3 whose (id of (if id of it = 1 then missing of it else it) = 2)";
    EXPECT_EQ(Answer("exists " + some), "true");
    EXPECT_EQ(Answer("ids of (" + some + " otherwise probe 99)"), "2");
    EXPECT_EQ(Ask(some).problems.substr(0, 28), "error: the item is not there");
}

TEST_F(ValueLife, AMemberOfACollectionInAStepThatIsAbsentAddsNothing) {
    EXPECT_EQ(Answer("(1; id of absent of it; 3) of probes up to 2"), "1|3|1|3");
    EXPECT_EQ(Ask("(1; id of absent of it; 3) of probe 1").values.size(), 1u);
}

TEST_F(ValueLife, ASingularObjectThatIsNotThereIsAnErrorBelowAPlural) {
    EXPECT_EQ(Ask("ids of absent of probe 1").problems,
              "error: no such object\n"
              "  ids of absent of probe 1\n"
              "         ^~~~~~\n");
}

}  // namespace
