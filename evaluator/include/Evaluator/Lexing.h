#pragma once

// Cutting text into tokens.
//
// A Lexer is given text in pieces of any size and cuts it into tokens of several kinds. Each kind is a
// Lexeme, which collects the bytes of one token and hands its value to an acceptor. An acceptor refuses by
// throwing; the exception leaves through the lexer, which is then good for another Start().

#include "Evaluator/Text.h"
#include "Evaluator/Values.h"

/// Is told of the start and the end of a text.
class EVALUATOR_API EndLexemeAcceptor {
  public:
    virtual ~EndLexemeAcceptor();
    /// A text begins; whatever was collected of another one is to be forgotten.
    virtual void Reset() = 0;
    /// The text has ended.
    virtual void AcceptEnd() = 0;
};

/// One kind of token.
class EVALUATOR_API Lexeme {
  public:
    virtual ~Lexeme();
    /// A token begins with the first byte of `text`, for which the lexeme was chosen: takes the bytes from
    /// the front that belong to it, and returns how many. The lexer goes on behind the first byte at least.
    virtual unsigned long Begin(ConstData text) = 0;
    /// The text goes on: the same with the bytes that follow.
    virtual unsigned long Continue(ConstData text) = 0;
    /// The token has ended: hands its value to the acceptor.
    virtual void End() = 0;
};

/// Cuts text into tokens of the kinds that a derived class chooses from.
class EVALUATOR_API Lexer {
  public:
    /// The acceptor is borrowed and must outlive the lexer.
    explicit Lexer(EndLexemeAcceptor& acceptor) : endAcceptor(&acceptor) {}
    virtual ~Lexer();
    Lexer(Lexer const&) = delete;
    Lexer& operator=(Lexer const&) = delete;

    /// Begins a text: forgets an unfinished token and calls the acceptor's Reset().
    void Start();
    /// Takes the text's next bytes.
    void Receive(ConstData text);
    /// Ends the last token and calls the acceptor's AcceptEnd().
    void ReceiveEnd();

  protected:
    /// The kind of the token that begins with `first`. Borrowed until the token has ended.
    virtual Lexeme& ChooseLexeme(unsigned char first) = 0;

  private:
    EndLexemeAcceptor* endAcceptor;
    Lexeme* token = nullptr;
};

class EVALUATOR_API WordLexemeAcceptor {
  public:
    virtual ~WordLexemeAcceptor();
    /// The word lies in the lexeme's buffer until the next one begins.
    virtual void AcceptWord(ConstData word) = 0;
    /// A word was longer than the buffer.
    virtual void AcceptWordOverflow() = 0;
};

/// A run of bytes of a set, each sent through a filter on its way into a buffer. Set, buffer and acceptor are
/// borrowed and must outlive the lexeme.
class EVALUATOR_API WordLexeme : public Lexeme {
  public:
    WordLexeme(Evaluator::ByteSet const& letters, Data buffer, Evaluator::ByteFilter const& filter,
               WordLexemeAcceptor& acceptor);
    unsigned long Begin(ConstData text) override;
    unsigned long Continue(ConstData text) override;
    void End() override;

  private:
    Evaluator::ByteSet const* letters;
    Data buffer;
    Evaluator::ByteFilter filter;
    WordLexemeAcceptor* acceptor;
    Data room;
    bool overflow = false;
};

class EVALUATOR_API NumeralLexemeAcceptor {
  public:
    virtual ~NumeralLexemeAcceptor();
    virtual void AcceptNumeral(unsigned long long number) = 0;
    /// A number needed more than 64 bits.
    virtual void AcceptNumeralOverflow() = 0;
};

/// A run of decimal digits, as an unsigned 64-bit number. The acceptor is borrowed and must outlive the
/// lexeme.
class EVALUATOR_API NumeralLexeme : public Lexeme {
  public:
    explicit NumeralLexeme(NumeralLexemeAcceptor& acceptor) : acceptor(&acceptor) {}
    unsigned long Begin(ConstData text) override;
    unsigned long Continue(ConstData text) override;
    void End() override;

  private:
    NumeralLexemeAcceptor* acceptor;
    unsigned long long number = 0;
    bool overflow = false;
};

class EVALUATOR_API CharacterLexemeAcceptor {
  public:
    virtual ~CharacterLexemeAcceptor();
    virtual void AcceptCharacter(unsigned char byte) = 0;
};

/// A single byte, whichever it is. The acceptor is borrowed and must outlive the lexeme.
class EVALUATOR_API CharacterLexeme : public Lexeme {
  public:
    explicit CharacterLexeme(CharacterLexemeAcceptor& acceptor) : acceptor(&acceptor) {}
    unsigned long Begin(ConstData text) override;
    unsigned long Continue(ConstData text) override;
    void End() override;

  private:
    CharacterLexemeAcceptor* acceptor;
    unsigned char character = 0;
};
