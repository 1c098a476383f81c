// How a problem is shown: one line of message, the line of the query with a caret, a hint.

#include <fmt/format.h>

#include <array>

#include "Evaluator/Embedding.h"
#include "language/Printable.h"
#include "registry/Words.h"

namespace Evaluator {
namespace {

// More of a line would wrap on most terminals and hide the caret.
constexpr std::size_t kMostShown = 160;   // bytes
constexpr std::size_t kShownBefore = 60;  // bytes before the range

// The line of the query in which the range begins, or as much of a long one as is shown, and the range within
// it.
struct Excerpt {
    std::string_view line;
    Range range;
};

Excerpt LineOf(std::string_view query, Range range) {
    std::size_t at = std::min(range.begin, query.size());
    if (at == query.size())  // what is missing at the end is missing behind the last thing that is there
        while (at > 0 && IsBlank(query[at - 1])) --at;
    std::size_t begin = at == 0 ? 0 : query.rfind('\n', at - 1) + 1;  // npos + 1 is 0
    std::size_t end = std::min(query.find('\n', at), query.size());
    auto insideCharacter = [&](std::size_t place) { return place < end && (query[place] & 0xC0) == 0x80; };
    if (end - begin > kMostShown) {
        if (at - begin > kShownBefore) begin = at - kShownBefore;
        while (begin < at && insideCharacter(begin)) ++begin;
        end = std::min(end, begin + kMostShown);
        while (end > at && insideCharacter(end)) --end;
    }
    return {query.substr(begin, end - begin), {at - begin, std::clamp(range.end, at, end) - begin}};
}

}  // namespace

std::string_view NameOf(ProblemKind kind) {
    constexpr std::array<std::string_view, 6> names{"syntax", "meaning",   "evaluation",
                                                    "limit",  "cancelled", "library"};
    return names.at(static_cast<std::size_t>(kind));
}

std::string Render(Problem const& problem, std::string_view query, Colour colour) {
    auto painted = [&](std::string_view code, std::string text) {
        return colour == Colour::ansi ? fmt::format("\033[{}m{}\033[0m", code, text) : text;
    };
    constexpr std::string_view boldRed = "1;31", bold = "1", green = "32";
    std::string text = fmt::format("{} {}\n", painted(boldRed, "error:"),
                                   painted(bold, std::string(Printable(problem.message))));
    if (problem.kind != ProblemKind::library) {
        Excerpt excerpt = LineOf(query, problem.range);
        std::string_view before = excerpt.line.substr(0, excerpt.range.begin);
        std::string_view meant =
            excerpt.line.substr(excerpt.range.begin, excerpt.range.end - excerpt.range.begin);
        std::size_t width = std::max<std::size_t>(1, Columns(Printable(meant)));
        text += fmt::format("  {}\n  {:{}}{}\n", Printable(excerpt.line), "", Columns(Printable(before)),
                            painted(boldRed, "^" + std::string(width - 1, '~')));
    }
    if (!problem.hint.empty())
        text += fmt::format("  {} {}\n", painted(green, "hint:"), Printable(problem.hint));
    return text;
}

}  // namespace Evaluator
