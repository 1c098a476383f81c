#include "frame/Operators.h"

#include <gtest/gtest.h>

#include "RegistrationLog.h"
#include "Slot.h"
#include "frame/Types.h"

namespace {

int calls;

// A number whose operators count their calls.
struct Amount {
    long long number;
    friend Amount operator+(Amount const& a, Amount const& b) { return ++calls, Amount{a.number + b.number}; }
    friend Amount operator-(Amount const& a, Amount const& b) { return ++calls, Amount{a.number - b.number}; }
    friend Amount operator*(Amount const& a, integer const& b) { return ++calls, Amount{a.number * b}; }
    friend Amount operator/(Amount const& a, integer const& b) { return ++calls, Amount{a.number / b}; }
    friend bool operator==(Amount const& a, Amount const& b) { return ++calls, a.number == b.number; }
    friend bool operator<(Amount const& a, Amount const& b) { return ++calls, a.number < b.number; }
    friend bool operator<=(Amount const& a, Amount const& b) { return ++calls, a.number <= b.number; }
    friend bool Contains(Amount const& a, Amount const& b) { return ++calls, a.number % b.number == 0; }
};

integer numberOf(Amount const& amount) { return ++calls, amount.number; }
integer negativeOf(Amount const& amount) { return ++calls, -amount.number; }

Amount const six{6};
Amount const three{3};
integer const two = 2;

template <class R>
R Compute(std::string const& row, void const* left, void const* right) {
    Registration const one = RegisteredAs(row);
    EXPECT_EQ(128u, one.recordSize);
    EXPECT_EQ(one.record, one.context);
    calls = 0;
    one.compute(nullptr, left, right, one.context);
    EXPECT_EQ(0, calls);
    Slot<R> slot;
    one.compute(slot, left, right, one.context);
    EXPECT_EQ(1, calls);
    return slot.Value();
}

}  // namespace

TEST(Cast, ConvertsByTheFunctionOfItsOwnRecord) {
    {
        Cast<Amount, integer> const plain{"integer", "amount", "integer", numberOf};
        Cast<Amount, integer> const negative{"debt", "amount", "integer", negativeOf,
                                             DependsOnlyOnParameters};
        Registration const one = RegisteredAs("cast \"integer\" of \"amount\": \"integer\"");
        Registration const other = RegisteredAs("cast \"debt\" of \"amount\": \"integer\" pure");
        EXPECT_EQ(128u, one.recordSize);
        EXPECT_EQ(&plain, one.context);
        calls = 0;
        one.cast(nullptr, &six, one.context);
        EXPECT_EQ(0, calls);
        Slot<integer> slot;
        one.cast(slot, &six, one.context);
        EXPECT_EQ(6, slot.Value());
        other.cast(slot, &six, other.context);
        EXPECT_EQ(-6, slot.Value());
    }
    EXPECT_TRUE(Registered().empty());
}

TEST(Operators, CallTheOperatorsOfTheValues) {
    {
        OperatorPlus<Amount, Amount, Amount> const plus{"amount", "amount", "amount"};
        BinaryOperatorMinus<Amount, Amount, Amount> const minus{"amount", "amount", "amount"};
        OperatorTimes<Amount, integer, Amount> const times{"amount", "integer", "amount"};
        OperatorDivide<Amount, integer, Amount> const divide{"amount", "integer", "amount"};
        EXPECT_EQ(9, Compute<Amount>("operator 0 \"amount\" \"amount\": \"amount\"", &six, &three).number);
        EXPECT_EQ(3, Compute<Amount>("operator 1 \"amount\" \"amount\": \"amount\"", &six, &three).number);
        EXPECT_EQ(12, Compute<Amount>("operator 2 \"amount\" \"integer\": \"amount\"", &six, &two).number);
        EXPECT_EQ(3, Compute<Amount>("operator 3 \"amount\" \"integer\": \"amount\"", &six, &two).number);
    }
    EXPECT_TRUE(Registered().empty());
}

TEST(Relations, CallTheRelationsOfTheValues) {
    RelationEqual<Amount, Amount> const equal{"amount", "amount"};
    RelationLess<Amount, Amount> const less{"amount", "amount"};
    RelationLessOrEqual<Amount, Amount> const lessOrEqual{"amount", "amount"};
    RelationContains<Amount, Amount> const contains{"amount", "amount"};
    auto const holds = [](int code, Amount const& left, Amount const& right) -> bool {
        return Compute<boolean>("operator " + std::to_string(code) + " \"amount\" \"amount\": \"boolean\"",
                                &left, &right);
    };
    EXPECT_TRUE(holds(6, six, six));
    EXPECT_FALSE(holds(6, six, three));
    EXPECT_TRUE(holds(7, three, six));
    EXPECT_FALSE(holds(7, six, six));
    EXPECT_TRUE(holds(8, six, six));
    EXPECT_FALSE(holds(8, six, three));
    EXPECT_TRUE(holds(11, six, three));
    EXPECT_FALSE(holds(11, three, six));
}

TEST(Relations, RegisterTheirDependencyMarker) {
    RelationEqual<Amount, Amount> const equal{"amount", "amount", DependsOnlyOnParameters};
    OperatorPlus<Amount, Amount, Amount> const plus{"amount", "amount", "amount", DependsOnlyOnParameters};
    EXPECT_EQ((std::vector<std::string>{"operator 6 \"amount\" \"amount\": \"boolean\" pure",
                                        "operator 0 \"amount\" \"amount\": \"amount\" pure"}),
              RegisteredRows());
}

TEST(Relations, OfStringsContainByBytes) {
    RelationContains<inspector_string, inspector_string> const contains{"string", "string"};
    inspector_string const whole(reinterpret_cast<unsigned char const*>("foobar"), 6);
    inspector_string const part(reinterpret_cast<unsigned char const*>("oba"), 3);
    Slot<boolean> slot;
    Registration const one = Registered()[0];
    one.compute(slot, &whole, &part, one.context);
    EXPECT_TRUE(slot.Value());
}
