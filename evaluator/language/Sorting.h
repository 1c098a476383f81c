#pragma once

// Internal. Values in ascending order.

#include "language/Comparison.h"

namespace Evaluator {

/// The values of a cursor, ascending and stable, once all of them are there. `less` must outlive the result.
CursorPointer SortedValues(CursorPointer values, Comparison const& less, Range where);

}  // namespace Evaluator
