#pragma once

// Internal. Reads the tokens of a query into a syntax tree, by recursive descent, one function a rule of the
// grammar (docs/language.md has the grammar). The vocabulary is asked for one thing only: how many words make
// a phrase.

#include "language/Scanner.h"
#include "language/Syntax.h"
#include "registry/Vocabulary.h"

namespace Evaluator {

/// The tree of the query. Throws SyntaxError at the first thing that is not of the grammar.
SyntaxPointer Parse(std::string_view query, Vocabulary const& vocabulary);

}  // namespace Evaluator
