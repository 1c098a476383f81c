#pragma once

// Internal. The bounds that nobody can set, beside the Limits of the embedding interface.

#include <cstddef>

namespace Evaluator {

/// The deepest syntax tree that the stacks of all builds have room for.
inline constexpr std::size_t kDeepestNesting = 400;
/// Bytes of a tuple type's name, beyond which it is cut: it can double with every level.
inline constexpr std::size_t kTupleName = 500;
/// Fields of a tuple that is compared, those within its fields included; they too double with every level.
inline constexpr std::size_t kComparedFields = 1000;

}  // namespace Evaluator
