#pragma once

// The Memory Manager: blocks of memory that are known by handles.
//
// A handle leads to the address of its block, which changes when the block is resized. The handles of these
// calls are those that NewHandle gave. Handles of resources belong to their files, and are none here: see
// Carbon/Resources.h. What is no handle is told by its value alone; nothing is read through it.

#include <Carbon/MacErrors.h>
#include <Carbon/MacTypes.h>

/// A number of bytes.
typedef long Size;

/// A new block of so many bytes, 0 among them; they are 0. Owned by the caller, who ends it with
/// DisposeHandle. Null, and MemError tells memFullErr without memory, or for more than 2147483647 bytes, and
/// paramErr for a negative size.
PLATFORM_API Handle NewHandle(Size byteCount);
/// Ends a block. MemError tells nilHandleErr for null, memWZErr for what is no handle of a block, or is none
/// any more; nothing is done then.
PLATFORM_API void DisposeHandle(Handle h);
/// The size of a block in bytes; 0 where MemError tells an error, as above.
PLATFORM_API Size GetHandleSize(Handle h);
/// Gives a block another size. Its bytes stay, as far as it has room for them; further ones have any value.
/// MemError tells an error as above, memFullErr or paramErr; the block is as it was then.
PLATFORM_API void SetHandleSize(Handle h, Size newSize);

/// The result code of the calling thread's last call of those above.
PLATFORM_API OSErr MemError(void);
