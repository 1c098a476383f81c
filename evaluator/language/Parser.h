#pragma once

// Internal. Reads the tokens of a query into a syntax tree, by recursive descent, one function a rule of the
// grammar (docs/language.md has the grammar). The vocabulary is asked for one thing only: how many words make
// a phrase.

#include <optional>

#include "language/Scanner.h"
#include "language/Syntax.h"
#include "registry/Vocabulary.h"

namespace Evaluator {

/// How to read the first phrase that can be read in two ways: its longest registered run of words has an
/// operator in it, and the words before that operator are a phrase too.
enum class Reading { longestPhrase, shorterPhrase };

/// The tree of the query. Throws SyntaxError at the first thing that is not of the grammar. When there is a
/// phrase that can be read in two ways, the words of its longest reading become `fork`, in either case.
SyntaxPointer Parse(std::string_view query, Vocabulary const& vocabulary, Limits const& limits,
                    Reading reading, std::optional<Range>& fork);
/// The same in the reading of the longest phrases.
SyntaxPointer Parse(std::string_view query, Vocabulary const& vocabulary, Limits const& limits = {});

}  // namespace Evaluator
