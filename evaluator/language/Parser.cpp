#include "language/Parser.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <utility>

#include "language/Limits.h"
#include "registry/Words.h"

namespace Evaluator {
namespace {

// Whether an operator begins with the word at `place`; other operator words are just words there.
bool BeginsOperator(std::vector<std::string> const& words, std::size_t place) {
    std::string const& word = words[place];
    if (word == "starts" || word == "ends") return place + 1 < words.size() && words[place + 1] == "with";
    return word == "contains" || word == "mod";
}

class Parser {
  public:
    Parser(std::string_view text, Vocabulary const& vocabulary, Limits const& limits, Reading reading,
           std::optional<Range>& fork)
        : query(text),
          vocabulary(vocabulary),
          nesting(std::min(limits.nesting, kDeepestNesting)),
          reading(reading),
          fork(fork),
          tokens(Scan(text)) {}

    SyntaxPointer ParseQuery() {
        if (Now().kind == TokenKind::end) Report({0, 0}, "the query is empty");
        SyntaxPointer result = ParseCollection();
        if (Now().kind != TokenKind::end) ReportExpected("the end of the query");
        return result;
    }

  private:
    // ---- Tokens

    Token const& Now() const { return tokens[at]; }
    Token const& Ahead(std::size_t count) const { return tokens[std::min(at + count, tokens.size() - 1)]; }
    bool IsWordAt(std::size_t ahead, std::string_view word) const {
        return Ahead(ahead).kind == TokenKind::word && Ahead(ahead).text == word;
    }
    bool Take(TokenKind kind) {
        if (Now().kind != kind) return false;
        ++at;
        return true;
    }
    bool TakeWord(std::string_view word) {
        if (!IsWordAt(0, word)) return false;
        ++at;
        return true;
    }
    bool TakeWords(std::initializer_list<std::string_view> words) {
        std::size_t ahead = 0;
        for (std::string_view word : words)
            if (!IsWordAt(ahead++, word)) return false;
        at += words.size();
        return true;
    }
    // From the beginning of the token `first` to the end of the last one taken.
    Range Since(std::size_t first) const { return {tokens[first].range.begin, tokens[at - 1].range.end}; }

    // ---- Problems

    [[noreturn]] static void Report(Range range, std::string message, std::string_view hint = {},
                                    ProblemKind kind = ProblemKind::syntax) {
        throw SyntaxError{{kind, range, std::move(message), std::string(hint)}};
    }
    [[noreturn]] void ReportExpected(std::string_view what, std::string_view hint = {}) const {
        std::string_view found = query.substr(Now().range.begin, Now().range.end - Now().range.begin);
        if (Now().kind == TokenKind::end)
            Report(Now().range, fmt::format("{} is missing at the end of the query", what), hint);
        Report(Now().range,
               fmt::format("{} is expected here, not {}", what,
                           Now().kind == TokenKind::string ? "a string" : fmt::format("\"{}\"", found)),
               hint);
    }
    void Expect(TokenKind kind, std::string_view what) {
        if (!Take(kind)) ReportExpected(what);
    }
    void ExpectWord(std::string_view word) {
        if (!TakeWord(word)) ReportExpected(fmt::format("\"{}\"", word));
    }

    // ---- Depth

    [[noreturn]] void ReportTooDeep(Range range) const {
        Report(range, fmt::format("the query is nested more than {} deep", nesting),
               "split it into several queries", ProblemKind::limit);
    }
    // Counts the rules that call themselves (parentheses, "if", "otherwise", "not", "-"), while they run.
    struct Descent {
        explicit Descent(Parser& owner) : parser(owner) {
            if (++parser.depth > parser.nesting) parser.ReportTooDeep(parser.Now().range);
        }
        ~Descent() { --parser.depth; }
        Parser& parser;
    };

    // ---- Nodes

