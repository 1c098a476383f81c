#pragma once

// Text: an immutable row of UTF-16 units.
//
// Names and paths of files are bytes, here usually UTF-8. They become text, and text becomes bytes again,
// through the two functions with FileSystemRepresentation in their names (and through the encoding
// kCFStringEncodingMacHFS, which means the same): a byte that is no part of valid UTF-8 becomes the lone
// surrogate U+DC00 + byte (U+DC80 to U+DCFF), so that every name survives the trip. The other functions know
// nothing of that rule: to them such bytes are not UTF-8, and a lone surrogate has no form in it.

#include <CoreFoundation/CFBase.h>

typedef struct __CFString const* CFStringRef;
typedef UInt32 CFStringEncoding;

/// The encodings that the functions here know. Text in any other is refused.
enum {
    kCFStringEncodingMacRoman = 0,
    /// The encoding of the volumes' names: UTF-8 with the rule for other bytes that is given above.
    kCFStringEncodingMacHFS = 0xFF,
    kCFStringEncodingISOLatin1 = 0x0201,
    kCFStringEncodingASCII = 0x0600,
    /// The machine's byte order; its external form begins with a byte-order mark.
    kCFStringEncodingUnicode = 0x0100,
    kCFStringEncodingUTF16 = 0x0100,
    kCFStringEncodingUTF8 = 0x08000100,
    kCFStringEncodingUTF16BE = 0x10000100,
    kCFStringEncodingUTF16LE = 0x14000100
};

/// The number of the type of strings.
PLATFORM_API CFTypeID CFStringGetTypeID(void);

/// Text from `numBytes` bytes in `encoding`. With `isExternalRepresentation` a byte-order mark at the front
/// (UTF-8, UTF-16) is obeyed and dropped. Null for bytes that are not valid in the encoding, for an odd
/// number of bytes of UTF-16, for a negative number and for an encoding that is not listed above. Every byte
/// is valid in Mac Roman and Latin 1. `bytes` may be null when there are none.
PLATFORM_API CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, UInt8 const* bytes,
                                                 CFIndex numBytes, CFStringEncoding encoding,
                                                 Boolean isExternalRepresentation);
/// Text from UTF-16 units, which are taken as they are. Null for a negative number. `characters` may be null
/// when there are none.
PLATFORM_API CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, UniChar const* characters,
                                                      CFIndex numCharacters);
/// The same text; as strings do not change, it may be the same object.
PLATFORM_API CFStringRef CFStringCreateCopy(CFAllocatorRef allocator, CFStringRef string);
/// The text of a file's name or path, which ends with a NUL byte, by the rule given above. Null only when
/// there is no memory.
PLATFORM_API CFStringRef CFStringCreateWithFileSystemRepresentation(CFAllocatorRef allocator,
                                                                    char const* representation);

/// UTF-16 units in the text.
PLATFORM_API CFIndex CFStringGetLength(CFStringRef string);
/// Copies the units of `range` to `buffer`. Units outside the text are not copied.
PLATFORM_API void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer);

/// Turns the units of `range` into bytes of `encoding` and returns how many units were converted.
///  - `buffer` null measures: `maxBufferLength` is ignored and the conversion runs to the end. Otherwise it
///    stops before the first character whose bytes do not all fit. No terminator is written.
///  - A character without form in the encoding becomes `lossByte`, or ends the conversion when that is 0. A
///    surrogate pair then counts as two characters. In Mac Roman a base and its combining marks are one
///    character: they are composed, and become one loss byte when no composed form exists.
///  - `isExternalRepresentation` puts a byte-order mark in front of UTF-16 in the machine's order; it changes
///    nothing for the other encodings.
/// Nothing is converted for a range that is not within the text and for an encoding that is not listed above.
PLATFORM_API CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                                      UInt8 lossByte, Boolean isExternalRepresentation, UInt8* buffer,
                                      CFIndex maxBufferLength, CFIndex* usedBufferLength);

/// Writes the bytes that name a file, and a NUL, to `buffer` of `maxBufferLength` bytes, by the rule given
/// above. False when they do not fit, and for text that is no name: with a NUL, or with a lone surrogate
/// other than U+DC80 to U+DCFF.
PLATFORM_API Boolean CFStringGetFileSystemRepresentation(CFStringRef string, char* buffer,
                                                         CFIndex maxBufferLength);
/// A size of buffer, with the NUL, that suffices for the function above.
PLATFORM_API CFIndex CFStringGetMaximumSizeOfFileSystemRepresentation(CFStringRef string);
