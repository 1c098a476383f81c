#include "versions/VersionParser.h"

#include <gtest/gtest.h>

#include "Hearing.h"
#include "VersionsOfTests.h"

namespace {

class VersionParsing : public testing::Test {
  protected:
    VersionParsing() {
        parser.Reset();
        semantics.Heard();
    }

    Hearing semantics;
    VersionParser parser{semantics};
};

constexpr VersionParsingAction kBetaLetter{VersionLanguage::StageLetter, 0x60};

}  // namespace

TEST_F(VersionParsing, PushesNumbersAndStagesBeforeItActs) {
    parser.AcceptNumeral(1);
    EXPECT_EQ("1", semantics.Heard());
    parser.AcceptCharacter('.');
    EXPECT_EQ("", semantics.Heard());
    parser.AcceptNumeral(2);
    EXPECT_EQ("2 vers", semantics.Heard());
    parser.AcceptReservedWord(kBetaLetter);
    EXPECT_EQ("96", semantics.Heard());
    parser.AcceptNumeral(3);
    EXPECT_EQ("3 stage2", semantics.Heard());
    parser.AcceptEnd();
    EXPECT_EQ("", semantics.Heard());
}

TEST_F(VersionParsing, ActsOnWhatTheEndCompletes) {
    parser.AcceptNumeral(7);
    EXPECT_EQ("7", semantics.Heard());
    parser.AcceptEnd();
    EXPECT_EQ("single", semantics.Heard());
}

TEST_F(VersionParsing, PushesNothingThatIsNotExpected) {
    EXPECT_THROW(parser.AcceptReservedWord(kBetaLetter), ParsingFailure);
    EXPECT_EQ("", semantics.Heard());
    parser.AcceptNumeral(7);
    EXPECT_THROW(parser.AcceptNumeral(8), ParsingFailure);
    EXPECT_EQ("7 single", semantics.Heard());
}

TEST_F(VersionParsing, TakesNumbersOf32Bits) {
    parser.AcceptNumeral(4294967295);
    EXPECT_EQ("4294967295", semantics.Heard());
    parser.Reset();
    semantics.Heard();
    for (unsigned long long number : {4294967296ull, 4294967297ull, 18446744073709551615ull})
        EXPECT_THROW(parser.AcceptNumeral(number), ParsingFailure) << number;
    EXPECT_EQ("", semantics.Heard());
    // The number was refused before the grammar knew of it.
    parser.AcceptNumeral(5);
    EXPECT_EQ("5", semantics.Heard());
}

TEST_F(VersionParsing, TakesNoCharacterButThePeriod) {
    for (int byte = 0; byte < 256; ++byte) {
        parser.Reset();
        parser.AcceptNumeral(1);
        if (byte == '.') {
            EXPECT_NO_THROW(parser.AcceptCharacter('.'));
        } else {
            EXPECT_THROW(parser.AcceptCharacter(static_cast<unsigned char>(byte)), ParsingFailure) << byte;
        }
    }
}

TEST_F(VersionParsing, TakesNoOtherTokens) {
    parser.AcceptNumeral(1);
    EXPECT_THROW(parser.AcceptOrdinaryWord("beta"), ParsingFailure);
    EXPECT_THROW(parser.AcceptWordOverflow(), ParsingFailure);
    EXPECT_THROW(parser.AcceptNumeralOverflow(), ParsingFailure);
    EXPECT_EQ("1", semantics.Heard());
}

TEST_F(VersionParsing, RefusesTheEndOfAnUnfinishedText) {
    EXPECT_THROW(parser.AcceptEnd(), ParsingFailure);
    parser.AcceptNumeral(1);
    parser.AcceptCharacter('.');
    EXPECT_THROW(parser.AcceptEnd(), ParsingFailure);
}

TEST_F(VersionParsing, ForgetsTheTextAndTellsTheSemantics) {
    parser.AcceptNumeral(1);
    parser.AcceptCharacter('.');
    semantics.Heard();
    parser.Reset();
    EXPECT_EQ("reset", semantics.Heard());
    parser.AcceptNumeral(2);
    parser.AcceptEnd();
    EXPECT_EQ("2 single", semantics.Heard());
}

// Through the lexer: each form as the semantics hears it.
TEST_F(VersionParsing, ComputesInReversePolishOrder) {
    VersionLexer lexer(parser);
    auto const heardOf = [&](char const* text) {
        lexer.Start();
        lexer.Receive(text);
        lexer.ReceiveEnd();
        return semantics.Heard();
    };
    EXPECT_EQ("reset 7 single", heardOf("7"));
    EXPECT_EQ("reset 1 2 vers", heardOf("1.2"));
    EXPECT_EQ("reset 1 2 vers 3 bug", heardOf("1.2.3"));
    EXPECT_EQ("reset 1 2 vers 32 stage1", heardOf("1.2d"));
    EXPECT_EQ("reset 1 2 vers 64 3 stage2", heardOf("1.2a3"));
    EXPECT_EQ("reset 1 2 vers 3 bug 96 stage1", heardOf("1.2.3B"));
    EXPECT_EQ("reset 1 2 vers 3 bug 128 4 stage2", heardOf("1.2.3f4"));
    EXPECT_EQ("reset 1 2 vers 3 bug 4 stage3", heardOf("1.2.3.4"));
}