    static SyntaxPointer Node(SyntaxKind kind, Range range, Range sign) {
        auto node = std::make_unique<Syntax>();
        node->kind = kind;
        node->range = range;
        node->sign = sign;
        return node;
    }
    // Settles the height of a node whose children are in place.
    SyntaxPointer Finish(SyntaxPointer node) const {
        std::size_t below = 0;
        for (SyntaxPointer const& part : node->parts) below = std::max(below, part->height);
        for (Syntax const* child : {node->index.get(), node->object.get(), node->condition.get()})
            if (child) below = std::max(below, child->height);
        node->height = below + 1;
        if (node->height > nesting) ReportTooDeep(node->range);
        return node;
    }
    SyntaxPointer Join(SyntaxKind kind, Range sign, SyntaxPointer left, SyntaxPointer right) const {
        SyntaxPointer node = Node(kind, {left->range.begin, right->range.end}, sign);
        node->parts.push_back(std::move(left));
        node->parts.push_back(std::move(right));
        return Finish(std::move(node));
    }
    SyntaxPointer Prefix(SyntaxKind kind, std::size_t first, Range sign, SyntaxPointer operand) {
        SyntaxPointer node = Node(kind, Since(first), sign);
        node->parts.push_back(std::move(operand));
        return Finish(std::move(node));
    }

    // ---- Rules, loosest first

    // A list of one is the thing itself.
    template <class Rule>
    SyntaxPointer ParseList(SyntaxKind kind, TokenKind separator, Rule rule) {
        std::size_t first = at;
        std::vector<SyntaxPointer> parts;
        do parts.push_back((this->*rule)());
        while (Take(separator));
        if (parts.size() == 1) return std::move(parts[0]);
        SyntaxPointer node = Node(kind, Since(first), Since(first));
        node->parts = std::move(parts);
        return Finish(std::move(node));
    }
    SyntaxPointer ParseCollection() {
        return ParseList(SyntaxKind::collection, TokenKind::semicolon, &Parser::ParseTuple);
    }
    SyntaxPointer ParseTuple() {
        return ParseList(SyntaxKind::tuple, TokenKind::comma, &Parser::ParseChoice);
    }

    SyntaxPointer ParseChoice() {
        std::size_t first = at;
        if (!TakeWord("if")) return ParseFallback();
        Descent descent(*this);
        SyntaxPointer node = Node(SyntaxKind::choice, {}, tokens[first].range);
        node->parts.push_back(ParseChoice());
        ExpectWord("then");
        node->parts.push_back(ParseChoice());
        ExpectWord("else");
        node->parts.push_back(ParseChoice());
        node->range = Since(first);
        return Finish(std::move(node));
    }

    SyntaxPointer ParseFallback() {
        SyntaxPointer left = ParseDisjunction();
        Range sign = Now().range;
        if (!TakeWord("otherwise")) return left;
        Descent descent(*this);
        return Join(SyntaxKind::fallback, sign, std::move(left), ParseFallback());
    }

    SyntaxPointer ParseDisjunction() {
        SyntaxPointer left = ParseConjunction();
        for (Range sign = Now().range; TakeWord("or"); sign = Now().range)
            left = Join(SyntaxKind::either, sign, std::move(left), ParseConjunction());
        return left;
    }

    SyntaxPointer ParseConjunction() {
        SyntaxPointer left = ParseNegation();
        for (Range sign = Now().range; TakeWord("and"); sign = Now().range)
            left = Join(SyntaxKind::both, sign, std::move(left), ParseNegation());
        return left;
    }

    SyntaxPointer ParseNegation() {
        std::size_t first = at;
        Range sign = Now().range;
        if (!TakeWord("not")) return ParseRelation();
        Descent descent(*this);
        SyntaxPointer operand = ParseNegation();
        return Prefix(SyntaxKind::negation, first, sign, std::move(operand));
    }

    SyntaxPointer ParseRelation() {
        SyntaxPointer left = ParseExistence();
        std::size_t first = at;
        Relation relation;
        if (!TakeRelation(relation)) return left;
        Range sign = Since(first);
        SyntaxPointer node = Join(SyntaxKind::relation, sign, std::move(left), ParseExistence());
        node->relation = relation;
        first = at;
        if (Relation another; TakeRelation(another))
            Report(Since(first), "relations do not chain",
                   "join two relations with \"and\", or use parentheses");
        return node;
    }

