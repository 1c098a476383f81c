#pragma once

#include <CoreFoundation/CFBase.h>

namespace Platform {

/// The result code that stands for a value of errno; noErr for 0.
OSErr ErrorOfErrno(int number);

}  // namespace Platform
