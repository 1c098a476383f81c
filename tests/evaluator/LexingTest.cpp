#include "Evaluator/Lexing.h"

#include <gtest/gtest.h>

#include "Evaluator/Exceptions.h"
#include "TextOf.h"

namespace {

// Writes down what it is told.
class Recorder : public EndLexemeAcceptor,
                 public WordLexemeAcceptor,
                 public NumeralLexemeAcceptor,
                 public CharacterLexemeAcceptor {
  public:
    void Reset() override { heard = "reset"; }
    void AcceptEnd() override { heard += " end"; }
    void AcceptWord(ConstData word) override { heard += " word:" + TextOf(word); }
    void AcceptWordOverflow() override { heard += " long-word"; }
    void AcceptNumeral(unsigned long long number) override { heard += " number:" + std::to_string(number); }
    void AcceptNumeralOverflow() override { heard += " long-number"; }
    void AcceptCharacter(unsigned char byte) override {
        if (byte == '!') throw ParsingFailure();
        heard += std::string(" char:") + static_cast<char>(byte);
    }

    std::string heard;
};

class TestLexer : public Lexer {
  public:
    explicit TestLexer(Recorder& recorder)
        : Lexer(recorder),
          words(Ascii::Alphabetic(), {letters, sizeof letters}, Ascii::lowerCase, recorder),
          numerals(recorder),
          characters(recorder) {}

  protected:
    Lexeme& ChooseLexeme(unsigned char first) override {
        if (Ascii::Numeric().Contains(first)) return numerals;
        if (Ascii::Alphabetic().Contains(first)) return words;
        return characters;
    }

  private:
    unsigned char letters[4];
    WordLexeme words;
    NumeralLexeme numerals;
    CharacterLexeme characters;
};

class Lexing : public testing::Test {
  protected:
    std::string Cut(std::initializer_list<std::string> pieces) {
        lexer.Start();
        for (std::string const& piece : pieces) lexer.Receive(BytesOf(piece));
        lexer.ReceiveEnd();
        return recorder.heard;
    }

    Recorder recorder;
    TestLexer lexer{recorder};
};

}  // namespace

TEST_F(Lexing, CutsTextIntoTokensOfEachKind) {
    EXPECT_EQ("reset number:1 char:. number:20 word:b number:4 end", Cut({"1.20b4"}));
    EXPECT_EQ("reset char:. char:. end", Cut({".."}));
}

TEST_F(Lexing, TellsTheEndOfAnEmptyText) { EXPECT_EQ("reset end", Cut({})); }

TEST_F(Lexing, JoinsTokensAcrossPieces) {
    EXPECT_EQ("reset number:1234 word:abc end", Cut({"12", "", "34a", "bc"}));
}

TEST_F(Lexing, SendsLettersThroughTheFilter) { EXPECT_EQ("reset word:beta end", Cut({"BeTa"})); }

TEST_F(Lexing, FillsTheWordBufferAndNoMore) {
    EXPECT_EQ("reset word:abcd end", Cut({"abcd"}));
    EXPECT_EQ("reset long-word end", Cut({"abcde"}));
    EXPECT_EQ("reset long-word char:. word:ab end", Cut({std::string(100'000, 'x'), ".ab"}));
}

TEST_F(Lexing, ReadsNumbersOf64Bits) {
    EXPECT_EQ("reset number:18446744073709551615 end", Cut({"18446744073709551615"}));
    EXPECT_EQ("reset long-number end", Cut({"18446744073709551616"}));
    EXPECT_EQ("reset long-number end", Cut({"99999999999999999999"}));
    EXPECT_EQ("reset number:7 end", Cut({std::string(1000, '0') + "7"}));
    EXPECT_EQ("reset long-number char:. number:5 end", Cut({std::string(1000, '9') + ".5"}));
}

TEST_F(Lexing, StartsAfreshAfterARefusal) {
    lexer.Start();
    lexer.Receive("12");
    EXPECT_THROW(lexer.Receive("!."), ParsingFailure);
    EXPECT_EQ("reset number:3 end", Cut({"3"}));
}

TEST_F(Lexing, ForgetsAnUnfinishedTokenAtTheStart) {
    lexer.Start();
    lexer.Receive("abc");
    EXPECT_EQ("reset word:de end", Cut({"de"}));
}
