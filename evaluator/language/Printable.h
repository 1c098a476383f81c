#pragma once

// Internal. Text as it may be shown on a terminal.

#include <string>
#include <string_view>

namespace Evaluator {

/// The text with control characters, and bytes that are not UTF-8, as \xHH (tab, line end and return as \t \n
/// \r).
std::string Printable(std::string_view text);
/// How many columns a printable text takes: its characters, each counted as one column.
std::size_t Columns(std::string_view text);

}  // namespace Evaluator
