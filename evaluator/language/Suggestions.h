#pragma once

// Internal. What somebody who misspelt a phrase may have meant.

#include <string>
#include <string_view>
#include <vector>

namespace Evaluator {

/// The phrases of one thing, such as the singular and the plural of a property; at most one of them is
/// suggested.
using Alternatives = std::vector<std::string>;

struct Suggestion {
    Alternatives phrases;
    bool isLikely = true;  ///< as likely to be meant as others as near
};

/// The candidates nearest to the text, nearest first, as a hint: `"name" is one; so are "size" and "type"`.
/// Of two as near the likely one, then the first in alphabetical order. Empty when there are none. Names at
/// most `count` of them.
std::string SuggestNearest(std::string_view text, std::vector<Suggestion> const& candidates,
                           std::size_t count);

/// Whether one of the phrases is the text but for a slip or two.
bool IsNear(std::string_view text, Alternatives const& phrases);

/// `a, b and c`.
std::string JoinWithAnd(std::vector<std::string> const& texts);

}  // namespace Evaluator
