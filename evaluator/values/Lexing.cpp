#include "Evaluator/Lexing.h"

EndLexemeAcceptor::~EndLexemeAcceptor() = default;
Lexeme::~Lexeme() = default;
Lexer::~Lexer() = default;
WordLexemeAcceptor::~WordLexemeAcceptor() = default;
NumeralLexemeAcceptor::~NumeralLexemeAcceptor() = default;
CharacterLexemeAcceptor::~CharacterLexemeAcceptor() = default;

// Lexer

void Lexer::Start() {
    token = nullptr;
    endAcceptor->Reset();
}

void Lexer::Receive(ConstData text) {
    for (unsigned char byte : text) {
        if (token != nullptr && token->Continue(byte)) continue;
        EndToken();
        token = &ChooseLexeme(byte);
        token->Begin(byte);
    }
}

void Lexer::ReceiveEnd() {
    EndToken();
    endAcceptor->AcceptEnd();
}

void Lexer::EndToken() {
    if (token != nullptr) token->End();
    token = nullptr;
}

// WordLexeme

WordLexeme::WordLexeme(Evaluator::ByteSet const& letters, Data buffer, Evaluator::ByteFilter const& filter,
                       WordLexemeAcceptor& acceptor)
    : letters(&letters), buffer(buffer), filter(filter), acceptor(&acceptor) {}

void WordLexeme::Begin(unsigned char first) {
    room = buffer;
    overflow = false;
    Add(first);
}

bool WordLexeme::Continue(unsigned char next) {
    if (!letters->Contains(next)) return false;
    Add(next);
    return true;
}

void WordLexeme::End() {
    if (overflow) return acceptor->AcceptWordOverflow();
    acceptor->AcceptWord({buffer.begin(), room.begin()});
}

void WordLexeme::Add(unsigned char letter) {
    if (room.Empty()) {
        overflow = true;
        return;
    }
    *room.begin() = filter(letter);
    room = {room.begin() + 1, room.end()};
}

// NumeralLexeme

void NumeralLexeme::Begin(unsigned char first) {
    number = 0;
    overflow = false;
    Continue(first);
}

bool NumeralLexeme::Continue(unsigned char next) {
    if (!Ascii::Numeric().Contains(next)) return false;
    unsigned long long const digit = next - '0';
    overflow = overflow || __builtin_mul_overflow(number, 10, &number) ||
               __builtin_add_overflow(number, digit, &number);
    return true;
}

void NumeralLexeme::End() {
    if (overflow) return acceptor->AcceptNumeralOverflow();
    acceptor->AcceptNumeral(number);
}

// CharacterLexeme

void CharacterLexeme::Begin(unsigned char first) { character = first; }
bool CharacterLexeme::Continue(unsigned char) { return false; }
void CharacterLexeme::End() { acceptor->AcceptCharacter(character); }
