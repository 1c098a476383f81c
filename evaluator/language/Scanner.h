#pragma once

// Internal. Cuts the text of a query into tokens.
//
//     names of files whose (size of it >= 10)   // the large ones
//
// gives  word `names`, word `of`, word `files`, word `whose`, `(`, word `size`, word `of`, word `it`, `>=`,
// integer `10`, `)`, end. Words are not told apart here; whether a run of them is a phrase is the parser's
// business.

#include <string>
#include <string_view>
#include <vector>

#include "Evaluator/Embedding.h"

namespace Evaluator {

enum class TokenKind {
    end,
    word,
    string,
    integer,  // decimal digits, no sign
    leftParenthesis,
    rightParenthesis,
    comma,
    semicolon,
    plus,
    minus,
    ampersand,
    times,
    dividedBy,
    equal,
    notEqual,
    less,
    lessOrEqual,
    greater,
    greaterOrEqual,
};

struct Token {
    TokenKind kind;
    Range range;
    std::string text;  ///< a word in lower case, a string's bytes, an integer's digits; else empty
};

/// Thrown where the text is no query; the parser ends with it.
struct SyntaxError {
    Problem problem;
};

/// All tokens of the query, the last of kind `end`. Throws SyntaxError.
std::vector<Token> Scan(std::string_view query);

}  // namespace Evaluator
