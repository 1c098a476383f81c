#include "Evaluator/Stacks.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "Evaluator/Exceptions.h"

TEST(FiniteStackBase, CountsDepthFromTheTop) {
    FiniteStackBase<std::uint32_t, 3> numbers;
    EXPECT_TRUE(numbers.Empty());
    numbers.Allocate() = 1;
    numbers.Allocate() = 2;
    numbers.Allocate() = 3;
    EXPECT_EQ(3u, numbers.AtDepth(0));
    EXPECT_EQ(1u, numbers.AtDepth(2));
    numbers.AtDepth(1) = 20;
    numbers.Pop(1);
    EXPECT_EQ(20u, numbers.AtDepth(0));
    EXPECT_FALSE(numbers.Empty());
}

TEST(FiniteStackBase, RefusesOneEntryTooMany) {
    FiniteStackBase<std::uint64_t, 6> numbers;
    for (std::uint64_t number = 0; number < 6; ++number) numbers.Allocate() = number;
    EXPECT_THROW(numbers.Allocate(), DataOverflow);
    EXPECT_EQ(5u, numbers.AtDepth(0));
    numbers.Pop(1);
    numbers.Allocate() = 50;
    EXPECT_EQ(50u, numbers.AtDepth(0));
}

TEST(FiniteStackBase, RefusesToPopMoreThanItHasAndPopsNothing) {
    FiniteStackBase<int, 4> numbers;
    EXPECT_THROW(numbers.Pop(1), DataOverflow);
    numbers.Allocate() = 7;
    EXPECT_THROW(numbers.Pop(2), DataOverflow);
    EXPECT_THROW(numbers.Pop(~0ul), DataOverflow);
    EXPECT_EQ(7, numbers.AtDepth(0));
    numbers.Pop(0);
    EXPECT_EQ(7, numbers.AtDepth(0));
}

TEST(FiniteStackBase, RefusesADepthThatItDoesNotHave) {
    FiniteStackBase<int, 4> numbers;
    EXPECT_THROW(numbers.AtDepth(0), DataOverflow);
    numbers.Allocate() = 7;
    EXPECT_THROW(numbers.AtDepth(1), DataOverflow);
    EXPECT_THROW(numbers.AtDepth(~0ul), DataOverflow);
}

TEST(FiniteStackBase, IsEmptyAfterPoppingAll) {
    FiniteStackBase<int, 2> numbers;
    numbers.PopAll();
    numbers.Allocate() = 1;
    numbers.Allocate() = 2;
    numbers.PopAll();
    EXPECT_TRUE(numbers.Empty());
    EXPECT_THROW(numbers.AtDepth(0), DataOverflow);
    numbers.Allocate() = 3;
    EXPECT_EQ(3, numbers.AtDepth(0));
}

TEST(StackBase, HasRoomForTheEntriesThatFitInItsMemory) {
    alignas(8) unsigned char memory[23];
    StackBase stack({memory, sizeof memory}, 8);
    EXPECT_EQ(memory, stack.Allocate());
    EXPECT_EQ(memory + 8, stack.Allocate());
    EXPECT_THROW(stack.Allocate(), DataOverflow);
    EXPECT_EQ(memory + 8, stack.AtDepth(0));
    EXPECT_EQ(memory, stack.AtDepth(1));
}
