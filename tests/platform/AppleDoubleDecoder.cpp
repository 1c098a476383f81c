// The decoder of AppleDouble images and AFP records, on good and bad bytes.

#include "files/AppleDouble.h"

#include <gtest/gtest.h>

#include "platform/AppleDoubleBuilder.h"

using Platform::AppleDoubleFacts;
using Platform::MemorySource;

namespace {

std::span<unsigned char const> Span(std::string const& bytes) {
    return {reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size()};
}

std::optional<AppleDoubleFacts> Decode(std::string const& image) {
    return Platform::DecodeAppleDouble(MemorySource(Span(image)));
}

std::string FinderText(AppleDoubleFacts const& facts) {
    return facts.finderInfo ? std::string(facts.finderInfo->begin(), facts.finderInfo->begin() + 8)
                            : "(none)";
}

std::string Dates(std::uint32_t created, std::uint32_t backedUp) {
    return BigEndian(created, 4) + BigEndian(1, 4) + BigEndian(backedUp, 4) + BigEndian(2, 4);
}

}  // namespace

TEST(AppleDoubleDecoder, FinderInfoAndFork) {
    auto const facts = Decode(AppleDoubleImage({{9, FinderInformation("TEXTttxt")}, {2, "fork"}}));
    ASSERT_TRUE(facts);
    EXPECT_EQ("TEXTttxt", FinderText(*facts));
    ASSERT_TRUE(facts->resourceFork);
    EXPECT_EQ(82u, facts->resourceFork->offset);
    EXPECT_EQ(4u, facts->resourceFork->length);
    EXPECT_FALSE(facts->created);
    EXPECT_FALSE(facts->backedUp);
    EXPECT_FALSE(facts->locked);
}

TEST(AppleDoubleDecoder, BothVersionsAreRead) {
    EXPECT_TRUE(Decode(AppleDoubleImage({}, 0x00051607, 0x00010000)));
    EXPECT_TRUE(Decode(AppleDoubleImage({}, 0x00051607, 0x00020000)));
}

TEST(AppleDoubleDecoder, OtherMagicOrVersionIsNoImage) {
    EXPECT_FALSE(Decode(AppleDoubleImage({}, 0x00051600)));
    EXPECT_FALSE(Decode(AppleDoubleImage({}, 0x00051607, 0x00030000)));
    EXPECT_FALSE(Decode(std::string(26, '\0')));
}

TEST(AppleDoubleDecoder, FinderInfoMayBeLonger) {
    auto const facts = Decode(AppleDoubleImage({{9, FinderInformation("TEXTttxt") + std::string(100, 'A')}}));
    ASSERT_TRUE(facts);
    EXPECT_EQ("TEXTttxt", FinderText(*facts));
}

TEST(AppleDoubleDecoder, DatesUnlessUnknown) {
    auto const known = Decode(AppleDoubleImage({{8, Dates(100, 0xFFFFFFFF)}}));
    ASSERT_TRUE(known);
    EXPECT_EQ(100, known->created);
    EXPECT_EQ(-1, known->backedUp);
    auto const unknown = Decode(AppleDoubleImage({{8, Dates(0x80000000, 0x80000000)}}));
    ASSERT_TRUE(unknown);
    EXPECT_FALSE(unknown->created);
    EXPECT_FALSE(unknown->backedUp);
}

TEST(AppleDoubleDecoder, LockedBitOfEitherEntry) {
    EXPECT_TRUE(Decode(AppleDoubleImage({{10, BigEndian(1, 4)}}))->locked);
    EXPECT_FALSE(Decode(AppleDoubleImage({{10, BigEndian(2, 4)}}))->locked);
    EXPECT_TRUE(Decode(AppleDoubleImage({{14, BigEndian(0x20, 4)}}))->locked);
    EXPECT_FALSE(Decode(AppleDoubleImage({{14, BigEndian(0x1, 4)}}))->locked);
    EXPECT_TRUE(Decode(AppleDoubleImage({{10, BigEndian(1, 4)}, {14, BigEndian(0, 4)}}))->locked);
}

TEST(AppleDoubleDecoder, EntriesThatAreTooShortAreIgnored) {
    auto const facts =
        Decode(AppleDoubleImage({{9, std::string(31, 'x')}, {8, std::string(15, 'x')}, {10, "\1\1\1"}}));
    ASSERT_TRUE(facts);
    EXPECT_EQ("(none)", FinderText(*facts));
    EXPECT_FALSE(facts->created);
    EXPECT_FALSE(facts->locked);
}

TEST(AppleDoubleDecoder, TruncatedImagesNeverReadBehindTheirEnd) {
    std::string const image =
        AppleDoubleImage({{8, Dates(1, 2)}, {9, FinderInformation("TEXTttxt")}, {2, "fork"}});
    for (std::size_t size = 0; size < image.size(); ++size) {
        auto const facts = Decode(image.substr(0, size));
        EXPECT_EQ(size >= 26 + 36, facts.has_value()) << size;
        if (facts) {
            EXPECT_FALSE(facts->resourceFork) << size;
        }
        if (facts) {
            EXPECT_EQ(size >= 26 + 36 + 16 + 32, facts->finderInfo.has_value()) << size;
        }
    }
}

TEST(AppleDoubleDecoder, EntryOutsideTheImageIsIgnored) {
    std::string image = AppleDoubleImage({{2, "fork"}});
    image.replace(30, 8, BigEndian(0xFFFFFFFF, 4) + BigEndian(0xFFFFFFFF, 4));
    auto const facts = Decode(image);
    ASSERT_TRUE(facts);
    EXPECT_FALSE(facts->resourceFork);
}

TEST(AppleDoubleDecoder, TooManyEntriesAreNoImage) {
    std::vector<std::pair<std::uint32_t, std::string>> entries(20, {15, "abcd"});
    EXPECT_TRUE(Decode(AppleDoubleImage(entries)));
    entries.emplace_back(15, "abcd");
    EXPECT_FALSE(Decode(AppleDoubleImage(entries)));
}

TEST(AppleDoubleDecoder, EmptyForkIsAFork) {
    auto const facts = Decode(AppleDoubleImage({{2, ""}}));
    ASSERT_TRUE(facts && facts->resourceFork);
    EXPECT_EQ(0u, facts->resourceFork->length);
}

TEST(AfpInfoDecoder, FinderInfoAndBackupDate) {
    std::string const record = AfpInfo(77, FinderInformation("APPLhack"));
    auto const facts = Platform::DecodeAfpInfo(Span(record));
    ASSERT_TRUE(facts);
    EXPECT_EQ("APPLhack", FinderText(*facts));
    EXPECT_EQ(77, facts->backedUp);
    EXPECT_TRUE(Platform::DecodeAfpInfo(Span(record + std::string(1, '\0'))));
    std::string const neverBackedUp = AfpInfo(0x80000000, FinderInformation("APPLhack"));
    EXPECT_FALSE(Platform::DecodeAfpInfo(Span(neverBackedUp))->backedUp);
}

TEST(AfpInfoDecoder, BadRecordsAreNone) {
    std::string const record = AfpInfo(77, FinderInformation("APPLhack"));
    EXPECT_FALSE(Platform::DecodeAfpInfo(Span(record.substr(0, 59))));
    EXPECT_FALSE(Platform::DecodeAfpInfo({}));
    std::string otherSignature = record;
    otherSignature[0] = 'B';
    EXPECT_FALSE(Platform::DecodeAfpInfo(Span(otherSignature)));
    std::string otherVersion = record;
    otherVersion[6] = 2;
    EXPECT_FALSE(Platform::DecodeAfpInfo(Span(otherVersion)));
}
