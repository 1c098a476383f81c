#include "language/Suggestions.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <set>
#include <tuple>
#include <utility>

namespace Evaluator {
namespace {

// The work of comparing grows with the square of the length.
constexpr std::size_t kLongestCompared = 200;

// Insertions, deletions, replacements and exchanges of neighbours that turn one text into the other.
std::size_t EditDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> before(to.size() + 1), last(to.size() + 1), row(to.size() + 1);
    std::iota(last.begin(), last.end(), 0);
    for (std::size_t i = 1; i <= from.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            bool same = from[i - 1] == to[j - 1];
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1])
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
        std::swap(before, last);
        std::swap(last, row);
    }
    return last[to.size()];
}

}  // namespace

std::string JoinWithAnd(std::vector<std::string> const& texts) {
    if (texts.empty()) return {};
    if (texts.size() == 1) return texts[0];
    return fmt::format("{} and {}", fmt::join(texts.begin(), texts.end() - 1, ", "), texts.back());
}

bool IsNear(std::string_view text, Alternatives const& phrases) {
    constexpr std::size_t slips = 2;
    return text.size() <= kLongestCompared &&
           std::any_of(phrases.begin(), phrases.end(),
                       [&](std::string const& phrase) { return EditDistance(text, phrase) <= slips; });
}

std::string SuggestNearest(std::string_view text, std::vector<Suggestion> const& candidates,
                           std::size_t count) {
    if (text.size() > kLongestCompared) return {};
    std::set<std::tuple<std::size_t, bool, std::string>> near;  // each phrase once, the first in front
    for (auto const& [phrases, isLikely] : candidates) {
        std::set<std::tuple<std::size_t, bool, std::string>> forms;
        for (std::string const& form : phrases) forms.emplace(EditDistance(text, form), !isLikely, form);
        if (!forms.empty()) near.insert(*forms.begin());
    }
    std::vector<std::string> others;
    for (auto const& [distance, isUnlikely, phrase] : near) {
        std::string const quoted = fmt::format("\"{}\"", phrase);
        // A phrase may be a likely one and an unlikely one, with an index and without.
        bool const isKnown = std::find(others.begin(), others.end(), quoted) != others.end();
        if (others.size() < count && !isKnown) others.push_back(quoted);
    }
    if (others.empty()) return {};
    std::string hint = others[0] + " is one";
    others.erase(others.begin());
    if (!others.empty())
        hint += fmt::format("; so {} {}", others.size() == 1 ? "is" : "are", JoinWithAnd(others));
    return hint;
}

}  // namespace Evaluator
