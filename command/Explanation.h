#pragma once

#include <string>

#include "Evaluator/Embedding.h"

namespace Command {

/// What the evaluator has understood: the query with all its parentheses; then a line for each phrase, word
/// and operator, its parts indented below it: the words, the type and whether it is one value or many, and
/// the registration that is behind it.
std::string TextOfExplanation(Evaluator::Query const& query);

}  // namespace Command
