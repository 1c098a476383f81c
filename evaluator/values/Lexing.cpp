#include "Evaluator/Lexing.h"

#include <algorithm>
#include <cstddef>
#include <limits>

EndLexemeAcceptor::~EndLexemeAcceptor() = default;
Lexeme::~Lexeme() = default;
Lexer::~Lexer() = default;
WordLexemeAcceptor::~WordLexemeAcceptor() = default;
NumeralLexemeAcceptor::~NumeralLexemeAcceptor() = default;
CharacterLexemeAcceptor::~CharacterLexemeAcceptor() = default;

// Lexer

namespace {

void EndToken(Lexeme*& token) {
    if (token != nullptr) token->End();
    token = nullptr;
}

}  // namespace

void Lexer::Start() {
    token = nullptr;
    endAcceptor->Reset();
}

void Lexer::Receive(ConstData text) {
    unsigned char const* from = text.begin();
    if (token != nullptr) from += std::min<std::size_t>(token->Continue(text), text.Size());
    while (from != text.end()) {
        EndToken(token);
        token = &ChooseLexeme(*from);
        ConstData const rest(from, text.end());
        from += std::clamp<std::size_t>(token->Begin(rest), 1, rest.Size());
    }
}

void Lexer::ReceiveEnd() {
    EndToken(token);
    endAcceptor->AcceptEnd();
}

// WordLexeme

WordLexeme::WordLexeme(Evaluator::ByteSet const& letters, Data buffer, Evaluator::ByteFilter const& filter,
                       WordLexemeAcceptor& acceptor)
    : letters(&letters), buffer(buffer), filter(filter), acceptor(&acceptor) {}

unsigned long WordLexeme::Begin(ConstData text) {
    room = buffer;
    overflow = false;
    return WordLexeme::Continue(text);
}

unsigned long WordLexeme::Continue(ConstData text) {
    unsigned char const* letter = text.begin();
    for (; letter != text.end() && letters->Contains(*letter); ++letter) {
        overflow = overflow || room.Empty();
        if (overflow) continue;
        *room.begin() = filter(*letter);
        room = {room.begin() + 1, room.end()};
    }
    return static_cast<unsigned long>(letter - text.begin());
}

void WordLexeme::End() {
    if (overflow) return acceptor->AcceptWordOverflow();
    acceptor->AcceptWord({buffer.begin(), room.begin()});
}

// NumeralLexeme

unsigned long NumeralLexeme::Begin(ConstData text) {
    number = 0;
    overflow = false;
    return NumeralLexeme::Continue(text);
}

unsigned long NumeralLexeme::Continue(ConstData text) {
    constexpr unsigned long long most = std::numeric_limits<unsigned long long>::max();
    unsigned long long value = number;
    unsigned char const* at = text.begin();
    for (; at != text.end(); ++at) {
        unsigned int const digit = *at - unsigned{'0'};
        if (digit > 9) break;
        if (value >= most / 10) [[unlikely]]
            overflow |= value > most / 10 || digit > most % 10;
        value = value * 10 + digit;
    }
    number = value;
    return static_cast<unsigned long>(at - text.begin());
}

void NumeralLexeme::End() {
    if (overflow) return acceptor->AcceptNumeralOverflow();
    acceptor->AcceptNumeral(number);
}

// CharacterLexeme

unsigned long CharacterLexeme::Begin(ConstData text) {
    character = *text.begin();
    return 1;
}

unsigned long CharacterLexeme::Continue(ConstData) { return 0; }
void CharacterLexeme::End() { acceptor->AcceptCharacter(character); }
