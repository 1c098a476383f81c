#include "versions/TokenTable.h"

#include <gtest/gtest.h>

#include <string>

#include "VersionsOfTests.h"

namespace {

using Words = TokenTable<int>;

constexpr Words::Association kWords[] = {{"", 1},  {"B", 2},    {"a", 3},        {"ab", 4},
                                         {"b", 5}, {"word", 6}, {"\xC3\xA9", 7}, {nullptr, 99}};
constexpr Words::Association kNone[] = {{nullptr, 5}};

}  // namespace

TEST(TokenTable, FindsEachOfItsWords) {
    Words const words(kWords);
    for (Words::Association const& row : kWords) {
        if (row.name == nullptr) continue;
        ASSERT_NE(nullptr, words.LookFor(row.name)) << row.name;
        EXPECT_EQ(row.value, *words.LookFor(row.name)) << row.name;
        EXPECT_EQ(row.value, words[row.name]) << row.name;
    }
}

TEST(TokenTable, FindsNothingElse) {
    Words const words(kWords);
    for (std::string const& text :
         {std::string(1, '\0'), std::string("a\0", 2), std::string("A"), std::string("aa"),
          std::string("abc"), std::string("b "), std::string("wor"), std::string("words"),
          std::string("\xC3"), std::string("\xFF")}) {
        EXPECT_EQ(nullptr, words.LookFor(Bytes(text))) << Shown(text);
        EXPECT_EQ(99, words[Bytes(text)]) << Shown(text);
    }
}

TEST(TokenTable, LendsTheValuesOfItsArray) {
    Words const words(kWords);
    EXPECT_EQ(&kWords[3].value, words.LookFor("ab"));
    EXPECT_EQ(&kWords[3].value, &words["ab"]);
    EXPECT_EQ(&kWords[7].value, &words["none"]);
}

TEST(TokenTable, MayHaveNothingButADefault) {
    Words const words(kNone);
    EXPECT_EQ(nullptr, words.LookFor(""));
    EXPECT_EQ(nullptr, words.LookFor("a"));
    EXPECT_EQ(5, words[""]);
}

TEST(TokenTable, KnowsWhatOrderItsArrayMustHave) {
    EXPECT_TRUE(Words::IsInOrder(kWords));
    EXPECT_TRUE(Words::IsInOrder(kNone));
    EXPECT_FALSE(Words::IsInOrder({{"b", 1}, {"a", 2}, {nullptr, 0}}));
    EXPECT_FALSE(Words::IsInOrder({{"a", 1}, {"B", 2}, {nullptr, 0}}));
    EXPECT_FALSE(Words::IsInOrder({{"\xC3", 1}, {"a", 2}, {nullptr, 0}}));
    EXPECT_FALSE(Words::IsInOrder({{"a", 1}, {"a", 2}, {nullptr, 0}}));
    EXPECT_FALSE(Words::IsInOrder({{"a", 1}, {nullptr, 0}, {nullptr, 0}}));
    EXPECT_FALSE(Words::IsInOrder({{"a", 1}, {"b", 2}}));
}
