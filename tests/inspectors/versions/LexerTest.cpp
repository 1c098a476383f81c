#include "versions/VersionLexer.h"

#include <gtest/gtest.h>

#include <initializer_list>

#include "VersionsOfTests.h"

namespace {

// Writes down the tokens.
class Tokens final : public VersionLexemeAcceptor {
  public:
    void AcceptReservedWord(VersionParsingAction action) override {
        Add("word " + std::to_string(action.partOfSpeech) + "/" + std::to_string(action.value));
    }
    void AcceptOrdinaryWord(ConstData word) override {
        Add("ordinary " + std::string(word.begin(), word.end()));
    }
    void AcceptWordOverflow() override { Add("long word"); }
    void AcceptNumeral(unsigned long long number) override { Add(std::to_string(number)); }
    void AcceptNumeralOverflow() override { Add("long number"); }
    void AcceptCharacter(unsigned char byte) override {
        char const c = static_cast<char>(byte);
        Add(Shown({&c, 1}));
    }
    void Reset() override { heard = "reset"; }
    void AcceptEnd() override { Add("end"); }

    std::string heard;

  private:
    void Add(std::string const& token) { heard += ", " + token; }
};

class VersionLexing : public testing::Test {
  protected:
    std::string Cut(std::initializer_list<std::string_view> pieces) {
        lexer.Start();
        for (std::string_view piece : pieces) lexer.Receive(Bytes(piece));
        lexer.ReceiveEnd();
        return tokens.heard;
    }
    std::string Cut(std::string_view text) { return Cut({text}); }

    Tokens tokens;
    VersionLexer lexer{tokens};
};

}  // namespace

TEST_F(VersionLexing, CutsAVersion) {
    EXPECT_EQ("reset, 1, \".\", 20, \".\", 3, word 2/96, 45, end", Cut("1.20.3b45"));
    EXPECT_EQ("reset, end", Cut(""));
}

TEST_F(VersionLexing, KnowsTheLettersOfStages) {
    EXPECT_EQ("reset, word 2/64, end", Cut("a"));
    EXPECT_EQ("reset, word 2/96, end", Cut("b"));
    EXPECT_EQ("reset, word 2/32, end", Cut("d"));
    EXPECT_EQ("reset, word 2/128, end", Cut("f"));
}

TEST_F(VersionLexing, TakesCapitalsForSmallLetters) {
    EXPECT_EQ("reset, word 2/64, 1, word 2/96, 2, word 2/32, 3, word 2/128, end", Cut("A1B2D3F"));
    EXPECT_EQ("reset, ordinary beta, end", Cut("BeTA"));
}

TEST_F(VersionLexing, TellsOtherWords) {
    EXPECT_EQ("reset, ordinary c, end", Cut("c"));
    EXPECT_EQ("reset, ordinary v, 1, end", Cut("v1"));
    EXPECT_EQ("reset, ordinary ab, 2, ordinary bb, end", Cut("ab2bb"));
}

TEST_F(VersionLexing, HasRoomForWordsOfFourLetters) {
    EXPECT_EQ("reset, ordinary beta, 1, end", Cut("beta1"));
    EXPECT_EQ("reset, long word, 1, end", Cut("alpha1"));
    EXPECT_EQ("reset, long word, end", Cut({"bbb", "b", "", "b"}));
    EXPECT_EQ("reset, long word, \".\", word 2/96, end", Cut(std::string(100'000, 'b') + ".b"));
}

TEST_F(VersionLexing, TakesEverythingElseForCharacters) {
    EXPECT_EQ("reset, 1, \" \", \"-\", 2, \"_\", end", Cut("1 -2_"));
    EXPECT_EQ("reset, \"\\x00\", \"\\xFF\", \"\\xE9\", \"\\x0A\", end",
              Cut(std::string_view("\0\xFF\xE9\n", 4)));
    for (int byte = 0; byte < 256; ++byte) {
        char const c = static_cast<char>(byte);
        if ((c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) continue;
        EXPECT_EQ("reset, " + Shown({&c, 1}) + ", end", Cut({&c, 1}));
    }
}

TEST_F(VersionLexing, ReadsNumbersOf64Bits) {
    EXPECT_EQ("reset, 4294967296, end", Cut("4294967296"));
    EXPECT_EQ("reset, 18446744073709551615, end", Cut("18446744073709551615"));
    EXPECT_EQ("reset, long number, end", Cut("18446744073709551616"));
    EXPECT_EQ("reset, 65535, end", Cut(std::string(100'000, '0') + "65535"));
}

TEST_F(VersionLexing, CutsAlikeHoweverTheTextComes) {
    std::string_view const text = "10.4.011alph-BETA.beta1\x80..F";
    std::string const whole = Cut(text);
    for (std::size_t i = 0; i <= text.size(); ++i) {
        for (std::size_t j = i; j <= text.size(); ++j)
            EXPECT_EQ(whole, Cut({text.substr(0, i), text.substr(i, j - i), text.substr(j)}));
    }
}

TEST_F(VersionLexing, KnowsItsWordsByTheirSmallLetters) {
    TokenTable<VersionParsingAction> const& words = VersionLexer::ReservedWords();
    EXPECT_EQ(&words, &VersionLexer::ReservedWords());
    ASSERT_NE(nullptr, words.LookFor("b"));
    EXPECT_EQ(VersionLanguage::StageLetter, words.LookFor("b")->partOfSpeech);
    EXPECT_EQ(0x60u, words.LookFor("b")->value);
    for (char const* word : {"", "B", "c", "e", "g", "ab"}) EXPECT_EQ(nullptr, words.LookFor(word)) << word;
    EXPECT_EQ(VersionLanguage::CompleteVersion, words["none"].partOfSpeech);
    EXPECT_EQ(0u, words["none"].value);
}
