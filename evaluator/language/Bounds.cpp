#include "language/Bounds.h"

#include <fmt/format.h>

#include "language/Evaluation.h"
#include "language/Limits.h"

namespace Evaluator {
namespace {

[[noreturn]] void ThrowReached(Range where, std::string message, std::string hint) {
    throw EvaluationError{{ProblemKind::limit, where, std::move(message), std::move(hint)}};
}

}  // namespace

void BoundGathered(std::size_t values, Range where) {
    if (values > kLimits.gatheredValues)
        ThrowReached(where, fmt::format("more than {} values would be held at once", kLimits.gatheredValues),
                     "leave some out first, with \"whose (…)\" or \"first values\"");
}

void BoundText(std::size_t bytes, Range where) {
    if (bytes > kLimits.textBytes)
        ThrowReached(where, fmt::format("a text would be longer than {} bytes", kLimits.textBytes),
                     "join fewer texts, or take them one at a time");
}

}  // namespace Evaluator