    bool TakeRelation(Relation& relation) {
        struct Sign {
            TokenKind kind;
            Relation relation;
        };
        static constexpr Sign signs[] = {
            {TokenKind::equal, {kRelationEqual, false, false}},
            {TokenKind::notEqual, {kRelationEqual, false, true}},
            {TokenKind::less, {kRelationLess, false, false}},
            {TokenKind::lessOrEqual, {kRelationLessOrEqual, false, false}},
            {TokenKind::greater, {kRelationLess, true, false}},
            {TokenKind::greaterOrEqual, {kRelationLessOrEqual, true, false}},
        };
        for (Sign const& sign : signs)
            if (Take(sign.kind)) {
                relation = sign.relation;
                return true;
            }
        return TakeRelationWords(relation);
    }

    bool TakeRelationWords(Relation& relation) {
        auto is = [&](int code, bool exchanged, bool negated) {
            relation = {code, exchanged, negated};
            return true;
        };
        if (TakeWords({"is", "not", "contained", "by"})) return is(kRelationContains, true, true);
        if (TakeWords({"is", "contained", "by"})) return is(kRelationContains, true, false);
        if (TakeWords({"is", "not"})) return is(kRelationEqual, false, true);
        if (TakeWords({"is"})) return is(kRelationEqual, false, false);
        if (TakeWords({"contains"})) return is(kRelationContains, false, false);
        if (TakeWords({"starts", "with"})) return is(kRelationStartsWith, false, false);
        if (TakeWords({"ends", "with"})) return is(kRelationEndsWith, false, false);
        if (TakeWords({"does", "not", "contain"})) return is(kRelationContains, false, true);
        if (TakeWords({"does", "not", "start", "with"})) return is(kRelationStartsWith, false, true);
        if (TakeWords({"does", "not", "end", "with"})) return is(kRelationEndsWith, false, true);
        if (IsWordAt(0, "does"))
            ReportExpected("a relation", "such as \"does not contain\", \"does not start with\"");
        return false;
    }

    SyntaxPointer ParseExistence() {
        std::size_t first = at;
        Range sign = Now().range;
        if (!TakeWord("exists")) return ParseSum();
        SyntaxPointer operand = ParseSum();
        return Prefix(SyntaxKind::existence, first, sign, std::move(operand));
    }

    SyntaxPointer Arithmetic(int code, Range sign, SyntaxPointer left, SyntaxPointer right) {
        SyntaxPointer node = Join(SyntaxKind::arithmetic, sign, std::move(left), std::move(right));
        node->number = code;
        return node;
    }

    SyntaxPointer ParseSum() {
        SyntaxPointer left = ParseProduct();
        for (;;) {
            Range sign = Now().range;
            int code;
            if (Take(TokenKind::plus))
                code = kOperatorPlus;
            else if (Take(TokenKind::minus))
                code = kOperatorMinus;
            else if (Take(TokenKind::ampersand))
                code = kOperatorJoin;
            else
                return left;
            left = Arithmetic(code, sign, std::move(left), ParseProduct());
        }
    }

    SyntaxPointer ParseProduct() {
        SyntaxPointer left = ParseCast();
        for (;;) {
            Range sign = Now().range;
            int code;
            if (Take(TokenKind::times))
                code = kOperatorTimes;
            else if (Take(TokenKind::dividedBy))
                code = kOperatorDividedBy;
            else if (TakeWord("mod"))
                code = kOperatorMod;
            else
                return left;
            left = Arithmetic(code, sign, std::move(left), ParseCast());
        }
    }

    SyntaxPointer ParseCast() {
        SyntaxPointer operand = ParseSign();
        while (TakeWord("as")) {
            SyntaxPointer node = Node(SyntaxKind::cast, {}, {});
            ParsePhrase(*node, "a word to convert to", &Vocabulary::LongestCastPhrase);
            node->range = {operand->range.begin, node->sign.end};
            node->parts.push_back(std::move(operand));
            operand = Finish(std::move(node));
        }
        return operand;
    }

