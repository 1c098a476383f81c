#pragma once

#include <array>

#include "Evaluator/Lexing.h"
#include "Evaluator/Text.h"
#include "versions/TokenTable.h"
#include "versions/VersionLanguage.h"

/// Is told of words: those of a table, with what the table has for them, and others.
template <class Action>
class ReservedWordAcceptor {
  public:
    virtual ~ReservedWordAcceptor() = default;
    virtual void AcceptReservedWord(Action action) = 0;
    virtual void AcceptOrdinaryWord(ConstData word) = 0;
    /// A word was longer than any that can be told.
    virtual void AcceptWordOverflow() = 0;
};

/// Words that are looked up in a table, with capitals made small. Buffer, table and acceptor must outlive it.
template <class Action>
class ReservedWordLexeme final : public WordLexeme, private WordLexemeAcceptor {
  public:
    ReservedWordLexeme(Data buffer, TokenTable<Action> const& words,
                       ReservedWordAcceptor<Action>& itsAcceptor)
        : WordLexeme(Ascii::Alphabetic(), buffer, Ascii::lowerCase, *this),
          table(words),
          acceptor(itsAcceptor) {}

  private:
    void AcceptWord(ConstData word) override {
        Action const* const action = table.LookFor(word);
        if (action != nullptr) return acceptor.AcceptReservedWord(*action);
        acceptor.AcceptOrdinaryWord(word);
    }
    void AcceptWordOverflow() override { acceptor.AcceptWordOverflow(); }

    TokenTable<Action> const& table;
    ReservedWordAcceptor<Action>& acceptor;
};

/// Takes all that the lexer of versions cuts.
class VersionLexemeAcceptor : public ReservedWordAcceptor<VersionParsingAction>,
                              public NumeralLexemeAcceptor,
                              public CharacterLexemeAcceptor,
                              public EndLexemeAcceptor {};

/// Cuts a version's text into numbers, words and single characters.
class VersionLexer final : public Lexer {
  public:
    /// The acceptor must outlive the lexer.
    explicit VersionLexer(VersionLexemeAcceptor& acceptor);

    /// The letters that stand for stages; built when they are first asked for.
    static TokenTable<VersionParsingAction> const& ReservedWords();

  protected:
    Lexeme& ChooseLexeme(unsigned char first) override;

  private:
    std::array<unsigned char, 4> buffer;
    ReservedWordLexeme<VersionParsingAction> word;
    NumeralLexeme numeral;
    CharacterLexeme character;
    Evaluator::ByteSet const& digits;
    Evaluator::ByteSet const& letters;
};
