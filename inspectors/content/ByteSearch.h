#pragma once

// Looking through bytes, many at a time. What these answer is what a plain loop over single bytes would.

#include <cstdint>

#include "Evaluator/Values.h"

namespace Inspectors {

/// The first place in `bytes` where all of `text` stands; null when there is none. The empty text stands at
/// the front.
unsigned char const* FindText(ConstData bytes, ConstData text);

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
