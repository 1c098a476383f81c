#pragma once

// The base of the CoreFoundation interface: numbers, references and what holds for every function of the
// platform.
//
// Conventions of all headers below CoreFoundation/, Carbon/ and Platform/:
//  1. Ownership goes by name: a function with Create or Copy in its name gives the caller one reference, to
//     be balanced with CFRelease; one with Get lends.
//  2. A reference argument must not be null unless the function says so. A result that is a reference is
//     null when the function fails; there is no other sign of failure, and nothing of a failed call remains.
//  3. `allocator` is kCFAllocatorDefault; any other value is ignored, there is one allocator here.
//  4. Every function may be called from any thread. Objects are immutable, their counts are atomic.
//  5. No exception leaves a function. Out of memory is a null reference, or the code memFullErr.
//  6. An output argument that is a pointer may be null where its comment says "optional"; after a failure
//     the outputs are undefined unless their comment says otherwise.
//  7. The headers compile as C11 and as C++.

#include <stdint.h>

#define PLATFORM_EXPORT __attribute__((visibility("default")))
#ifdef __cplusplus
#define PLATFORM_API extern "C" PLATFORM_EXPORT
#else
#define PLATFORM_API extern PLATFORM_EXPORT
#endif

typedef uint8_t UInt8;
typedef int8_t SInt8;
typedef uint16_t UInt16;
typedef int16_t SInt16;
typedef uint32_t UInt32;
typedef int32_t SInt32;
typedef uint64_t UInt64;
typedef int64_t SInt64;
/// One UTF-16 unit, in the machine's byte order.
typedef UInt16 UniChar;
/// A truth value of one byte; zero is false.
typedef unsigned char Boolean;
/// Result codes; zero is success. The codes are in Carbon/MacErrors.h.
typedef SInt16 OSErr;
typedef SInt32 OSStatus;

typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned long CFHashCode;

/// Any object of CoreFoundation.
typedef void const* CFTypeRef;
typedef struct __CFAllocator const* CFAllocatorRef;
#define kCFAllocatorDefault ((CFAllocatorRef)0)

/// `length` elements from `location` on.
typedef struct CFRange {
    CFIndex location;
    CFIndex length;
} CFRange;

/// A range, in one expression.
static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
    CFRange range;
    range.location = location;
    range.length = length;
    return range;
}

/// Takes one more reference to `object` and returns it. Null is a programming error: the process is stopped,
/// with a message on standard error.
PLATFORM_API CFTypeRef CFRetain(CFTypeRef object);
/// Gives one reference to `object` back; the last one ends the object. Null is a programming error: the
/// process is stopped, with a message on standard error.
PLATFORM_API void CFRelease(CFTypeRef object);
/// References that exist to `object` now. For tests and debugging: another thread may change it at any
/// moment.
PLATFORM_API CFIndex CFGetRetainCount(CFTypeRef object);
/// Whether two objects are of one type and have the same contents, as that type sees it.
PLATFORM_API Boolean CFEqual(CFTypeRef left, CFTypeRef right);
/// A number that is the same for equal objects. Differs between runs of a program only with the contents.
PLATFORM_API CFHashCode CFHash(CFTypeRef object);
/// The type of an object, to be compared with CFStringGetTypeID() and its like: types are numbered as the
/// process first meets them.
PLATFORM_API CFTypeID CFGetTypeID(CFTypeRef object);
