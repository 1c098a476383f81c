#pragma once

// Internal. What to say of a phrase that is not there.

#include "Evaluator/Embedding.h"
#include "language/Syntax.h"
#include "registry/Vocabulary.h"

namespace Evaluator {

/// A phrase that the object (null: the world) does not have with that index (null: none). What the hint says
/// depends on how near the query came: the same phrase with another index, the same phrase of other types,
/// another phrase of this type. Throws UnknownType where a registration of the phrase names a type that
/// nobody registered.
Problem UnknownPhrase(Vocabulary const& vocabulary, Limits const& limits, Syntax const& syntax,
                      TypeEntry const* object, TypeEntry const* index);

/// A cast that the source does not have; the same in all else.
Problem UnknownCast(Vocabulary const& vocabulary, Limits const& limits, Syntax const& syntax,
                    TypeEntry const& source);

}  // namespace Evaluator
