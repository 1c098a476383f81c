#include "Evaluator/Output.h"

#include <gtest/gtest.h>

#include <limits>

#include "Evaluator/Exceptions.h"
#include "TextOf.h"

TEST(Buffer, OverASpanWritesInPlaceUpToItsEnd) {
    unsigned char bytes[] = "........";
    Buffer buffer(Data(bytes, 5));
    buffer << "ab"
           << ""
           << "cd";
    EXPECT_EQ("abcd", TextOf(buffer.Written()));
    EXPECT_EQ(1u, buffer.Room().Size());
    buffer << "e";
    EXPECT_EQ("abcde...", TextOf({bytes, 8}));
    EXPECT_TRUE(buffer.Room().Empty());
}

TEST(Buffer, OverASpanRefusesWhatDoesNotFitAndKeepsWhatItHas) {
    unsigned char bytes[] = "........";
    Buffer buffer(Data(bytes, 5));
    buffer << "abc";
    EXPECT_THROW(buffer << "def", DataOverflow);
    EXPECT_EQ("abc", TextOf(buffer.Written()));
    EXPECT_EQ("abc.....", TextOf({bytes, 8}));
}

TEST(Buffer, OverAnEmptySpanHoldsNothing) {
    Buffer buffer{Data()};
    buffer << "";
    EXPECT_THROW(buffer << "a", DataOverflow);
    EXPECT_TRUE(buffer.Written().Empty());
}

TEST(Buffer, CountsWhatWasPutIntoItsRoom) {
    unsigned char bytes[4];
    Buffer buffer{Data(bytes, 4)};
    buffer << "a";
    buffer.Room() << "bc";
    buffer.Advance(2);
    EXPECT_EQ("abc", TextOf(buffer.Written()));
    EXPECT_THROW(buffer.Advance(2), DataOverflow);
    buffer.Advance(0);
    EXPECT_EQ("abc", TextOf(buffer.Written()));
}

TEST(Buffer, OfItsOwnGrows) {
    Buffer buffer;
    EXPECT_TRUE(buffer.Written().Empty());
    std::string expected;
    for (int line = 0; line < 10'000; ++line) {
        buffer << "0123456789";
        expected += "0123456789";
    }
    EXPECT_EQ(expected, TextOf(buffer.Written()));
}

TEST(Buffer, CanBeWrittenIntoItself) {
    Buffer buffer;
    buffer << "0123456789ABCDEF";
    for (int doubling = 0; doubling < 4; ++doubling) buffer << buffer.Written();
    std::string expected;
    for (int part = 0; part < 16; ++part) expected += "0123456789ABCDEF";
    EXPECT_EQ(expected, TextOf(buffer.Written()));
}

TEST(Numeral, WritesEveryKindOfNumber) {
    EXPECT_EQ("0", TextOf(Numeral(static_cast<unsigned char>(0))));
    EXPECT_EQ("255", TextOf(Numeral(static_cast<unsigned char>(255))));
    EXPECT_EQ("65535", TextOf(Numeral(static_cast<unsigned short>(65535))));
    EXPECT_EQ("18446744073709551615", TextOf(Numeral(~0ul)));
    EXPECT_EQ("9223372036854775807", TextOf(Numeral(std::numeric_limits<long long>::max())));
    EXPECT_EQ("-9223372036854775808", TextOf(Numeral(std::numeric_limits<long long>::min())));
    EXPECT_EQ("-1", TextOf(Numeral(-1ll)));
}

TEST(Numeral, HasAtLeastTheDigitsOfItsWidth) {
    EXPECT_EQ("07", TextOf(Numeral(static_cast<unsigned char>(7), 2)));
    EXPECT_EQ("007", TextOf(Numeral(static_cast<unsigned short>(7), 3)));
    EXPECT_EQ("123", TextOf(Numeral(123ul, 2)));
    EXPECT_EQ("-0005", TextOf(Numeral(-5ll, 4)));
    EXPECT_EQ("0", TextOf(Numeral(0ul, 0)));
}

TEST(Numeral, IsPaddedBehindTheSign) {
    EXPECT_EQ("09", TextOf(Numeral(9ul).PadTo(2)));
    EXPECT_EQ("-09", TextOf(Numeral(-9ll).PadTo(2)));
    EXPECT_EQ("-0009", TextOf(Numeral(-9ll).PadTo(2).PadTo(4)));
    EXPECT_EQ("1234", TextOf(Numeral(1234ul).PadTo(2)));
}

TEST(Numeral, RefusesMoreThanFortyDigits) {
    EXPECT_EQ(std::string(39, '0') + "7", TextOf(Numeral(7ul, 40)));
    EXPECT_EQ("-" + std::string(39, '0') + "7", TextOf(Numeral(-7ll, 40)));
    EXPECT_THROW(Numeral(7ul, 41), DataOverflow);
    Numeral numeral(-12ll);
    EXPECT_THROW(numeral.PadTo(~0ul), DataOverflow);
    EXPECT_EQ("-12", TextOf(numeral));
}

TEST(Numeral, MayBeCopied) {
    Numeral copy(0ul);
    {
        Numeral const original(-42ll, 3);
        copy = original;
    }
    EXPECT_EQ("-042", TextOf(copy));
}
