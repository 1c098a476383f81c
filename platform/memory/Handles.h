#pragma once

// The blocks behind handles.

#include <Carbon/MacMemory.h>

#include <string_view>

namespace Platform {

/// Whether a handle is that of a block: noErr, nilHandleErr or memWZErr.
OSErr CheckHandle(Handle handle);
/// Makes bytes all that a block holds; a result code as that of SetHandleSize.
OSErr FillHandle(Handle handle, std::string_view bytes);

}  // namespace Platform
