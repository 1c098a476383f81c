// Every limit at its bound and one past it.

#include "evaluator/NastyTest.h"

namespace {

class LimitsHold : public NastyTest {};

TEST_F(LimitsHold, InspectorMemory) {
    Evaluator::RunOptions options;
    options.limits.inspectorMemory = 100'000;
    EXPECT_EQ(Ask("exists memory 90000", options), (Outcome{{"true"}, ""}));
    EXPECT_EQ(Ask("exists memory 100001", options).problems,
              "error: inspectors want more than 100000 bytes of memory at one time\n  exists memory 100001\n"
              "         ^~~~~~\n  hint: ask about fewer or smaller things at once\n");
    // What goes with its value does not add up.
    EXPECT_EQ(Ask("number of (memory (it)) of (40000; 40000; 40000; 40000)", options), (Outcome{{"4"}, ""}));
    EXPECT_EQ(Ask("exists (memory 50000, memory 50001)", options).values.size(), 0u);
}

TEST_F(LimitsHold, InspectorMemoryOfAnInspectorThatPretendsNothingHappened) {
    Evaluator::RunOptions options;
    options.limits.inspectorMemory = 10 << 20;
    EXPECT_EQ(
        Ask("hoard of trouble 1", options),
        (Outcome{{},
                 "error: inspectors want more than 10485760 bytes of memory at one time\n"
                 "  hoard of trouble 1\n  ^~~~~\n  hint: ask about fewer or smaller things at once\n"}));
}

TEST_F(LimitsHold, TheTextOfATuple) {
    Evaluator::RunOptions options;
    options.limits.textBytes = 13;
    EXPECT_EQ(Ask("(\"12345\", \"1234\")", options), (Outcome{{"12345, 1234"}, ""}));
    EXPECT_EQ(
        Ask("(\"12345\", \"12345\")", options).problems,
        "error: the text of a tuple is longer than 13 bytes\n  (\"12345\", \"12345\")\n   ^~~~~~~~~~~~~~~~\n"
        "  hint: ask for fewer fields at once\n");
}

}  // namespace