    SyntaxPointer ParseSign() {
        std::size_t first = at;
        Range sign = Now().range;
        if (IsSignOfLiteral() || !Take(TokenKind::minus)) return ParseReference();
        Descent descent(*this);
        SyntaxPointer operand = ParseSign();
        return Prefix(SyntaxKind::minus, first, sign, std::move(operand));
    }

    // Whether here stands a minus directly before an integer, to which it then belongs.
    bool IsSignOfLiteral() const {
        return Now().kind == TokenKind::minus && Ahead(1).kind == TokenKind::integer &&
               Now().range.end == Ahead(1).range.begin;
    }

    // step "of" step "of" …: the last is asked first, so the chain is folded from the right.
    SyntaxPointer ParseReference() {
        std::vector<SyntaxPointer> steps;
        do {
            std::size_t first = at;
            steps.push_back(ParseStep());
            bool const isValue =
                steps.back()->kind != SyntaxKind::step && tokens[first].kind != TokenKind::leftParenthesis;
            if (isValue && IsWordAt(0, "of")) ReportValueBeforeOf(first, steps.back()->sign);
        } while (TakeWord("of"));
        SyntaxPointer reference = std::move(steps.back());
        for (steps.pop_back(); !steps.empty(); steps.pop_back()) {
            SyntaxPointer step = std::move(steps.back());
            step->range.end = reference->range.end;
            step->object = std::move(reference);
            reference = Finish(std::move(step));
        }
        return reference;
    }

    // `first` is the token with which the value begins.
    [[noreturn]] void ReportValueBeforeOf(std::size_t first, Range value) const {
        bool const subtracted = tokens[first].kind == TokenKind::integer && first > 0 &&
                                tokens[first - 1].kind == TokenKind::minus;
        Report(value, "before \"of\" stands a phrase or a parenthesis, not a value",
               subtracted ? "a negative index stands in parentheses: (-1)" : "");
    }

    SyntaxPointer ParseStep() {
        std::size_t first = at;
        SyntaxPointer step = ParseUnfilteredStep();
        if (!IsWordAt(0, "whose")) return step;
        if (step->kind != SyntaxKind::step && step->kind != SyntaxKind::group) {
            SyntaxPointer group = Node(SyntaxKind::group, step->range, step->range);
            group->parts.push_back(std::move(step));
            step = std::move(group);
        }
        ExpectWord("whose");
        if (Now().kind != TokenKind::leftParenthesis)
            ReportExpected("\"(\"", "a condition stands in parentheses: files whose (size of it > 0)");
        step->condition = ParseParenthesis();
        step->range = Since(first);
        return Finish(std::move(step));
    }

    SyntaxPointer ParseUnfilteredStep() {
        Token const& token = Now();
        switch (token.kind) {
            case TokenKind::string: {
                ++at;
                SyntaxPointer node = Node(SyntaxKind::string, token.range, token.range);
                node->text = token.text;
                return node;
            }
            case TokenKind::integer:
                return ParseInteger();
            case TokenKind::minus:
                if (!IsSignOfLiteral()) ReportExpected("a phrase or a value");
                return ParseInteger();
            case TokenKind::leftParenthesis: {
                std::size_t first = at;
                SyntaxPointer inside = ParseParenthesis();
                SyntaxPointer node = Node(SyntaxKind::group, Since(first), Since(first));
                node->parts.push_back(std::move(inside));
                return Finish(std::move(node));
            }
            case TokenKind::word:
                return ParseWordStep();
            default:
                ReportExpected("a phrase or a value");
        }
    }

    // "(" collection ")", without the parentheses.
    SyntaxPointer ParseParenthesis() {
        Descent descent(*this);
        Expect(TokenKind::leftParenthesis, "\"(\"");
        SyntaxPointer inside = ParseCollection();
        Expect(TokenKind::rightParenthesis, "\")\"");
        return inside;
    }

    SyntaxPointer ParseInteger() {
        std::size_t first = at;
        std::string digits = Take(TokenKind::minus) ? "-" : "";
        digits += Now().text;
        ++at;
        SyntaxPointer node = Node(SyntaxKind::integer, Since(first), Since(first));
        auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), node->number);
        if (error != std::errc())
            Report(node->range, "this number is out of range",
                   "integers go from -9223372036854775808 to 9223372036854775807");
        return node;
    }

