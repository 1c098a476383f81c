#include "versions/VersionAutomaton.h"

#include <gtest/gtest.h>

#include <initializer_list>

#include "Evaluator/Exceptions.h"
#include "VersionsOfTests.h"

namespace {

class Automaton : public testing::Test {
  protected:
    void Push(std::initializer_list<unsigned long> numbers) {
        for (unsigned long number : numbers) automaton.PushNumber(number);
    }
    std::string Result() const { return Fields(automaton.Result()); }

    /// What an action makes of numbers, after 1.2.3b4.
    std::string ResultOf(void (VersionRPNSemantics::*action)(),
                         std::initializer_list<unsigned long> numbers) {
        automaton.Reset();
        Push({1, 2});
        automaton.BuildVers();
        Push({3});
        automaton.Addbugrev();
        Push({0x60, 4});
        automaton.AddStage2();
        Push(numbers);
        (automaton.*action)();
        return Result();
    }
    void ExpectOutOfBounds(void (VersionRPNSemantics::*action)(),
                           std::initializer_list<unsigned long> numbers) {
        automaton.Reset();
        Push(numbers);
        EXPECT_THROW((automaton.*action)(), VersionDataOutOfBounds) << *numbers.begin();
    }

    VersionAutomaton automaton;
};

using S = VersionRPNSemantics;

constexpr unsigned long kMost = 4294967295;

}  // namespace

TEST_F(Automaton, BeginsWithZeros) { EXPECT_EQ("0 0 0 0x00 0", Result()); }

TEST_F(Automaton, BuildsAVersionOfOneNumber) {
    EXPECT_EQ("7 0 0 0x00 0", ResultOf(&S::BuildSingle, {7}));
    EXPECT_EQ("65535 0 0 0x00 0", ResultOf(&S::BuildSingle, {65535}));
    ExpectOutOfBounds(&S::BuildSingle, {65536});
    ExpectOutOfBounds(&S::BuildSingle, {kMost});
}

TEST_F(Automaton, BuildsAVersionOfTwoNumbers) {
    EXPECT_EQ("7 8 0 0x00 0", ResultOf(&S::BuildVers, {7, 8}));
    EXPECT_EQ("65535 65535 0 0x00 0", ResultOf(&S::BuildVers, {65535, 65535}));
    ExpectOutOfBounds(&S::BuildVers, {65536, 8});
    ExpectOutOfBounds(&S::BuildVers, {7, 65536});
    ExpectOutOfBounds(&S::BuildVers, {kMost, kMost});
}

TEST_F(Automaton, AddsABugRevision) {
    EXPECT_EQ("1 2 7 0x60 4", ResultOf(&S::Addbugrev, {7}));
    EXPECT_EQ("1 2 65535 0x60 4", ResultOf(&S::Addbugrev, {65535}));
    ExpectOutOfBounds(&S::Addbugrev, {65536});
    ExpectOutOfBounds(&S::Addbugrev, {kMost});
}

TEST_F(Automaton, AddsAStage) {
    EXPECT_EQ("1 2 3 0x20 0", ResultOf(&S::AddStage1, {0x20}));
    EXPECT_EQ("1 2 3 0x80 0", ResultOf(&S::AddStage1, {128}));
    ExpectOutOfBounds(&S::AddStage1, {129});
    ExpectOutOfBounds(&S::AddStage1, {kMost});
}

TEST_F(Automaton, AddsAStageWithItsNumber) {
    EXPECT_EQ("1 2 3 0x40 7", ResultOf(&S::AddStage2, {0x40, 7}));
    EXPECT_EQ("1 2 3 0x80 65535", ResultOf(&S::AddStage2, {128, 65535}));
    ExpectOutOfBounds(&S::AddStage2, {129, 7});
    ExpectOutOfBounds(&S::AddStage2, {0x40, 65536});
    ExpectOutOfBounds(&S::AddStage2, {kMost, 7});
    ExpectOutOfBounds(&S::AddStage2, {0x40, kMost});
}

TEST_F(Automaton, AddsAFourthNumber) {
    EXPECT_EQ("1 2 3 0xA0 7", ResultOf(&S::AddStage3, {7}));
    EXPECT_EQ("1 2 3 0xA0 65535", ResultOf(&S::AddStage3, {65535}));
    ExpectOutOfBounds(&S::AddStage3, {65536});
    ExpectOutOfBounds(&S::AddStage3, {kMost});
}

TEST_F(Automaton, TakesFromTheTopWhatAnActionNeeds) {
    Push({1, 2, 3, 4, 5, 6});
    automaton.Addbugrev();
    EXPECT_EQ("0 0 6 0x00 0", Result());
    automaton.AddStage2();
    EXPECT_EQ("0 0 6 0x04 5", Result());
    automaton.AddStage3();
    EXPECT_EQ("0 0 6 0xA0 3", Result());
    automaton.AddStage1();
    EXPECT_EQ("0 0 6 0x02 0", Result());
    automaton.BuildSingle();
    EXPECT_EQ("1 0 0 0x00 0", Result());
    EXPECT_THROW(automaton.BuildSingle(), DataOverflow);
}

TEST_F(Automaton, RefusesToActWithoutNumbers) {
    for (auto action :
         {&S::BuildSingle, &S::BuildVers, &S::Addbugrev, &S::AddStage1, &S::AddStage2, &S::AddStage3})
        EXPECT_THROW((automaton.*action)(), DataOverflow);
    for (auto action : {&S::BuildVers, &S::AddStage2}) {
        automaton.Reset();
        Push({1});
        EXPECT_THROW((automaton.*action)(), DataOverflow);
    }
}

TEST_F(Automaton, HasRoomForSixNumbers) {
    Push({1, 2, 3, 4, 5, 6});
    EXPECT_THROW(automaton.PushNumber(7), DataOverflow);
    automaton.BuildVers();
    EXPECT_EQ("5 6 0 0x00 0", Result());
}

TEST_F(Automaton, ForgetsEverything) {
    EXPECT_EQ("1 2 3 0xA0 7", ResultOf(&S::AddStage3, {7}));
    Push({1, 2});
    automaton.Reset();
    EXPECT_EQ("0 0 0 0x00 0", Result());
    EXPECT_THROW(automaton.BuildSingle(), DataOverflow);
}
