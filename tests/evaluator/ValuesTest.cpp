#include "Evaluator/Values.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "Evaluator/Context.h"
#include "Evaluator/Exceptions.h"
#include "TextOf.h"

TEST(Data, TakesTextAtItsFrontAndGivesWhatRemains) {
    unsigned char bytes[] = "........";
    Data const room(bytes, 6);
    Data const rest = room << "ab"
                           << ""
                           << "c";
    EXPECT_EQ("abc.....", TextOf({bytes, 8}));
    EXPECT_EQ(bytes + 3, rest.begin());
    EXPECT_EQ(bytes + 6, rest.end());
}

TEST(Data, CanBeFilledToItsEnd) {
    unsigned char bytes[3];
    Data const rest = Data(bytes, 3) << "abc";
    EXPECT_TRUE(rest.Empty());
    EXPECT_TRUE((rest << "").Empty());
    EXPECT_TRUE((Data() << ConstData()).Empty());
}

TEST(Data, RefusesTextThatDoesNotFitAndWritesNothing) {
    unsigned char bytes[] = "....";
    EXPECT_THROW(Data(bytes, 3) << "abcd", DataOverflow);
    EXPECT_EQ("....", TextOf({bytes, 4}));
    EXPECT_THROW(Data() << "a", DataOverflow);
}

TEST(Data, TakesTextThatLiesInIt) {
    unsigned char bytes[] = "abcdef";
    Data(bytes, 6) << ConstData(bytes + 1, 5);
    EXPECT_EQ("bcdeff", TextOf({bytes, 6}));
}

TEST(ConstCString, IsAsLongAsTheBytesBeforeItsNul) {
    EXPECT_EQ(0u, ConstCString("").Length());
    EXPECT_EQ(5u, ConstCString("a\xFF\nbc").Length());
}

TEST(Boolean, IsThirtyTwoBitsWide) {
    EXPECT_EQ(4u, sizeof(boolean));
    EXPECT_TRUE(boolean(true));
    EXPECT_FALSE(boolean(false));
    EXPECT_FALSE(boolean());
}

TEST(Integer, BehavesAsItsNumber) {
    EXPECT_EQ(8u, sizeof(integer));
    EXPECT_EQ(-3, integer(-3));
    EXPECT_EQ(7, integer(3) + 4);
    EXPECT_LT(integer(-1), integer(0));
}

TEST(PlainValues, AreTriviallyCopyable) {
    EXPECT_TRUE(std::is_trivially_copyable_v<inspector_string>);
    EXPECT_TRUE(std::is_trivially_copyable_v<integer>);
    EXPECT_TRUE(std::is_trivially_copyable_v<boolean>);
    EXPECT_TRUE(std::is_trivially_copyable_v<ConstData>);
}

TEST(InspectorContext, LeadsFromOneOfItsHalvesToTheOther) {
    struct HostContext : InspectorContext, InspectorYieldContext {};
    HostContext host;
    InspectorContext* const context = &host;
    EXPECT_EQ(static_cast<InspectorYieldContext*>(&host), dynamic_cast<InspectorYieldContext*>(context));
    EXPECT_EQ(nullptr, host.trickle);
}
