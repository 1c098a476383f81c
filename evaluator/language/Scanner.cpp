#include "language/Scanner.h"

#include <fmt/format.h>

#include <optional>

#include "registry/Words.h"
#include "values/Utf8.h"

namespace Evaluator {
namespace {

constexpr std::string_view kEscapesHint =
    "the escapes are \\\" \\\\ \\/ \\b \\f \\n \\r \\t \\uXXXX and \\xHH";

class Scanner {
  public:
    explicit Scanner(std::string_view text) : query(text) {}

    std::vector<Token> ScanAll() {
        std::vector<Token> tokens;
        for (;;) {
            SkipBlanks();
            tokens.push_back(ScanToken());
            if (tokens.back().kind == TokenKind::end) return tokens;
        }
    }

  private:
    [[noreturn]] static void Report(Range range, std::string message, std::string_view hint = {}) {
        throw SyntaxError{{ProblemKind::syntax, range, std::move(message), std::string(hint)}};
    }

    char Peek(std::size_t ahead = 0) const { return at + ahead < query.size() ? query[at + ahead] : '\0'; }
    bool StartsHere(std::string_view text) const { return query.substr(at).starts_with(text); }

    void SkipBlanks() {
        for (;;) {
            while (at < query.size() && IsBlank(query[at])) ++at;
            if (StartsHere("//")) {
                at = std::min(query.find('\n', at), query.size());
            } else if (StartsHere("/*")) {
                std::size_t end = query.find("*/", at + 2);
                if (end == std::string_view::npos)
                    Report({at, at + 2}, "this comment has no end", "end it with */");
                at = end + 2;
            } else {
                return;
            }
        }
    }

    Token ScanToken() {
        std::size_t begin = at;
        if (at == query.size()) return {TokenKind::end, {at, at}, {}};
        char c = query[at];
        if (IsWordStart(c)) return ScanWord();
        if (IsDigit(c)) return ScanInteger();
        if (c == '"') return ScanString();
        if (auto kind = ScanSign()) return {*kind, {begin, at}, {}};
        std::size_t length = std::max<std::size_t>(1, Utf8SequenceLength(query.substr(at)));
        Report({at, at + length}, fmt::format("\"{}\" means nothing here", query.substr(at, length)));
    }

    Token ScanWord() {
        std::size_t begin = at;
        std::string word;
        while (at < query.size() && IsWordPart(query[at])) word += LowerCaseLetter(query[at++]);
        return {TokenKind::word, {begin, at}, std::move(word)};
    }

    Token ScanInteger() {
        std::size_t begin = at;
        while (at < query.size() && IsDigit(query[at])) ++at;
        if (at < query.size() && IsWordStart(query[at])) {
            while (at < query.size() && IsWordPart(query[at])) ++at;
            Report({begin, at},
                   fmt::format("\"{}\" is neither a number nor a word", query.substr(begin, at - begin)),
                   "a word does not begin with a digit");
        }
        return {TokenKind::integer, {begin, at}, std::string(query.substr(begin, at - begin))};
    }

    std::optional<TokenKind> ScanSign() {
        struct Sign {
            std::string_view text;
            TokenKind kind;
        };
        // Longer signs before their beginnings.
        static constexpr Sign signs[] = {
            {"!=", TokenKind::notEqual},
            {"<=", TokenKind::lessOrEqual},
            {">=", TokenKind::greaterOrEqual},
            {"(", TokenKind::leftParenthesis},
            {")", TokenKind::rightParenthesis},
            {",", TokenKind::comma},
            {";", TokenKind::semicolon},
            {"+", TokenKind::plus},
            {"-", TokenKind::minus},
            {"&", TokenKind::ampersand},
            {"*", TokenKind::times},
            {"/", TokenKind::dividedBy},
            {"=", TokenKind::equal},
            {"<", TokenKind::less},
            {">", TokenKind::greater},
        };
        for (Sign const& sign : signs)
            if (StartsHere(sign.text)) {
                at += sign.text.size();
                return sign.kind;
            }
        return std::nullopt;
    }

    Token ScanString() {
        std::size_t begin = at++;
        std::string bytes;
        while (Peek() != '"' || at >= query.size()) {
            if (at >= query.size() || query[at] == '\n')
                Report({begin, at}, "this string has no end",
                       "a string ends with \" on the line where it begins");
            if (query[at] == '\\')
                ScanEscape(bytes);
            else
                bytes += query[at++];
        }
        ++at;
        return {TokenKind::string, {begin, at}, std::move(bytes)};
    }

    void ScanEscape(std::string& bytes) {
        static constexpr std::string_view letters = "\"\\/bfnrt", meanings = "\"\\/\b\f\n\r\t";
        std::size_t begin = at++;
        char letter = Peek();
        if (std::size_t which = letters.find(letter); letter != '\0' && which != std::string_view::npos) {
            bytes += meanings[which];
            ++at;
        } else if (letter == 'x') {
            ++at;
            bytes += static_cast<char>(ScanHex(begin, 2));
        } else if (letter == 'u') {
            ++at;
            AppendUtf8(bytes, ScanCharacter(begin));
        } else {
            Report({begin, std::min(at + 1, query.size())}, "this is no escape", kEscapesHint);
        }
    }

    // Behind "\u": four digits, or the two halves of a surrogate pair.
    std::uint32_t ScanCharacter(std::size_t begin) {
        std::uint32_t unit = ScanHex(begin, 4);
        if (unit < 0xD800 || unit > 0xDFFF) return unit;
        if (unit < 0xDC00 && StartsHere("\\u")) {
            at += 2;
            std::uint32_t low = ScanHex(begin, 4);
            if (low >= 0xDC00 && low <= 0xDFFF) return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        }
        Report({begin, at}, "half of a surrogate pair is no character");
    }

    std::uint32_t ScanHex(std::size_t begin, int digits) {
        std::uint32_t value = 0;
        for (int i = 0; i < digits; ++i, ++at) {
            char c = LowerCaseLetter(Peek());
            if (!IsDigit(c) && !(c >= 'a' && c <= 'f'))
                Report({begin, at}, fmt::format("this escape needs {} hexadecimal digits", digits),
                       kEscapesHint);
            value = value * 16 + static_cast<std::uint32_t>(IsDigit(c) ? c - '0' : c - 'a' + 10);
        }
        return value;
    }

    std::string_view query;
    std::size_t at = 0;
};

}  // namespace

std::vector<Token> Scan(std::string_view query) { return Scanner(query).ScanAll(); }

}  // namespace Evaluator
