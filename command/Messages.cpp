#include "command/Messages.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "command/Json.h"
#include "command/Terminal.h"

namespace Command {
namespace {

using Evaluator::Problem;
using Evaluator::ProblemKind;

Evaluator::Colour ColourOfStandardError() {
    char const* const refused = std::getenv("NO_COLOR");
    bool const wanted = StandardErrorIsTerminal() && !(refused && *refused);
    return wanted ? Evaluator::Colour::ansi : Evaluator::Colour::none;
}

bool Same(Problem const& a, Problem const& b) {
    return a.kind == b.kind && a.range == b.range && a.message == b.message && a.hint == b.hint;
}

void Print(std::string const& text) { std::fwrite(text.data(), 1, text.size(), stderr); }

// "FILE:LINE:COLUMN: ", counted from 1, columns in characters; as editors read it.
std::string PlaceOf(Problem const& problem, Question const& question) {
    if (question.source.empty() || problem.kind == ProblemKind::library) return {};
    std::string_view before = std::string_view(question.text).substr(0, problem.range.begin);
    if (before.size() == question.text.size())  // what is missing at the end is missing behind the last word
        before = before.substr(0, before.find_last_not_of(" \t\r\n") + 1);
    auto const line = std::count(before.begin(), before.end(), '\n') + 1;
    before.remove_prefix(before.rfind('\n') + 1);  // npos + 1 is 0
    auto startsCharacter = [](char byte) { return (byte & 0xC0) != 0x80; };
    auto const column = std::count_if(before.begin(), before.end(), startsCharacter) + 1;
    return Evaluator::Printable(question.source) + ':' + std::to_string(line) + ':' + std::to_string(column) +
           ": ";
}

}  // namespace

Messages::Messages(bool asJson) : asJson(asJson), colour(ColourOfStandardError()) {}

void Messages::Tell(std::vector<Problem> const& problems, Question const& question) const {
    for (auto problem = problems.begin(); problem != problems.end(); ++problem) {
        auto isSame = [&](Problem const& other) { return Same(*problem, other); };
        if (std::any_of(problems.begin(), problem, isSame)) continue;
        auto const count = static_cast<std::size_t>(std::count_if(problem, problems.end(), isSame));
        TellOne(*problem, NameOf(problem->kind), count, question);
    }
}

void Messages::Tell(std::string const& message) const {
    TellOne({ProblemKind::library, {}, message, {}}, "command", 1, {});
}

void Messages::TellOne(Problem problem, std::string_view kind, std::size_t count,
                       Question const& question) const {
    if (asJson) {
        std::string const file = question.source.empty() ? "null" : JsonOfText(question.source);
        return Print('{' + JsonMembersOf(problem, kind) + ",\"file\":" + file +
                     ",\"count\":" + std::to_string(count) + "}\n");
    }
    if (count > 1) problem.message += " (" + std::to_string(count) + " times)";
    Print(PlaceOf(problem, question) + Evaluator::Render(problem, question.text, colour));
}

}  // namespace Command
