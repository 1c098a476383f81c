#pragma once

// Internal. The bounds that a query is held to where nobody set others; and one that nobody can set.

#include <cstddef>

#include "Evaluator/Embedding.h"

namespace Evaluator {

inline constexpr Limits kLimits;

/// Bytes of a tuple type's name, beyond which it is cut: it can double with every level.
inline constexpr std::size_t kTupleName = 500;

}  // namespace Evaluator
