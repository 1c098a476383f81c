#include "Evaluator/Lexing.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

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

TEST_F(Lexing, CutsAlikeHoweverTheTextComes) {
    std::string const text = "12.ab..345 toolong-18446744073709551616x";
    std::string const whole = Cut({text});
    for (std::size_t i = 0; i <= text.size(); ++i) {
        for (std::size_t j = i; j <= text.size(); ++j)
            EXPECT_EQ(whole, Cut({text.substr(0, i), text.substr(i, j - i), text.substr(j)}));
    }
    lexer.Start();
    for (char const& c : text) lexer.Receive({reinterpret_cast<unsigned char const*>(&c), 1});
    lexer.ReceiveEnd();
    EXPECT_EQ(whole, recorder.heard);
}

TEST_F(Lexing, JoinsNoCharacters) {
    EXPECT_EQ("reset char:. char:. end", Cut({".", "."}));
    EXPECT_EQ("reset char:. char:. char:. char:- end", Cut({"..", "", ".-"}));
    EXPECT_EQ("reset number:1 char:. number:2 char:. end", Cut({"1.", "2."}));
}

TEST_F(Lexing, JoinsTokensOfOneKindAlone) {
    EXPECT_EQ("reset number:12 word:ab end", Cut({"12", "ab"}));
    EXPECT_EQ("reset word:ab number:12 char:. end", Cut({"ab", "12", "."}));
    EXPECT_EQ("reset number:12 end", Cut({"12", "", ""}));
}

TEST_F(Lexing, TellsATokenWhenTheNextOneBegins) {
    lexer.Start();
    lexer.Receive("12");
    EXPECT_EQ("reset", recorder.heard);
    lexer.Receive("3.");
    EXPECT_EQ("reset number:123", recorder.heard);
    lexer.ReceiveEnd();
    EXPECT_EQ("reset number:123 char:. end", recorder.heard);
}

TEST_F(Lexing, SendsLettersThroughTheFilter) { EXPECT_EQ("reset word:beta end", Cut({"BeTa"})); }

TEST_F(Lexing, FillsTheWordBufferAndNoMore) {
    EXPECT_EQ("reset word:abcd end", Cut({"abcd"}));
    EXPECT_EQ("reset long-word end", Cut({"abcde"}));
    EXPECT_EQ("reset long-word char:. word:ab end", Cut({std::string(100'000, 'x'), ".ab"}));
    EXPECT_EQ("reset word:abcd end", Cut({"ab", "cd"}));
    EXPECT_EQ("reset long-word end", Cut({"abcd", "e"}));
}

TEST_F(Lexing, ReadsNumbersOf64Bits) {
    EXPECT_EQ("reset number:18446744073709551615 end", Cut({"18446744073709551615"}));
    EXPECT_EQ("reset long-number end", Cut({"18446744073709551616"}));
    EXPECT_EQ("reset long-number end", Cut({"18446744073709551620"}));
    EXPECT_EQ("reset long-number end", Cut({"99999999999999999999"}));
    EXPECT_EQ("reset number:18446744073709551615 end", Cut({"1844674407370955161", "5"}));
    EXPECT_EQ("reset long-number end", Cut({"1844674407370955161", "6"}));
    // More than 64 bits hold, and then a number that would fit again.
    EXPECT_EQ("reset long-number end", Cut({"18446744073709551616000"}));
    EXPECT_EQ("reset long-number char:. number:6 end", Cut({"18446744073709551616", ".6"}));
    EXPECT_EQ("reset number:18446744073709551615 end",
              Cut({std::string(1000, '0') + "18446744073709551615"}));
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
    for (char const* token : {"abc", "abcdefgh", "12", "99999999999999999999", "."}) {
        lexer.Start();
        lexer.Receive(token);
        EXPECT_EQ("reset word:de number:3 end", Cut({"de3"})) << token;
    }
}

// ---- Lexemes by themselves

namespace {

class LexemeTest : public testing::Test {
  protected:
    std::string Heard() { return std::exchange(recorder.heard, {}); }

    Recorder recorder;
};

}  // namespace

TEST_F(LexemeTest, OfANumeralTakesTheDigitsInFront) {
    NumeralLexeme numeral(recorder);
    EXPECT_EQ(2u, numeral.Begin("12a3"));
    EXPECT_EQ(0u, numeral.Continue("a3"));
    EXPECT_EQ(1u, numeral.Continue("3"));
    EXPECT_EQ(0u, numeral.Continue(""));
    EXPECT_EQ("", Heard());
    numeral.End();
    EXPECT_EQ(" number:123", Heard());
    EXPECT_EQ(1u, numeral.Begin("4."));
    numeral.End();
    EXPECT_EQ(" number:4", Heard());
}

TEST_F(LexemeTest, OfAWordTakesTheLettersInFront) {
    unsigned char letters[4];
    WordLexeme word(Ascii::Alphabetic(), {letters, sizeof letters}, Ascii::lowerCase, recorder);
    EXPECT_EQ(2u, word.Begin("Ab1c"));
    EXPECT_EQ(0u, word.Continue("1c"));
    EXPECT_EQ(1u, word.Continue("C."));
    word.End();
    EXPECT_EQ(" word:abc", Heard());
    EXPECT_EQ(6u, word.Begin("abcdef 1"));
    word.End();
    EXPECT_EQ(" long-word", Heard());
    EXPECT_EQ(4u, word.Begin("WXYZ"));
    word.End();
    EXPECT_EQ(" word:wxyz", Heard());
}

TEST_F(LexemeTest, OfACharacterTakesOneByte) {
    CharacterLexeme character(recorder);
    EXPECT_EQ(1u, character.Begin(".."));
    EXPECT_EQ(0u, character.Continue("."));
    EXPECT_EQ("", Heard());
    character.End();
    EXPECT_EQ(" char:.", Heard());
}

// ---- Lexemes that say how many bytes they took, and are wrong

namespace {

class LyingLexeme : public Lexeme {
  public:
    unsigned long Begin(ConstData) override { return answer; }
    unsigned long Continue(ConstData) override { return answer; }
    void End() override { ++tokens; }

    unsigned long answer = 0;
    int tokens = 0;
};

class LyingLexer : public Lexer {
  public:
    explicit LyingLexer(Recorder& recorder) : Lexer(recorder) {}
    LyingLexeme lexeme;

  protected:
    Lexeme& ChooseLexeme(unsigned char) override { return lexeme; }
};

}  // namespace

TEST_F(LexemeTest, ThatTakesNothingHasItsFirstByte) {
    LyingLexer lexer(recorder);
    lexer.Start();
    lexer.Receive("abc");
    lexer.ReceiveEnd();
    EXPECT_EQ(3, lexer.lexeme.tokens);
}

TEST_F(LexemeTest, ThatTakesMoreThanThereIsHasTheRest) {
    LyingLexer lexer(recorder);
    lexer.lexeme.answer = 1000;
    lexer.Start();
    lexer.Receive("abc");
    lexer.Receive("def");
    lexer.ReceiveEnd();
    EXPECT_EQ(1, lexer.lexeme.tokens);
}
