#pragma once

// The small types of the Carbon interface. Records have the published layout: no field is aligned to more
// than two bytes, and numbers in them are in the machine's byte order.

#include <CoreFoundation/CFBase.h>

/// Four characters as a number, the first one in the top byte.
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;
typedef FourCharCode ResType;
typedef UInt32 OptionBits;
typedef UInt32 ItemCount;
typedef UInt32 TextEncoding;
typedef unsigned long UniCharCount;
typedef unsigned long ByteCount;

/// A block of memory, and what stands for one that the platform may move: it leads to the block's address,
/// which is null while the block is not in memory.
typedef char* Ptr;
typedef Ptr* Handle;

/// A length byte and that many bytes of Mac Roman text.
typedef unsigned char Str31[32];
typedef unsigned char Str63[64];
typedef unsigned char Str255[256];
typedef unsigned char const* ConstStr255Param;

#pragma pack(push, 2)

/// A file's name: its number of UTF-16 units, and the units. The name is the POSIX name, by the rule of
/// CoreFoundation/CFString.h for bytes that are not UTF-8; a ':' in it is an ordinary character.
typedef struct HFSUniStr255 {
    UInt16 length;
    UniChar unicode[255];
} HFSUniStr255;

/// Seconds since 1 January 1904, universal time: 48 bits of seconds and 1/65536 of a second. All zero: not
/// known.
typedef struct UTCDateTime {
    UInt16 highSeconds;
    UInt32 lowSeconds;
    UInt16 fraction;
} UTCDateTime;

typedef struct Point {
    SInt16 v;
    SInt16 h;
} Point;

typedef struct Rect {
    SInt16 top;
    SInt16 left;
    SInt16 bottom;
    SInt16 right;
} Rect;

#pragma pack(pop)

#ifdef __cplusplus
static_assert(sizeof(HFSUniStr255) == 512);
static_assert(sizeof(UTCDateTime) == 8);
#endif
