// What sorting needs of an order: that it holds of numeric versions and of texts, and that it does not of
// both together.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "VersionsOfTests.h"

namespace {

// Chosen ones around the release, with stages that only a resource can give, and random ones near each other.
std::vector<MacVersion> NumericVersions() {
    std::vector<MacVersion> versions = {
        {},
        Numeric(0, 0, 0, 0xA0, 0),
        Numeric(0, 0, 0, 0x80, 0),
        Numeric(65535, 65535, 65535, 0xFF, 65535),
        Numeric(32768, 0),
        Numeric(0, 32768),
        Numeric(0, 0, 32768),
    };
    for (unsigned int code : {0x00, 0x01, 0x20, 0x40, 0x60, 0x7F, 0x80, 0x81, 0x9F, 0xA0, 0xA1, 0xFF}) {
        for (unsigned int number : {0, 1, 2, 65535}) versions.push_back(Numeric(1, 2, 0, code, number));
    }
    static constexpr unsigned int kCodes[] = {0x00, 0x20, 0x40, 0x60, 0x80, 0xA0, 0xC0, 0x50};
    std::mt19937_64 engine(3);
    auto const below = [&](unsigned int behind) { return static_cast<unsigned int>(engine() % behind); };
    while (versions.size() < 200)
        versions.push_back(Numeric(below(3), below(3), below(2), kCodes[below(8)], below(3)));
    return versions;
}

// A relation of the things of a list, asked of each pair once.
class Relation {
  public:
    template <class Things, class Holds>
    Relation(Things const& things, Holds const& holds) : count(things.size()) {
        for (auto const& left : things) {
            for (auto const& right : things) table.push_back(holds(left, right));
        }
    }
    bool operator()(std::size_t left, std::size_t right) const { return table[left * count + right]; }

  private:
    std::size_t count;
    std::vector<bool> table;
};

// All texts of up to some signs.
std::vector<std::string> AllTexts(std::string_view signs, std::size_t mostSigns) {
    std::vector<std::string> texts = {""};
    std::size_t first = 0;
    for (std::size_t size = 1; size <= mostSigns; ++size) {
        std::size_t const last = texts.size();
        for (; first < last; ++first) {
            for (char sign : signs) texts.push_back(texts[first] + sign);
        }
    }
    return texts;
}

int CompareTexts(std::string const& left, std::string const& right) {
    return LinuxCompareVersions(left.c_str(), right.c_str());
}

void ExpectCircle(char const* one, char const* two, char const* three) {
    EXPECT_TRUE(Parsed(one) < Parsed(two)) << one << ", " << two;
    EXPECT_TRUE(Parsed(two) < Parsed(three)) << two << ", " << three;
    EXPECT_TRUE(Parsed(three) < Parsed(one)) << three << ", " << one;
}

}  // namespace

TEST(OrderOfVersions, OfNumericOnesIsAStrictWeakOrder) {
    std::vector<MacVersion> const versions = NumericVersions();
    std::size_t const count = versions.size();
    ASSERT_EQ(200u, count);
    Relation const less(versions, [](auto const& a, auto const& b) { return a < b; });
    auto const incomparable = [&](std::size_t a, std::size_t b) { return !less(a, b) && !less(b, a); };
    for (std::size_t a = 0; a < count; ++a) {
        ASSERT_FALSE(less(a, a)) << Fields(versions[a]);
        for (std::size_t b = 0; b < count; ++b) {
            ASSERT_FALSE(less(a, b) && less(b, a)) << Fields(versions[a]) << ", " << Fields(versions[b]);
            for (std::size_t c = 0; c < count; ++c) {
                bool const transitive = !(less(a, b) && less(b, c)) || less(a, c);
                bool const asClasses = !(incomparable(a, b) && incomparable(b, c)) || incomparable(a, c);
                ASSERT_TRUE(transitive && asClasses)
                    << Fields(versions[a]) << ", " << Fields(versions[b]) << ", " << Fields(versions[c]);
            }
        }
    }
}

TEST(OrderOfVersions, OfNumericOnesIsThatOfAllThreeRelations) {
    std::vector<MacVersion> const versions = NumericVersions();
    int equal = 0;
    for (MacVersion const& left : versions) {
        for (MacVersion const& right : versions) {
            ASSERT_EQ(left == right, !(left < right) && !(right < left))
                << Fields(left) << ", " << Fields(right);
            ASSERT_EQ(left <= right, !(right < left)) << Fields(left) << ", " << Fields(right);
            ASSERT_EQ(left == right, right == left) << Fields(left) << ", " << Fields(right);
            equal += left == right;
        }
    }
    EXPECT_GT(equal, 200);
}

// Once sorted, each text must come before all that follow it.
TEST(OrderOfVersions, OfTextsIsAStrictOrder) {
    for (std::string_view const signs : {"0129a/", "0a-\xFF"}) {
        std::vector<std::string> texts = AllTexts(signs, 4);
        std::shuffle(texts.begin(), texts.end(), std::mt19937_64(4));
        std::stable_sort(texts.begin(), texts.end(),
                         [](auto const& a, auto const& b) { return CompareTexts(a, b) < 0; });
        for (std::size_t i = 0; i < texts.size(); ++i) {
            for (std::size_t j = i + 1; j < texts.size(); ++j)
                ASSERT_LT(CompareTexts(texts[i], texts[j]), 0) << Shown(texts[i]) << " " << Shown(texts[j]);
        }
    }
}

// A beta comes before the release; but a text that goes on behind "1.0" comes behind it, and what the beta's
// own text goes on with may lie behind that again. So whoever sorts versions of both kinds gets each of these
// as the first one, by the order in which they were found. It cannot be mended here: how two versions compare
// is the contract's.
TEST(OrderOfVersions, OfBothKindsGoesRoundInACircle) {
    ExpectCircle("1.0", "1.0 beta", "1.0b2");
    ExpectCircle("1.0", "1.0-2", "1.0d1");
    ExpectCircle("2.4.6", "2.4.6+git", "2.4.6f1");
    // The shortest of all: two numeric ones whose numbers and texts disagree, and a text between.
    ExpectCircle("0.0", "0.0 ", "0.0b");
}

// The zero is part of the text alone, so that something fits between the two.
TEST(OrderOfVersions, OfBothKindsFindsATextBetweenEqualOnes) {
    EXPECT_TRUE(Parsed("1.2") == Parsed("1.2.0.0"));
    EXPECT_TRUE(Parsed("1.2") < Parsed("1.2-1"));
    EXPECT_TRUE(Parsed("1.2-1") < Parsed("1.2.0.0"));
}

// Texts end at a NUL byte, and this one is equal to one of two versions that are equal.
TEST(OrderOfVersions, OfBothKindsHasEqualOnesOfWhichOneIsGreater) {
    MacVersion const text = Parsed(std::string_view("1.2\0", 4));
    EXPECT_TRUE(text == Parsed("1.2"));
    EXPECT_TRUE(Parsed("1.2") == Parsed("1.2.0.0"));
    EXPECT_TRUE(text < Parsed("1.2.0.0"));
}
