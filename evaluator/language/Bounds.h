#pragma once

// Internal. The bounds on what an evaluation holds. Each function throws the problem of the limit, an
// EvaluationError that points at `where`, when the amount is beyond it.

#include <cstddef>

#include "language/Evaluation.h"

namespace Evaluator {

/// Values that a phrase such as "sorted values" holds at one time.
void BoundGathered(Evaluation const& evaluation, std::size_t values, Range where);
/// Bytes of a text that is put together.
void BoundText(Evaluation const& evaluation, std::size_t bytes, Range where);

}  // namespace Evaluator
