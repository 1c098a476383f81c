// Binary property lists that are cut off, lie about sizes or lead astray.

#include <gtest/gtest.h>

#include "platform/BinaryListBuilder.h"
#include "platform/PropertyListText.h"

namespace {

using namespace std::string_literals;

std::string Refused(std::string const& reason) { return "refused: binary property list: " + reason; }

BinaryList Sample() {
    BinaryList list;
    list.Add("\xD1\x01\x02");
    list.Add("\x53key");
    list.AddArray({3, 4});
    list.Add("\x10\x2A");
    list.Add("\x63\x00\x41\x00\x42\x00\x43"s);
    return list;
}

TEST(SpoiltBinaryLists, AreRefusedWhereverTheyAreCutOff) {
    std::string const whole = Sample().Bytes();
    ASSERT_EQ(R"({"key" = (42, "ABC")})", List(whole));
    for (std::size_t size = 8; size < whole.size(); ++size)
        EXPECT_TRUE(List(whole.substr(0, size)).starts_with("refused: ") || size == 8) << size;
}

TEST(SpoiltBinaryLists, NeverCrashWhateverOneByteIs) {
    std::string const whole = Sample().Bytes();
    std::size_t refused = 0;
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            std::string bytes = whole;
            bytes[at] = static_cast<char>(value);
            if (List(bytes).starts_with("refused")) ++refused;
        }
    }
    EXPECT_GT(refused, whole.size() * 100);
}

TEST(SpoiltBinaryLists, MayNotContainThemselves) {
    BinaryList direct;
    direct.AddArray({0});
    EXPECT_EQ(Refused("it contains itself"), List(direct.Bytes()));

    BinaryList roundabout;
    roundabout.Add("\xD1\x01\x02");
    roundabout.Add("\x51k");
    roundabout.AddArray({0});
    EXPECT_EQ(Refused("it contains itself"), List(roundabout.Bytes()));
}

TEST(SpoiltBinaryLists, MayNotLeadOutsideTheObjects) {
    BinaryList list = Sample();
    for (std::uint64_t const offset : {0, 7, 0xFFFF}) {
        list.Misplace(3, offset);
        EXPECT_EQ(Refused("an object lies outside of it"), List(list.Bytes())) << offset;
    }
    list = Sample();
    list.Misplace(3, list.OffsetOf(4) + 7);  // the table of offsets
    EXPECT_EQ(Refused("an object lies outside of it"), List(list.Bytes()));
}

TEST(SpoiltBinaryLists, MayNotReferToObjectsThatAreNotThere) {
    BinaryList list;
    list.AddArray({1});
    EXPECT_EQ(Refused("a reference leads to no object"), List(list.Bytes()));
}

TEST(SpoiltBinaryLists, MayNotHaveLargerObjectsThanTheFile) {
    for (std::string const& marker : {"\x4F"s, "\x5F"s, "\x6F"s, "\xAF"s, "\xCF"s, "\xDF"s}) {
        for (std::string const& size :
             {"\x12\xFF\xFF\xFF\xFF"s, "\x13" + std::string(8, '\xFF'), "\x13\x7F"s + std::string(7, '\xFF'),
              "\x13\x80"s + std::string(7, '\0')}) {
            BinaryList list;
            list.Add(marker + size);
            EXPECT_EQ(Refused("an object is cut off"), List(list.Bytes()))
                << testing::PrintToString(marker + size);
        }
        BinaryList list;
        list.Add(marker + "\x51");
        EXPECT_EQ(Refused("an object has no size"), List(list.Bytes())) << testing::PrintToString(marker);
    }
}

TEST(SpoiltBinaryLists, MayNotHaveTablesThatDoNotFit) {
    BinaryList const list = Sample();
    std::string const whole = list.Bytes(), front = whole.substr(0, whole.size() - 32);
    for (std::uint64_t const count : {std::uint64_t{6}, std::uint64_t{1} << 31, ~std::uint64_t{0}})
        EXPECT_EQ(Refused("its table of objects is outside of it"),
                  List(front + list.Trailer(count, front.size() - 10)));
    for (std::uint64_t const table :
         {std::uint64_t{0}, std::uint64_t{7}, std::uint64_t{1} << 40, ~std::uint64_t{0}})
        EXPECT_EQ(Refused("its table of objects is outside of it"), List(front + list.Trailer(5, table)));
    EXPECT_EQ(Refused("it has no root"), List(front + list.Trailer(0, front.size())));
}

TEST(SpoiltBinaryLists, MayNotHaveARootThatIsNotThere) {
    BinaryList list = Sample();
    list.root = 5;
    EXPECT_EQ(Refused("it has no root"), List(list.Bytes()));
}

TEST(SpoiltBinaryLists, MayNotHaveNumbersOfImpossibleSizes) {
    for (std::size_t const size : {0, 9, 255}) {
        BinaryList list = Sample();
        list.offsetSize = size;
        EXPECT_EQ(Refused("numbers in it have an impossible size"), List(list.Bytes())) << size;
        list = Sample();
        list.referenceSize = size;
        EXPECT_EQ(Refused("numbers in it have an impossible size"), List(list.Bytes())) << size;
    }
}

// So a small file cannot ask for much memory.
TEST(SpoiltBinaryLists, MayNotShareBytesBetweenObjects) {
    BinaryList list;
    list.AddArray({1, 2, 3});
    std::size_t const first = list.Add(BinaryList::Sized(0x40, 32) + std::string(32, 'x'));
    for (int i = 0; i < 2; ++i) list.Misplace(list.Add(""), list.OffsetOf(first));
    EXPECT_EQ(Refused("its objects share bytes"), List(list.Bytes()));
}

TEST(SpoiltBinaryLists, MayBe512DeepAndNoDeeper) {
    auto const nested = [](std::size_t levels) {
        BinaryList list;
        list.referenceSize = 2;
        for (std::size_t i = 0; i + 1 < levels; ++i) list.AddArray({i + 1});
        list.AddArray({});
        return List(list.Bytes());
    };
    EXPECT_EQ(std::string(512, '(') + std::string(512, ')'), nested(512));
    EXPECT_EQ("refused: containers lie more than 512 deep in one another, which is the limit", nested(513));
}

// Two chains of 300 arrays, of which the second ends in the beginning of the first, which was read before.
TEST(SpoiltBinaryLists, MayNotBeDeepByObjectsThatWereReadBefore) {
    BinaryList list;
    list.referenceSize = 2;
    constexpr std::size_t chain = 300;
    list.AddArray({1, 1 + chain});
    for (std::size_t i = 1; i < chain; ++i) list.AddArray({i + 1});
    list.AddArray({});
    for (std::size_t i = 1; i < chain; ++i) list.AddArray({chain + i + 1});
    list.AddArray({1});
    EXPECT_EQ("refused: containers lie more than 512 deep in one another, which is the limit",
              List(list.Bytes()));
}

// 60 arrays, each holding the next one twice: 2^60 ways, but 60 objects.
TEST(SpoiltBinaryLists, CostNoMoreThanTheirObjects) {
    BinaryList list;
    for (std::size_t i = 0; i < 60; ++i) list.AddArray({i + 1, i + 1});
    list.AddArray({});
    std::string reason;
    EXPECT_TRUE(ReadList(list.Bytes(), reason)) << reason;
}

}  // namespace
