#include "Evaluator/Arithmetic.h"

#include <gtest/gtest.h>

TEST(CanAdd, IsTrueUpToTheLargest32BitNumber) {
    EXPECT_TRUE(CanAdd(0, 0));
    EXPECT_TRUE(CanAdd(0xFFFFFFFF, 0));
    EXPECT_TRUE(CanAdd(0, 0xFFFFFFFF));
    EXPECT_TRUE(CanAdd(0x80000000, 0x7FFFFFFF));
}

TEST(CanAdd, IsFalseWhereTheSumNeedsMoreBits) {
    EXPECT_FALSE(CanAdd(0xFFFFFFFF, 1));
    EXPECT_FALSE(CanAdd(1, 0xFFFFFFFF));
    EXPECT_FALSE(CanAdd(0x80000000, 0x80000000));
}

TEST(CanAdd, IsFalseForNumbersThatNeedMoreBitsThemselves) {
    EXPECT_FALSE(CanAdd(0x100000000, 0));
    EXPECT_FALSE(CanAdd(0, 0x100000000));
    EXPECT_FALSE(CanAdd(~0ul, 1));
    EXPECT_FALSE(CanAdd(1, ~0ul));
}
