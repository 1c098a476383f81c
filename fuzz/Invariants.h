#pragma once

// What every fuzz target holds the evaluator to. A target is handed any bytes as a query, and ends the
// process, so that the fuzzer keeps the input, when something does not hold.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "Evaluator/Embedding.h"

namespace Fuzz {

inline std::string_view AsQuery(std::uint8_t const* data, std::size_t size) {
    return {reinterpret_cast<char const*>(data), size};
}

inline void Hold(bool condition, char const* what) {
    if (condition) return;
    std::fprintf(stderr, "this does not hold: %s\n", what);
    std::abort();
}

inline void HoldRange(Evaluator::Range range, std::string_view query) {
    Hold(range.begin <= range.end, "a range does not end before it begins");
    Hold(range.end <= query.size(), "a range lies within the query");
}

/// A problem lies within the query, and a person can read it: a message, the line with its caret, and the
/// hint, a line each, without control characters.
inline void HoldProblem(Evaluator::Problem const& problem, std::string_view query) {
    HoldRange(problem.range, query);
    Hold(!problem.message.empty(), "a problem has a message");
    std::string const shown = Evaluator::Render(problem, query);
    int lines = 0;
    for (char c : shown) {
        auto byte = static_cast<unsigned char>(c);
        lines += c == '\n';
        Hold(c == '\n' || (byte >= 0x20 && byte != 0x7F), "a problem is shown without control characters");
    }
    Hold(shown.ends_with('\n') && lines == (problem.hint.empty() ? 3 : 4),
         "a problem is shown in whole lines");
}

}  // namespace Fuzz
