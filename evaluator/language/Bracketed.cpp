#include "language/Bracketed.h"

#include <fmt/format.h>

#include <algorithm>

#include "language/Signs.h"
#include "registry/Words.h"
#include "values/Utf8.h"

namespace Evaluator {
namespace {

std::string InParentheses(std::string const& text) { return "(" + text + ")"; }

bool HoldsOperatorWord(std::string_view phrase) {
    while (!phrase.empty()) {
        std::size_t const end = std::min(phrase.find(' '), phrase.size());
        if (IsOperatorWord(phrase.substr(0, end))) return true;
        phrase.remove_prefix(std::min(end + 1, phrase.size()));
    }
    return false;
}

// A phrase that nobody could take for more than one.
bool IsBarePhrase(Syntax const& syntax) {
    return syntax.kind == SyntaxKind::step && !syntax.index && !syntax.condition && !syntax.object &&
           !HoldsOperatorWord(syntax.text);
}

// Whether the text that Bracketed makes of it stands in parentheses already.
bool IsBracketed(Syntax const& syntax) {
    switch (syntax.kind) {
        case SyntaxKind::string:
        case SyntaxKind::integer:
        case SyntaxKind::truth:
        case SyntaxKind::it:
            return false;
        default:
            return !IsBarePhrase(syntax);
    }
}

std::string Parenthesis(Syntax const& syntax) {
    std::string text = Bracketed(syntax);
    return IsBracketed(Ungrouped(syntax)) ? text : InParentheses(text);
}

std::string Index(Syntax const& index) {
    Syntax const& value = Ungrouped(index);
    bool const bare =
        value.kind == SyntaxKind::string || (value.kind == SyntaxKind::integer && value.number >= 0);
    return bare ? Bracketed(value) : Parenthesis(value);
}

// What a step or a parenthesis has behind its own words.
std::string Tail(Syntax const& syntax) {
    std::string tail;
    if (syntax.condition) tail += " whose " + Parenthesis(*syntax.condition);
    if (syntax.object) tail += " of " + Bracketed(*syntax.object);
    return tail;
}

std::string Step(Syntax const& syntax) {
    if (IsBarePhrase(syntax)) return syntax.text;
    return InParentheses(syntax.text + (syntax.index ? " " + Index(*syntax.index) : "") + Tail(syntax));
}

std::string List(Syntax const& syntax, std::string_view separator) {
    std::string list;
    for (SyntaxPointer const& part : syntax.parts)
        list += (list.empty() ? "" : std::string(separator)) + Bracketed(*part);
    return InParentheses(list);
}

// An operator whose first word may stand in a phrase could be taken for a part of one before it.
std::string Binary(Syntax const& syntax, std::string_view sign) {
    Syntax const& left = Ungrouped(*syntax.parts[0]);
    bool const mayMerge = IsBarePhrase(left) && IsOperatorWord(sign.substr(0, sign.find(' ')));
    return InParentheses(fmt::format("{} {} {}", mayMerge ? Parenthesis(left) : Bracketed(left), sign,
                                     Bracketed(*syntax.parts[1])));
}

std::string Prefixed(std::string_view sign, Syntax const& syntax) {
    return InParentheses(fmt::format("{} {}", sign, Bracketed(*syntax.parts[0])));
}

std::string Choice(Syntax const& syntax) {
    return InParentheses(fmt::format("if {} then {} else {}", Bracketed(*syntax.parts[0]),
                                     Bracketed(*syntax.parts[1]), Bracketed(*syntax.parts[2])));
}

}  // namespace

// In the language's own escapes. What is not UTF-8 is written byte by byte.
std::string QuotedLiteral(std::string_view text) {
    static constexpr std::string_view meanings = "\"\\\b\f\n\r\t", letters = "\"\\bfnrt";
    std::string quoted = "\"";
    for (std::size_t at = 0; at < text.size();) {
        std::size_t length = Utf8SequenceLength(text.substr(at));
        auto byte = static_cast<unsigned char>(text[at]);
        std::size_t which = meanings.find(text[at]);
        if (which != std::string_view::npos)
            quoted += {'\\', letters[which]};
        else if (length == 0 || byte < 0x20 || byte == 0x7F)
            quoted += fmt::format("\\x{:02x}", byte);
        else
            quoted += text.substr(at, length);
        at += std::max<std::size_t>(length, 1);
    }
    return quoted + "\"";
}

std::string Bracketed(Syntax const& any) {
    Syntax const& syntax = Ungrouped(any);
    switch (syntax.kind) {
        case SyntaxKind::string:
            return QuotedLiteral(syntax.text);
        case SyntaxKind::integer:
            return std::to_string(syntax.number);
        case SyntaxKind::truth:
            return syntax.number ? "true" : "false";
        case SyntaxKind::it:
            return "it";
        case SyntaxKind::step:
            return Step(syntax);
        case SyntaxKind::group:
            return InParentheses(Parenthesis(*syntax.parts[0]) + Tail(syntax));
        case SyntaxKind::collection:
            return List(syntax, "; ");
        case SyntaxKind::tuple:
            return List(syntax, ", ");
        case SyntaxKind::choice:
            return Choice(syntax);
        case SyntaxKind::fallback:
            return Binary(syntax, "otherwise");
        case SyntaxKind::both:
            return Binary(syntax, "and");
        case SyntaxKind::either:
            return Binary(syntax, "or");
        case SyntaxKind::negation:
            return Prefixed("not", syntax);
        case SyntaxKind::existence:
            return Prefixed("exists", syntax);
        case SyntaxKind::minus:
            return Prefixed("-", syntax);
        case SyntaxKind::relation:
            return Binary(syntax, SignOf(syntax.relation));
        case SyntaxKind::arithmetic:
            return Binary(syntax, SignOf(static_cast<int>(syntax.number)));
        case SyntaxKind::cast:
            return InParentheses(fmt::format("{} as {}", Bracketed(*syntax.parts[0]), syntax.text));
    }
    return {};
}

}  // namespace Evaluator
