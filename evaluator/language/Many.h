#pragma once

// Internal. The phrases that take a whole plural at once: number, sum, minimum and so on.

#include "language/Comparison.h"
#include "registry/PhrasesOfMany.h"

namespace Evaluator {

/// Such a phrase with all that the checker has settled of it.
struct Many {
    Range range;
    PhraseOfMany const* phrase;
    bool plural;
    TypeEntry const* type;                 ///< of the result
    ExpressionPointer source;              ///< what it takes
    ExpressionPointer index;               ///< null: none
    OperatorEntry const* plus;             ///< of a sum
    std::optional<Comparison> comparison;  ///< equality for unique values, else less-than
};

ExpressionPointer MakeMany(Many many);

}  // namespace Evaluator
