#pragma once

#include <string>

#include "Evaluator/Embedding.h"

namespace Command {

/// A registration as one JSON object, with the keys that apply to its kind.
std::string AsJson(Evaluator::RegistrationInfo const& registration);

}  // namespace Command
