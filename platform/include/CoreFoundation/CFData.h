#pragma once

// Data: an immutable row of bytes.

#include <CoreFoundation/CFBase.h>

typedef struct __CFData const* CFDataRef;

/// The number of the type of data. Two are equal when their bytes are.
PLATFORM_API CFTypeID CFDataGetTypeID(void);
/// A copy of `length` bytes; null for a negative number. `bytes` may be null when there are none.
PLATFORM_API CFDataRef CFDataCreate(CFAllocatorRef allocator, UInt8 const* bytes, CFIndex length);
/// Bytes of the data.
PLATFORM_API CFIndex CFDataGetLength(CFDataRef data);
/// The first of the bytes, which live as long as the data. Not null, and not to be read, when there are none.
PLATFORM_API UInt8 const* CFDataGetBytePtr(CFDataRef data);
