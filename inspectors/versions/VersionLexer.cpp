#include "versions/VersionLexer.h"

#include "versions/Stage.h"

VersionLexer::VersionLexer(VersionLexemeAcceptor& acceptor)
    : Lexer(acceptor),
      word({buffer.data(), buffer.size()}, ReservedWords(), acceptor),
      numeral(acceptor),
      character(acceptor),
      digits(Ascii::Numeric()),
      letters(Ascii::Alphabetic()) {}

TokenTable<VersionParsingAction> const& VersionLexer::ReservedWords() {
    using Words = TokenTable<VersionParsingAction>;
    static constexpr Words::Association words[] = {
        {"a", {VersionLanguage::StageLetter, kAlpha}},       {"b", {VersionLanguage::StageLetter, kBeta}},
        {"d", {VersionLanguage::StageLetter, kDevelopment}}, {"f", {VersionLanguage::StageLetter, kFinal}},
        {nullptr, {VersionLanguage::CompleteVersion, 0}},
    };
    static_assert(Words::IsInOrder(words));
    static Words const table(words);
    return table;
}

Lexeme& VersionLexer::ChooseLexeme(unsigned char first) {
    if (digits.Contains(first)) return numeral;
    if (letters.Contains(first)) return word;
    return character;
}
