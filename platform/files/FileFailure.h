#pragma once

// What PlatformFileFailure tells.

#include <Carbon/Files.h>

#include "foundation/Path.h"

namespace Platform {

/// Remembers how the look-up of the item at a path, or a call on its fork, ended on this thread, if it is a
/// failure to tell of. Returns the code.
OSErr NoteFileFailure(OSErr code, Path const& file);
/// Makes PlatformFileFailure, PlatformPropertyListFailure and PlatformSettingsFailure tell of none.
void ForgetFileFailure();

}  // namespace Platform
