#include "versions/Stage.h"

#include <gtest/gtest.h>

#include <string>

#include "VersionsOfTests.h"

namespace {

stage StageOf(std::string_view word) { return stage_of(Bytes(word).begin(), word.size()); }
unsigned int CodeOf(std::string_view word) { return StageOf(word).code; }

}  // namespace

TEST(Stages, AreNamedByTheirLetters) {
    EXPECT_EQ(0x20u, CodeOf("d"));
    EXPECT_EQ(0x40u, CodeOf("a"));
    EXPECT_EQ(0x60u, CodeOf("b"));
    EXPECT_EQ(0x80u, CodeOf("f"));
}

TEST(Stages, FinalIsTheEmptyWordToo) {
    EXPECT_EQ(0x80u, CodeOf(""));
    EXPECT_TRUE(StageOf("") == StageOf("f"));
}

TEST(Stages, AreNoneByAnyOtherWord) {
    for (std::string const word :
         {".", "A", "B", "D", "F", "c", "e", "g", " ", "a ", " a", "aa", "beta", "final", "none", "\xFF"})
        EXPECT_EQ(0u, CodeOf(word)) << Shown(word);
    EXPECT_EQ(0u, CodeOf(std::string_view("a\0", 2)));
    EXPECT_EQ(0u, CodeOf(std::string_view("\0", 1)));
    EXPECT_EQ(0u, CodeOf(std::string(100'000, 'a')));
    EXPECT_TRUE(StageOf("gamma") == StageOf("omega"));
}

TEST(Stages, AreOrderedByTheirCodes) {
    for (unsigned int left = 0; left < 256; ++left) {
        for (unsigned int right = 0; right < 256; ++right) {
            stage const a{static_cast<std::uint8_t>(left)}, b{static_cast<std::uint8_t>(right)};
            ASSERT_EQ(left == right, a == b) << left << " " << right;
            ASSERT_EQ(left < right, a < b) << left << " " << right;
            ASSERT_EQ(left > right, a > b) << left << " " << right;
        }
    }
}

TEST(Stages, ComeInTheOrderOfWork) {
    EXPECT_TRUE(StageOf("none") < StageOf("d"));
    EXPECT_TRUE(StageOf("d") < StageOf("a"));
    EXPECT_TRUE(StageOf("a") < StageOf("b"));
    EXPECT_TRUE(StageOf("b") < StageOf("f"));
    EXPECT_TRUE(StageOf("f") < stage{kReleased});
}

TEST(Stages, OccupyOneByte) { static_assert(sizeof(stage) == 1); }

TEST(Stages, HaveLettersInTexts) {
    for (unsigned int code = 0; code < 256; ++code) {
        std::string const letter = code == 0x20   ? "d"
                                   : code == 0x40 ? "a"
                                   : code == 0x60 ? "b"
                                   : code == 0x80 ? "f"
                                   : code == 0xA0 ? "."
                                                  : "";
        EXPECT_EQ(letter, LetterOf({static_cast<std::uint8_t>(code)})) << code;
    }
}
