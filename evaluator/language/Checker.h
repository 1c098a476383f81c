#pragma once

// Internal. Settles what a query means: every phrase becomes a registration, every expression gets its type
// and is singular or plural. After this no name is looked up again.

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "language/Expression.h"
#include "language/Shown.h"

namespace Evaluator {

/// A query that is sound.
struct CheckedQuery {
    std::vector<std::unique_ptr<TypeEntry>> tupleTypes;  ///< types that this query alone knows
    ExpressionPointer root;
    std::size_t bindings = 0;  ///< places for `it`
    std::size_t literals = 0;
    Shown shown;
    std::vector<Library*> libraries;  ///< those whose registrations it uses, each once, the core aside
};

/// Reads and checks a query; where it is not sound, adds what is wrong to `problems` and returns nothing.
std::unique_ptr<CheckedQuery> Check(std::string_view query, Limits const& limits,
                                    std::vector<Problem>& problems);

}  // namespace Evaluator
