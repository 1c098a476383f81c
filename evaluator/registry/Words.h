#pragma once

// Internal. What a word is, and which words are reserved. Shared by the scanner, which reads phrases in
// queries, and by the registry, which accepts phrases from libraries.

#include <algorithm>
#include <array>
#include <string_view>

namespace Evaluator {

constexpr char LowerCaseLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsWordStart(char c) {
    char lower = LowerCaseLetter(c);
    return (lower >= 'a' && lower <= 'z') || c == '_';
}
constexpr bool IsWordPart(char c) { return IsWordStart(c) || IsDigit(c); }

inline bool EqualWords(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return LowerCaseLetter(a) == LowerCaseLetter(b); });
}

/// Letters, digits and '_', not beginning with a digit.
inline bool IsWord(std::string_view text) {
    return !text.empty() && IsWordStart(text[0]) && std::all_of(text.begin(), text.end(), IsWordPart);
}

/// The words that never stand in a phrase.
inline constexpr std::array<std::string_view, 16> kReservedWords{
    "of",   "whose", "it",   "as",   "and",       "or",     "not",  "is",
    "does", "if",    "then", "else", "otherwise", "exists", "true", "false"};

inline bool IsReservedWord(std::string_view word) {
    return std::any_of(kReservedWords.begin(), kReservedWords.end(),
                       [&](std::string_view reserved) { return EqualWords(word, reserved); });
}

/// The words of operators that may stand in a phrase behind its first word.
inline constexpr std::array<std::string_view, 8> kOperatorWords{"with",      "by",     "contains", "contain",
                                                                "contained", "starts", "ends",     "mod"};

inline bool IsOperatorWord(std::string_view word) {
    return std::any_of(kOperatorWords.begin(), kOperatorWords.end(),
                       [&](std::string_view reserved) { return EqualWords(word, reserved); });
}

/// How many words a phrase in normal form has.
inline std::size_t CountWords(std::string_view phrase) {
    return phrase.empty() ? 0 : 1 + static_cast<std::size_t>(std::count(phrase.begin(), phrase.end(), ' '));
}

}  // namespace Evaluator