    SyntaxPointer ParseWordStep() {
        Range range = Now().range;
        if (TakeWord("it")) return Node(SyntaxKind::it, range, range);
        for (bool truth : {true, false})
            if (TakeWord(truth ? "true" : "false")) {
                SyntaxPointer node = Node(SyntaxKind::truth, range, range);
                node->number = truth;
                return node;
            }
        SyntaxPointer step = Node(SyntaxKind::step, range, range);
        ParsePhrase(*step, "a phrase or a value", &Vocabulary::LongestPhrase);
        ParseIndex(*step);
        step->range = {step->sign.begin, tokens[at - 1].range.end};
        return Finish(std::move(step));
    }

    void ParseIndex(Syntax& step) {
        switch (Now().kind) {
            case TokenKind::string:
            case TokenKind::integer:
                step.index = ParseUnfilteredStep();
                return;
            case TokenKind::leftParenthesis:
                step.index = ParseParenthesis();
                return;
            default:
                return;
        }
    }

    using LongestRun = std::size_t (Vocabulary::*)(std::vector<std::string> const&) const;

    // Takes the words of a phrase into the node.
    void ParsePhrase(Syntax& node, std::string_view expected, LongestRun longest) {
        std::size_t first = at;
        std::vector<std::string> words;
        for (std::size_t i = 0; Ahead(i).kind == TokenKind::word && !IsReservedWord(Ahead(i).text); ++i)
            words.push_back(Ahead(i).text);
        if (words.empty() || IsOperatorWord(words[0])) ReportExpected(expected);
        std::size_t const run = (vocabulary.*longest)(words);
        std::size_t count = Extent(words, run);
        if (std::size_t shorter = fork ? 0 : ShorterRun(words, run, longest)) {
            fork = {tokens[first].range.begin, tokens[first + run - 1].range.end};
            if (reading == Reading::shorterPhrase) count = shorter;
        }
        at += count;
        node.sign = node.range = Since(first);
        for (std::size_t i = 0; i < count; ++i) node.text += (i ? " " : "") + words[i];
    }

    // How many of the words are the phrase. The longest registered run of words, `longest`, is it, unless a
    // word is left over behind it with which no operator begins. Then, or when nothing is registered, all the
    // words up to the next operator are; nothing is registered under them, and the checker says so.
    static std::size_t Extent(std::vector<std::string> const& words, std::size_t longest) {
        std::size_t end = std::max<std::size_t>(longest, 1);
        while (end < words.size() && !BeginsOperator(words, end)) ++end;
        return end;
    }

    // The words of a longest run before the first operator in it, if they are a phrase; 0 when not.
    std::size_t ShorterRun(std::vector<std::string> const& words, std::size_t run, LongestRun longest) const {
        for (std::size_t count = 1; count < run; ++count)
            if (BeginsOperator(words, count) &&
                (vocabulary.*longest)({words.begin(), words.begin() + static_cast<std::ptrdiff_t>(count)}) ==
                    count)
                return count;
        return 0;
    }

    std::string_view query;
    Vocabulary const& vocabulary;
    std::size_t const nesting;
    Reading const reading;
    std::optional<Range>& fork;
    std::vector<Token> tokens;
    std::size_t at = 0;
    std::size_t depth = 0;
};

}  // namespace

SyntaxPointer Parse(std::string_view query, Vocabulary const& vocabulary, Limits const& limits,
                    Reading reading, std::optional<Range>& fork) {
    if (query.size() > limits.queryBytes)
        throw SyntaxError{{ProblemKind::limit,
                           {0, 0},
                           fmt::format("the query is longer than {} bytes", limits.queryBytes),
                           "ask about fewer things at once"}};
    return Parser(query, vocabulary, limits, reading, fork).ParseQuery();
}

SyntaxPointer Parse(std::string_view query, Vocabulary const& vocabulary, Limits const& limits) {
    std::optional<Range> fork;
    return Parse(query, vocabulary, limits, Reading::longestPhrase, fork);
}

}  // namespace Evaluator
