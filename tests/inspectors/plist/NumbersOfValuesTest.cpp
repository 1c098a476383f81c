// Numbers and truth values.

#include <limits>

#include "plist/Lists.h"

namespace {

integer IntegerOf(std::string_view bytes) { return integer_of_value(List(bytes).Value()); }

}  // namespace

TEST(IntegersOfValues, AreWholeNumbersOf32Bits) {
    EXPECT_EQ(0, IntegerOf("<integer>0</integer>"));
    EXPECT_EQ(-1, IntegerOf("<integer>-1</integer>"));
    EXPECT_EQ(2147483647, IntegerOf("<integer>2147483647</integer>"));
    EXPECT_EQ(-2147483648LL, IntegerOf("<integer>-2147483648</integer>"));
}

TEST(IntegersOfValues, AreNotWiderOnes) {
    for (char const* number : {"2147483648", "-2147483649", "4294967295", "1099511627776"}) {
        EXPECT_THROW(IntegerOf(std::string("<integer>") + number + "</integer>"), NoSuchObject) << number;
    }
}

TEST(IntegersOfValues, AreRealNumbersWithoutAFraction) {
    EXPECT_EQ(2, IntegerOf("<real>2.0</real>"));
    EXPECT_EQ(-2147483648LL, IntegerOf("<real>-2147483648</real>"));
}

TEST(IntegersOfValues, AreNoFractions) {
    EXPECT_THROW(IntegerOf("<real>2.5</real>"), NoSuchObject);
    EXPECT_THROW(IntegerOf("<real>-0.001</real>"), NoSuchObject);
}

TEST(IntegersOfValues, AreNoRealNumbersThatAreTooLarge) {
    EXPECT_THROW(IntegerOf("<real>2147483648</real>"), NoSuchObject);
    EXPECT_THROW(IntegerOf("<real>1e300</real>"), NoSuchObject);
    EXPECT_THROW(IntegerOf(BinaryReal(std::numeric_limits<double>::quiet_NaN())), NoSuchObject);
    EXPECT_THROW(IntegerOf(BinaryReal(-std::numeric_limits<double>::infinity())), NoSuchObject);
}

TEST(BooleansOfValues, AreTrueOrFalse) {
    EXPECT_TRUE(boolean_of_value(List("<true/>").Value()));
    EXPECT_FALSE(boolean_of_value(List("<false/>").Value()));
}

TEST(BooleansOfValues, AreNoNumbers) {
    EXPECT_THROW(boolean_of_value(List("<integer>1</integer>").Value()), NoSuchObject);
}
