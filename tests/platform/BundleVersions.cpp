#include "bundles/BundleVersion.h"

#include <gtest/gtest.h>

#include <string>

TEST(BundleVersions, ArePackedIntoANumber) {
    struct {
        char16_t const* text;
        UInt32 number;
    } const cases[] = {
        {u"1.2.3", 0x01238000},
        {u"10.3.9", 0x10398000},
        {u"10.4.11", 0},
        {u"1.2b12", 0x0120600C},
        {u".5", 0x00508000},
        {u"1.10", 0},
        {u"2", 0x02008000},
        {u"2.0f256", 0},
        {u"1.2fc1", 0},
        {u"0", 0x00008000},
        {u"312", 0},
        {u"1.2.3.4", 0},
        {u"", 0},
        {u".", 0},
        {u"1.", 0},
        {u"1..2", 0},
        {u".5.6", 0x00568000},
        {u"99.9.9", 0x99998000},
        {u"1d", 0x01002000},
        {u"1a0", 0x01004000},
        {u"1.2b255", 0x012060FF},
        {u"1.2b256", 0},
        {u"1f1", 0x01008001},
        {u"1.2.3d001", 0x01232001},
        {u"1b0001", 0},
        {u"b1", 0},
        {u"1B1", 0},
        {u"1 ", 0},
        {u" 1", 0},
        {u"v1", 0},
        {u"-1", 0},
        {u"1.2.3.", 0},
        {u"10.2.3b255", 0x102360FF},
        {u"10.2.3b0255", 0},
        {u"\u0661", 0},
        {u"1b2 ", 0},
    };
    for (auto const& [text, number] : cases)
        EXPECT_EQ(number, Platform::PackedVersion(text))
            << std::string(text, text + std::char_traits<char16_t>::length(text));
}
