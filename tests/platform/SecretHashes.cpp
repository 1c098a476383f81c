#include <gtest/gtest.h>

#include <set>
#include <string>

#include "foundation/SecretHash.h"

namespace {

using Platform::SecretHash;
using Platform::SipHash;

// From another implementation, with a key of zeros.
TEST(SecretHashes, AreThoseOfSipHash) {
    EXPECT_EQ(0x407448d2b89b1813u, SipHash({0, 0}, "a"));
    EXPECT_EQ(0xc03bc3a0042630f2u, SipHash({0, 0}, "abc"));
    EXPECT_EQ(0x3f7b849c0b8e35eau, SipHash({0, 0}, "abcdefgh"));
    EXPECT_EQ(0x00c98b97e4f70042u, SipHash({0, 0}, "the quick brown fox jumps"));
}

TEST(SecretHashes, AreTheSameForOneTextInOneProcess) {
    EXPECT_EQ(SecretHash("abc"), SecretHash(std::string("abc")));
    EXPECT_NE(SecretHash("abc"), SipHash({0, 0}, "abc")) << "the key is drawn";
}

TEST(SecretHashes, DifferByTheirKeys) {
    EXPECT_NE(SipHash({1, 0}, "abc"), SipHash({0, 0}, "abc"));
    EXPECT_NE(SipHash({0, 1}, "abc"), SipHash({0, 0}, "abc"));
}

TEST(SecretHashes, SpreadTextsThatAreAlike) {
    std::set<std::uint64_t> ends;
    for (int i = 0; i < 10000; ++i) ends.insert(SecretHash("key " + std::to_string(i)) & 0xFFFFFF);
    EXPECT_GT(ends.size(), 9900u);
}

}  // namespace
