#pragma once

// Internal. How a query was read, as a query.

#include <string>

#include "language/Syntax.h"

namespace Evaluator {

/// The query with all its parentheses, such as `(name of (file "/etc/hosts"))`: every operator, every index
/// and every "of" stands in its own. It is read as the same tree, parentheses that only group aside.
std::string Bracketed(Syntax const& syntax);

}  // namespace Evaluator
