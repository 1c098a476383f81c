#include <gtest/gtest.h>

#include "files/FileCache.h"

namespace {

using Cache = Platform::FileCache<int>;

Platform::FileState State(std::uint64_t size) {
    Platform::FileState state;
    state.size = size;
    return state;
}

// What is kept of a file; 0 for nothing.
int Kept(Cache& cache, char const* path, std::uint64_t size = 0) {
    auto const content = cache.Find(path, State(size));
    return content ? *content : 0;
}

void Keep(Cache& cache, char const* path, int content, std::uint64_t size = 0) {
    cache.Keep(path, State(size), std::make_shared<int const>(content));
}

}  // namespace

TEST(FileCaches, KeepWhatAFileHeldInAState) {
    Cache cache(2);
    EXPECT_EQ(0, Kept(cache, "/a"));
    Keep(cache, "/a", 1, 10);
    EXPECT_EQ(1, Kept(cache, "/a", 10));
    EXPECT_EQ(0, Kept(cache, "/a", 11));
    EXPECT_EQ(0, Kept(cache, "/b", 10));
}

TEST(FileCaches, KeepAFileInOneStateOnly) {
    Cache cache(2);
    Keep(cache, "/a", 1, 10);
    Keep(cache, "/a", 2, 20);
    EXPECT_EQ(0, Kept(cache, "/a", 10));
    EXPECT_EQ(2, Kept(cache, "/a", 20));
}

TEST(FileCaches, LetTheFileGoThatWasAskedForLongestAgo) {
    Cache cache(2);
    Keep(cache, "/a", 1);
    Keep(cache, "/b", 2);
    EXPECT_EQ(1, Kept(cache, "/a"));
    Keep(cache, "/c", 3);
    EXPECT_EQ(0, Kept(cache, "/b"));
    EXPECT_EQ(1, Kept(cache, "/a"));
    EXPECT_EQ(3, Kept(cache, "/c"));
}

TEST(FileCaches, SeeEachDifferenceOfStates) {
    using Platform::FileState;
    FileState const same{1, 2, 3, 4, 5, 6, false};
    EXPECT_EQ(same, (FileState{1, 2, 3, 4, 5, 6, false}));
    for (int field = 0; field < 7; ++field) {
        std::uint64_t numbers[] = {1, 2, 3, 4, 5, 6, 0};
        numbers[field] ^= 1;
        FileState const other{numbers[0],
                              numbers[1],
                              numbers[2],
                              static_cast<std::int64_t>(numbers[3]),
                              static_cast<std::int64_t>(numbers[4]),
                              static_cast<std::int64_t>(numbers[5]),
                              numbers[6] != 0};
        EXPECT_NE(same, other) << field;
    }
}

TEST(FileCaches, DoNotTrustFilesThatHaveJustChanged) {
    Platform::FileState state;
    state.changed = 1'000'000'001;
    EXPECT_FALSE(HasSettled(state, 999'000'000)) << "a server's clock may be ahead";
    EXPECT_FALSE(HasSettled(state, 1'000'000'001));
    EXPECT_FALSE(HasSettled(state, 1'050'000'000));
    EXPECT_TRUE(HasSettled(state, 1'200'000'000));
    state.changed = 1'000'000'000;
    EXPECT_FALSE(HasSettled(state, 3'900'000'000)) << "the clock may tell every other second only";
    EXPECT_TRUE(HasSettled(state, 4'100'000'000));
}
