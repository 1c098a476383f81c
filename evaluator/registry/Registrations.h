#pragma once

// Internal. The registrations as the embedding interface shows them.

#include <vector>

#include "Evaluator/Embedding.h"

namespace Evaluator {

/// Those of the loaded libraries, in order. Called under the evaluation lock.
std::vector<RegistrationInfo> LoadedRegistrations();

}  // namespace Evaluator
