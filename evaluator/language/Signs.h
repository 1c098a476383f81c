#pragma once

// Internal. How operators, relations and types are written.

#include <string>
#include <string_view>

#include "language/Syntax.h"
#include "registry/Entries.h"

namespace Evaluator {

/// "+", "mod", "starts with": the operator or relation of that code.
std::string_view SignOf(int code);
/// ">=", "does not contain": the relation as it is written between its operands.
std::string_view SignOf(Relation const& relation);

/// "a file", "an integer"; of any tuple, "a tuple".
std::string WithArticle(TypeEntry const& type);

}  // namespace Evaluator
