#pragma once

// Internal. Values that are collected must not hold what they were made from: a million names would hold a
// million files.

#include "values/Value.h"

namespace Evaluator {

/// The same value without its sources, where it is of the host's own types: a string's bytes are copied, a
/// tuple is made anew of its fields. A value that holds no sources, or is of a library's type, is shared.
ValueRef Detached(ValueRef const& value);

}  // namespace Evaluator
