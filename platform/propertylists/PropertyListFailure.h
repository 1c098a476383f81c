#pragma once

// What PlatformPropertyListFailure tells.

#include <string>

#include "foundation/Path.h"

namespace Platform {

/// Remembers why bytes that this thread took for a property list are none, and the file that they came from.
/// Of several the first ones are told of: a search begins with those that matter most.
void NotePropertyListFailure(Path const& file, std::string const& reason);
/// Remembers the file whose bytes this thread read as a property list last.
void NotePropertyList(Path const& file);
/// Makes PlatformPropertyListFailure tell of none.
void ForgetPropertyListFailure();

}  // namespace Platform
