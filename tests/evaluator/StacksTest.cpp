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

// A stack that was full, or that refused, is as good as a new one.
TEST(FiniteStackBase, FillsAgainAfterPopping) {
    FiniteStackBase<int, 2> numbers;
    for (int round = 0; round < 3; ++round) {
        numbers.Allocate() = round;
        numbers.Allocate() = round + 10;
        EXPECT_THROW(numbers.Allocate(), DataOverflow);
        EXPECT_EQ(round, numbers.AtDepth(1));
        numbers.Pop(2);
        EXPECT_TRUE(numbers.Empty());
    }
}

TEST(FiniteStackBase, ShowsItsEntriesWhenItIsConstant) {
    FiniteStackBase<int, 3> numbers;
    numbers.Allocate() = 4;
    numbers.Allocate() = 5;
    FiniteStackBase<int, 3> const& constant = numbers;
    EXPECT_EQ(&numbers.AtDepth(0), &constant.AtDepth(0));
    EXPECT_EQ(4, constant.AtDepth(1));
    EXPECT_THROW(constant.AtDepth(2), DataOverflow);
    EXPECT_FALSE(constant.Empty());
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

TEST(StackBase, RefusesWhatItDoesNotHave) {
    alignas(8) unsigned char memory[16];
    StackBase stack({memory, sizeof memory}, 8);
    EXPECT_TRUE(stack.Empty());
    EXPECT_THROW(stack.AtDepth(0), DataOverflow);
    EXPECT_THROW(stack.Pop(1), DataOverflow);
    stack.Allocate();
    EXPECT_FALSE(stack.Empty());
    EXPECT_THROW(stack.AtDepth(1), DataOverflow);
    EXPECT_THROW(stack.AtDepth(~0ul), DataOverflow);
    EXPECT_THROW(stack.Pop(2), DataOverflow);
    EXPECT_THROW(stack.Pop(~0ul), DataOverflow);
    EXPECT_EQ(memory, stack.AtDepth(0));
    stack.Allocate();
    stack.Pop(1);
    EXPECT_EQ(memory + 8, stack.Allocate());
    stack.PopAll();
    EXPECT_TRUE(stack.Empty());
    EXPECT_EQ(memory, stack.Allocate());
}

TEST(StackBase, HasNoRoomInMemoryThatIsTooShort) {
    alignas(8) unsigned char memory[8];
    StackBase none({memory, std::size_t{0}}, 8);
    EXPECT_THROW(none.Allocate(), DataOverflow);
    StackBase tooShort({memory, std::size_t{7}}, 8);
    EXPECT_THROW(tooShort.Allocate(), DataOverflow);
    StackBase bytes({memory, sizeof memory}, 1);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(memory + i, bytes.Allocate());
    EXPECT_THROW(bytes.Allocate(), DataOverflow);
}
