#include "Evaluator/Network.h"

#include <gtest/gtest.h>

#include "Evaluator/Exceptions.h"
#include "TextOf.h"

TEST(TextToIPAddress, PutsTheFirstNumberInTheMostSignificantByte) {
    EXPECT_EQ(0xC0A80001u, TextToIPAddress("192.168.0.1"));
    EXPECT_EQ(0u, TextToIPAddress("0.0.0.0"));
    EXPECT_EQ(0xFFFFFFFFu, TextToIPAddress("255.255.255.255"));
    EXPECT_EQ(0x0A141E28u, TextToIPAddress("10.20.30.40"));
}

TEST(TextToIPAddress, TakesNothingElse) {
    std::string const texts[] = {"",
                                 "1",
                                 "1.2.3",
                                 "1.2.3.",
                                 "1.2.3.4.",
                                 "1.2.3.4.5",
                                 ".1.2.3.4",
                                 "1..2.3",
                                 "256.1.1.1",
                                 "1.1.1.256",
                                 "01.2.3.4",
                                 "1.2.3.00",
                                 " 1.2.3.4",
                                 "1.2.3.4 ",
                                 "1.2.3.4\n",
                                 "+1.2.3.4",
                                 "-1.2.3.4",
                                 "1,2,3,4",
                                 "1.2.3.x",
                                 "0x1.2.3.4",
                                 "1.2.3.4/8",
                                 "...",
                                 "::1",
                                 "localhost",
                                 "1.2.3.1000",
                                 "4294967297.0.0.1",
                                 std::string("1.2.3.4\0", 8)};
    for (std::string const& text : texts)
        EXPECT_THROW(TextToIPAddress(BytesOf(text)), ParsingFailure) << text;
}
