#include <gtest/gtest.h>

#include <vector>

#include "VersionsOfTests.h"

namespace {

// Ascending; those in one row are equal.
std::vector<std::vector<MacVersion>> const kAscending = {
    {{}, Numeric(0, 0, 0, 0x80, 0), Numeric(0, 0, 0, 0xA0, 0)},
    {Numeric(0, 0, 0, 0xA0, 1)},
    {Numeric(0, 0, 1)},
    {Numeric(0, 0, 65535)},
    {Numeric(0, 1)},
    {Numeric(0, 65535, 65535, 0xFF, 65535)},
    // A number without a stage is the lowest.
    {Numeric(1, 2, 0, 0x00, 1)},
    {Numeric(1, 2, 0, 0x00, 65535)},
    {Numeric(1, 2, 0, 0x01, 0)},
    {Numeric(1, 2, 0, 0x01, 9)},
    {Numeric(1, 2, 0, 0x20, 0)},
    {Numeric(1, 2, 0, 0x20, 1)},
    {Numeric(1, 2, 0, 0x40, 0)},
    {Numeric(1, 2, 0, 0x40, 1)},
    {Numeric(1, 2, 0, 0x60, 0)},
    {Numeric(1, 2, 0, 0x60, 1)},
    {Numeric(1, 2, 0, 0x60, 65535)},
    {Numeric(1, 2, 0, 0x7F, 3)},
    {Numeric(1, 2, 0, 0x80, 1)},
    {Numeric(1, 2, 0, 0x80, 65535)},
    {Numeric(1, 2, 0, 0x81, 0)},
    // The release.
    {Numeric(1, 2), Numeric(1, 2, 0, 0x80, 0), Numeric(1, 2, 0, 0xA0, 0)},
    {Numeric(1, 2, 0, 0xA0, 1)},
    {Numeric(1, 2, 0, 0xA0, 32768)},
    {Numeric(1, 2, 0, 0xA1, 0)},
    {Numeric(1, 2, 0, 0xFF, 65535)},
    {Numeric(1, 2, 1, 0x00, 1)},
    {Numeric(1, 2, 1), Numeric(1, 2, 1, 0x80), Numeric(1, 2, 1, 0xA0)},
    {Numeric(1, 2, 255)},
    {Numeric(1, 2, 256)},
    {Numeric(1, 2, 32767)},
    {Numeric(1, 2, 32768)},
    {Numeric(1, 10, 0, 0x20, 1)},
    {Numeric(1, 10)},
    {Numeric(1, 32768)},
    {Numeric(2, 0)},
    {Numeric(256, 0)},
    {Numeric(32767, 0)},
    {Numeric(32768, 0)},
    {Numeric(65535, 65535, 65535, 0xA0, 65535)},
};

}  // namespace

TEST(CannonicalCompareVersions, TellsOrderByMinusOneZeroAndOne) {
    for (std::size_t i = 0; i < kAscending.size(); ++i) {
        for (std::size_t j = 0; j < kAscending.size(); ++j) {
            int const expected = i < j ? -1 : i > j;
            for (MacVersion const& left : kAscending[i]) {
                for (MacVersion const& right : kAscending[j]) {
                    EXPECT_EQ(expected, CannonicalCompareVersions(left, right))
                        << Fields(left) << " and " << Fields(right);
                    EXPECT_EQ(expected, CompareVersions(left, right))
                        << Fields(left) << " and " << Fields(right);
                }
            }
        }
    }
}

TEST(CannonicalCompareVersions, OrdersTheTextsOfAReleasesLife) {
    char const* const ascending[] = {"1.2d1", "1.2a1", "1.2b1", "1.2f1", "1.2", "1.2.0.1", "1.2.1d1"};
    for (std::size_t i = 0; i + 1 < std::size(ascending); ++i)
        EXPECT_EQ(-1, CannonicalCompareVersions(Parsed(ascending[i]), Parsed(ascending[i + 1])))
            << ascending[i];
}

TEST(CannonicalCompareVersions, HasFourTextsOfARelease) {
    for (char const* left : {"1.2", "1.2f", "1.2f0", "1.2.0.0", "1.2.0", "1.2.0f0"}) {
        for (char const* right : {"1.2", "1.2f", "1.2f0", "1.2.0.0", "1.2.0", "1.2.0f0"})
            EXPECT_EQ(0, CannonicalCompareVersions(Parsed(left), Parsed(right))) << left << " " << right;
    }
}

TEST(CannonicalCompareVersions, LooksAtNoText) {
    MacVersion left = Numeric(1, 0);
    left.text = "b";
    MacVersion right = Numeric(2, 0);
    right.text = "a";
    EXPECT_EQ(-1, CannonicalCompareVersions(left, right));
    EXPECT_GT(CompareVersions(left, right), 0);
}
