// Ten million values pass, and memory stays where it was.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "evaluator/Asking.h"

namespace {

#ifdef ZELQ_ADDRESS_SANITIZER
constexpr char const* kMany = "1000000";  // each takes its time here
constexpr long kMayGrow = 600 << 10;      // KiB; the sanitizer keeps what was freed for a while
#else
constexpr char const* kMany = "10000000";
constexpr long kMayGrow = 4 << 10;
#endif

long PeakMemory() {
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class ConstantMemory : public testing::TestWithParam<char const*> {};

TEST_P(ConstantMemory, HoweverManyValuesPass) {
    std::string query = GetParam();
    std::string few = query;
    few.replace(few.find("MANY"), 4, "10");
    ASSERT_EQ(Ask(few).problems, "");
    query.replace(query.find("MANY"), 4, kMany);
    long const before = PeakMemory();
    EXPECT_EQ(Ask(query).problems, "");
    EXPECT_LT(PeakMemory() - before, kMayGrow);
}

INSTANTIATE_TEST_SUITE_P(, ConstantMemory,
                         testing::Values("number of integers up to MANY whose (it mod 3 = 1)",
                                         "number of (it, it + 1) of integers up to MANY",
                                         "number of (integers up to MANY as string as integer)",
                                         "unique values of (it mod 7) of integers up to MANY",
                                         "first values 3 of (integers up to MANY whose (it mod 1000 = 0))",
                                         "last values 3 of integers up to MANY", "sum of integers up to MANY",
                                         "maximum of lengths of (integers up to MANY as string)"));

}  // namespace
