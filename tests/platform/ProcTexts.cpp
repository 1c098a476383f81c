// The texts of /proc, and the numbers made of them.

#include "processes/ProcTexts.h"

#include <gtest/gtest.h>

#include "processes/SerialNumber.h"

using namespace Platform;

namespace {

// What the kernel writes, with a name.
std::string StatOf(std::string const& name) {
    return "4242 (" + name +
           ") S 17 4242 4242 34816 4242 4194304 1 2 3 4 500 60 7 8 20 0 1 0 123456 8192000 90 "
           "18446744073709551615 1 1 0\n";
}

}  // namespace

TEST(ProcTexts, StatByItsFields) {
    auto const stat = ParseStat(StatOf("sleep"));
    ASSERT_TRUE(stat);
    EXPECT_EQ('S', stat->state);
    EXPECT_EQ(17, stat->parent);
    EXPECT_EQ(560u, stat->active);
    EXPECT_EQ(123456u, stat->start);
    EXPECT_EQ(8192000u, stat->size);
    EXPECT_FALSE(stat->HasEnded());
}

TEST(ProcTexts, NamesInStatMayHoldAnything) {
    for (std::string const name : {"", "a b", ") (", ") R 1 2", "(((", ")))", "b\xFF", "x)\n"}) {
        auto const stat = ParseStat(StatOf(name));
        ASSERT_TRUE(stat) << name;
        EXPECT_EQ(17, stat->parent) << name;
        EXPECT_EQ(123456u, stat->start) << name;
    }
}

TEST(ProcTexts, NegativeNumbersThatAreNotWantedAreSkipped) {
    auto const stat = ParseStat("1 (a) R 0 0 0 0 -1 4194304 1 2 3 4 5 6 7 8 -2 -20 1 0 9 10");
    ASSERT_TRUE(stat);
    EXPECT_EQ(9u, stat->start);
    EXPECT_EQ(10u, stat->size);
}

TEST(ProcTexts, StatOfAnotherForm) {
    std::string const whole = StatOf("a");
    EXPECT_FALSE(ParseStat(""));
    EXPECT_FALSE(ParseStat("4242"));
    EXPECT_FALSE(ParseStat("4242 (a"));
    EXPECT_FALSE(ParseStat("4242 (a) "));
    EXPECT_FALSE(ParseStat(") (4242 S 1"));
    EXPECT_FALSE(ParseStat(whole.substr(0, whole.find("123456")))) << "it is cut short";
    EXPECT_FALSE(ParseStat("1 (a) Sleep 0 0 0 0 0 0 1 2 3 4 5 6 7 8 0 0 1 0 9 10"));
    EXPECT_FALSE(ParseStat("1 (a) S -1 0 0 0 0 0 1 2 3 4 5 6 7 8 0 0 1 0 9 10"));
    EXPECT_FALSE(ParseStat("1 (a) S 4194304 0 0 0 0 0 1 2 3 4 5 6 7 8 0 0 1 0 9 10"));
    EXPECT_FALSE(ParseStat("1 (a) S 0 0 0 0 0 0 1 2 3 4 5 6 7 8 0 0 1 0 18446744073709551616 10"));
    EXPECT_FALSE(ParseStat("1 (a) S 0 0 0 0 0 0 1 2 3 4 5 6 7 8 0 0 1 0 9x 10"));
}

TEST(ProcTexts, StartsAreThoseThatSerialNumbersHold) {
    auto const startIn = [](std::string const& start) {
        auto const stat = ParseStat("1 (a) S 0 0 0 0 0 0 1 2 3 4 5 6 7 8 0 0 1 0 " + start + " 10");
        return stat ? stat->start : 0;
    };
    EXPECT_EQ(kLatestStart, startIn("4398046511102"));
    for (std::string const start : {"4398046511103", "8796093022308", "18446744073709551615"})
        EXPECT_EQ(0u, startIn(start)) << start;
}

TEST(ProcTexts, StatesOfWhatHasEnded) {
    for (char const state : {'Z', 'X', 'x', 'R', 'S', 'D', 'T'}) {
        std::string text = StatOf("a");
        text[text.find(") S") + 2] = state;
        EXPECT_EQ(state == 'Z' || state == 'X' || state == 'x', ParseStat(text)->HasEnded()) << state;
    }
}

TEST(ProcTexts, StatusByItsKeys) {
    auto const status =
        ParseStatus("Name:\tTgid:\\n\nUmask:\t0022\nTgid:\t4242\nNgid:\t0\nUid:\t1000\t1001\t1002\t1003\n");
    ASSERT_TRUE(status);
    EXPECT_EQ(4242, status->process);
    EXPECT_EQ(1000u, status->user) << "the real one";
}

TEST(ProcTexts, StatusOfAnotherForm) {
    EXPECT_FALSE(ParseStatus(""));
    EXPECT_FALSE(ParseStatus("Tgid:\t1\n"));
    EXPECT_FALSE(ParseStatus("Uid:\t0\t0\t0\t0\n"));
    EXPECT_FALSE(ParseStatus("Tgid:\tone\nUid:\t0\t0\t0\t0\n"));
    EXPECT_FALSE(ParseStatus("Tgid:\t1\nUid:\t-1\t0\t0\t0\n"));
    EXPECT_FALSE(ParseStatus("Tgid:\t1\nUid:\n"));
}

TEST(ProcTexts, IdsAreDecimalDigitsWithoutZeroInFront) {
    EXPECT_EQ(1, ProcessIdOf("1"));
    EXPECT_EQ(4194303, ProcessIdOf("4194303"));
    for (char const* const text : {"", "0", "01", "+1", "-1", "1x", " 1", "self", "4194304", "99999999999"})
        EXPECT_FALSE(ProcessIdOf(text)) << text;
}

TEST(SerialNumbers, HoldTheIdAndTheStart) {
    for (ProcessIdentity const process :
         {ProcessIdentity{1, 0}, {4194303, 0}, {1, 1}, {4242, 0x3FFFFFFFFFE}}) {
        ProcessSerialNumber const psn = SerialNumberOf(process);
        EXPECT_EQ(process, IdentityIn(psn)) << process.pid;
        EXPECT_GT(NumberIn(psn), 0x400000u) << "it is none of the constants";
    }
}

TEST(SerialNumbers, HaveTheHighWordOfTheNumberFirst) {
    ProcessSerialNumber const psn = SerialNumberOf({3, 0x3FF});
    EXPECT_EQ(1u, +psn.highLongOfPSN);
    EXPECT_EQ(3u, +psn.lowLongOfPSN);
}

TEST(SerialNumbers, OfNoProcess) {
    for (ProcessSerialNumber const psn :
         {ProcessSerialNumber{0, 0}, {0, 1}, {0, 2}, {0, 4194303}, {0, 4194304}, {7, 0x400000}})
        EXPECT_FALSE(IdentityIn(psn)) << +psn.lowLongOfPSN;
}
