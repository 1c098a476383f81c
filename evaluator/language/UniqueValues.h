#pragma once

// Internal. Each of several equal values once.

#include "language/Comparison.h"

namespace Evaluator {

/// The values of a cursor without those that are equal to an earlier one, each as soon as it is first met.
/// Values of the host's own types are found by hash, others by comparing with all earlier ones. `equal` must
/// outlive the result.
CursorPointer UniqueValues(CursorPointer values, Comparison const& equal, Range where);

}  // namespace Evaluator
