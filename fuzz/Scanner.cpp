// Any bytes as a query, cut into tokens.

#include "language/Scanner.h"

#include "Invariants.h"
#include "registry/Words.h"

using namespace Evaluator;

namespace {

void HoldToken(Token const& token, std::string_view query) {
    std::string_view const written = query.substr(token.range.begin, token.range.end - token.range.begin);
    Fuzz::Hold(written.empty() == (token.kind == TokenKind::end), "only the end has no bytes");
    if (token.kind == TokenKind::word)
        Fuzz::Hold(EqualWords(token.text, written), "a word's text is what is written there");
    if (token.kind == TokenKind::integer)
        Fuzz::Hold(token.text == written, "an integer's text is its digits");
    if (token.kind == TokenKind::string)
        Fuzz::Hold(token.text.size() + 2 <= written.size(), "no escape stands for more bytes than it has");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const query = Fuzz::AsQuery(data, size);
    try {
        std::vector<Token> const tokens = Scan(query);
        std::size_t behind = 0;
        for (Token const& token : tokens) {
            Fuzz::HoldRange(token.range, query);
            Fuzz::Hold(token.range.begin >= behind, "tokens come in order");
            Fuzz::Hold((token.kind == TokenKind::end) == (&token == &tokens.back()), "the end comes last");
            HoldToken(token, query);
            behind = token.range.end;
        }
    } catch (SyntaxError const& error) {
        Fuzz::HoldProblem(error.problem, query);
    }
    return 0;
}
