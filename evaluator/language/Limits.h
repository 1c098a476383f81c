#pragma once

// Internal. The bounds that a query is held to, each with its reason.

#include <cstddef>

namespace Evaluator {

struct Limits {
    /// Bytes of a query. Far beyond what a person writes; bounds the work of reading one.
    std::size_t queryLength = 1 << 20;
    /// Depth of the syntax tree. Reading, checking and evaluating descend it on the native stack.
    std::size_t nesting = 400;
    /// Problems reported of one query; more would not be read.
    std::size_t problems = 5;
    /// Suggestions in one hint.
    std::size_t suggestions = 3;
};

inline constexpr Limits kLimits;

}  // namespace Evaluator
