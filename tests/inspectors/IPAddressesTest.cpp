#include "system/IPAddresses.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Evaluator/Exceptions.h"
#include "RegistrationLog.h"
#include "modules/IPAddressCastsModule.h"
#include "modules/IPAddressesModule.h"
#include "support/Owned.h"

namespace {

ip_address Address(std::string_view text) { return ip_address_of(Bytes(text), text.size()); }

std::string AsText(std::uint32_t number) {
    inspector_string const text = IPasString({number});
    return {text.begin(), text.end()};
}

}  // namespace

TEST(IPAddresses, AreFourNumbers) {
    EXPECT_EQ(0xC0A80001u, Address("192.168.0.1").number);
    EXPECT_EQ(0u, Address("0.0.0.0").number);
    EXPECT_EQ(0xFFFFFFFFu, Address("255.255.255.255").number);
}

TEST(IPAddresses, OfOtherTextsAreNone) {
    for (char const* const text : {"", "1.2.3", "1.2.3.4.5", "256.1.1.1", "01.2.3.4", " 1.2.3.4", "1.2.3.4\n",
                                   "::1", "localhost", "0x7f.0.0.1", "2130706433"})
        EXPECT_THROW(Address(text), NoSuchObject) << text;
}

TEST(IPAddresses, AsTextAreWhatTheyWereMadeOf) {
    for (char const* const text : {"192.168.0.1", "10.0.0.1", "0.0.0.0", "255.255.255.255", "1.20.0.200"})
        EXPECT_EQ(text, AsText(Address(text).number));
    EXPECT_EQ("1.2.3.4", AsText(0x01020304));
}

TEST(IPAddresses, AreEqualWhenTheirNumbersAre) {
    EXPECT_TRUE(Address("10.0.0.1") == ip_address{0x0A000001});
    EXPECT_FALSE(Address("10.0.0.1") == Address("10.0.1.0"));
    EXPECT_FALSE(Address("128.0.0.0") == Address("0.0.0.0"));
}

TEST(IPAddressModules, RegisterTheirTablesInOrder) {
    ExpectRows<IPAddressCastsModule>({"cast \"string\" of \"ip address\": \"string\""});
    ExpectRows<IPAddressesModule>({"type \"ip address\"",
                                   "operator 6 \"ip address\" \"ip address\": \"boolean\"",
                                   "property \"ip address\" \"ip addresses\" [\"string\"]: \"ip address\""});
}

TEST(IPAddressModules, RegisterTheSizeOfTheirType) {
    IPAddressesModule const module;
    EXPECT_EQ(4u, RegisteredAs("type \"ip address\"").valueSize);
}
