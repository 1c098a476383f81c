#pragma once

// What PlatformForkFailure tells.

#include <Carbon/Files.h>

#include "foundation/Path.h"

namespace Platform {

/// Remembers how a call of this thread on the fork of the file at a path, or its look-up, ended, if it is a
/// failure to tell of. Returns the code.
OSErr NoteForkFailure(OSErr code, Path const& file);
/// Makes PlatformForkFailure tell of none.
void ForgetForkFailure();

}  // namespace Platform
