#include "language/Suggestions.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "language/Limits.h"

namespace Evaluator {
namespace {

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

std::string SuggestNearest(std::string_view text, std::vector<std::string> candidates) {
    std::vector<std::pair<std::size_t, std::string>> near;
    for (std::string& candidate : candidates) {
        std::size_t distance = EditDistance(text, candidate);
        if (distance <= std::max<std::size_t>(2, text.size() / 3))
            near.emplace_back(distance, std::move(candidate));
    }
    std::sort(near.begin(), near.end());
    near.erase(std::unique(near.begin(), near.end()), near.end());
    if (near.empty()) return {};
    if (near.size() > kLimits.suggestions) near.resize(kLimits.suggestions);
    std::string hint = fmt::format("\"{}\" is one", near[0].second);
    std::vector<std::string> others;
    for (std::size_t i = 1; i < near.size(); ++i) others.push_back(fmt::format("\"{}\"", near[i].second));
    if (!others.empty())
        hint += fmt::format("; so {} {}", others.size() == 1 ? "is" : "are", JoinWithAnd(others));
    return hint;
}

}  // namespace Evaluator
