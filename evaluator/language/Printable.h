#pragma once

// Internal. How wide text is on a terminal, once Printable has made it fit to be shown there.

#include <string_view>

#include "Evaluator/Embedding.h"

namespace Evaluator {

/// How many columns a printable text takes: its characters, each counted as one column.
std::size_t Columns(std::string_view text);

}  // namespace Evaluator
