#pragma once

// Internal. What an exception that came out of an inspector means to the person who asked. For use in a catch
// clause: both functions look at the exception that is being handled.

#include <optional>
#include <string>

#include "Evaluator/Embedding.h"
#include "registry/Registry.h"

namespace Evaluator {

/// When the exception is the platform's word that an item is not there: that word. Else nothing.
std::optional<std::string> MissingItem();

/// The problem to report: which registration failed and why, the platform's code with its meaning.
Problem FailureOf(Entry const& entry, Range where);

}  // namespace Evaluator
