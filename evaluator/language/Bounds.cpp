#include "language/Bounds.h"

#include <fmt/format.h>

namespace Evaluator {
namespace {

[[noreturn]] void ThrowReached(Range where, std::string message, std::string hint) {
    throw EvaluationError{{ProblemKind::limit, where, std::move(message), std::move(hint)}};
}

}  // namespace

void BoundGathered(Evaluation const& evaluation, std::size_t values, Range where) {
    if (values > evaluation.limits.gatheredValues)
        ThrowReached(
            where, fmt::format("more than {} values would be held at once", evaluation.limits.gatheredValues),
            "leave some out first, with \"whose (…)\" or \"first values\"");
}

void BoundText(Evaluation const& evaluation, std::size_t bytes, Range where) {
    if (bytes > evaluation.limits.textBytes)
        ThrowReached(where, fmt::format("a text would be longer than {} bytes", evaluation.limits.textBytes),
                     "join fewer texts, or take them one at a time");
}

}  // namespace Evaluator
