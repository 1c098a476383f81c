#pragma once

// Looking through bytes, many at a time. What these answer is what a plain loop over single bytes would.

#include <cstdint>

#include "Evaluator/Values.h"

namespace Inspectors {

/// Looks for a text, which must outlive it.
class TextFinder {
  public:
    explicit TextFinder(ConstData text);

    /// The first place in `bytes` where all of the text stands; null when there is none. The empty text
    /// stands at the front.
    unsigned char const* FindIn(ConstData bytes) const;
    std::size_t TextSize() const { return text.Size(); }

  private:
    unsigned char const* FindInBlock(unsigned char const* block) const;

    ConstData text;
    std::ptrdiff_t first = 0, second = 0;  // the two places in the text that are compared first
};

bool IsLineEnd(unsigned char byte);

/// The first CR or LF; the end of the bytes when there is none.
unsigned char const* FindLineEnd(ConstData bytes);

/// Line endings: how many, and where the last one ends.
struct LineEndings {
    std::int64_t count = 0;
    unsigned char const* end = nullptr;  // null when there are none
};
/// The endings in bytes that begin with a line: CR, LF, or both in either order. Of bytes that others may
/// follow, a last one that could be the first half of an ending does not count.
LineEndings FindLineEndings(ConstData bytes, bool othersMayFollow);

}  // namespace Inspectors
