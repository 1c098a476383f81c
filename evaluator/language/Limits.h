#pragma once

// Internal. The bounds that a query is held to, each with its reason.

#include <cstddef>

namespace Evaluator {

struct Limits {
    /// Bytes of a query. Far beyond what a person writes; bounds the work of reading one.
    std::size_t queryLength = 1 << 20;
    /// Depth of the syntax tree. Reading, checking and evaluating descend it on the native stack.
    std::size_t nesting = 400;
    /// Bytes of a tuple's text. A tuple may hold one value many times over, so that its text outgrows any
    /// memory.
    std::size_t tupleText = 16 << 20;
    /// Bytes of a tuple type's name, beyond which it is cut; it too can double with every level.
    std::size_t tupleName = 500;
    /// Values that "sorted values", "unique values" and "last values" hold at one time; they take memory
    /// until the last is handed out.
    std::size_t gatheredValues = 10'000'000;
    /// Bytes of a text that "&" and "concatenation" put together. Texts can double with every step.
    std::size_t textBytes = 256 << 20;
    /// Fields of a tuple that is compared, those within its fields included; they too double with every
    /// level.
    std::size_t comparedFields = 1000;
    /// Problems reported of one query; more would not be read.
    std::size_t problems = 5;
    /// Suggestions in one hint.
    std::size_t suggestions = 3;
};

inline constexpr Limits kLimits;

}  // namespace Evaluator
