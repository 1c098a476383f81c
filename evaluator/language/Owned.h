#pragma once

// Internal.

#include <vector>

namespace Evaluator {

/// A vector that an evaluation holds.
template <class T>
using OwnedVector = std::vector<T>;

}  // namespace Evaluator
