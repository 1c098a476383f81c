#pragma once

// Numbers and truth values.

#include <CoreFoundation/CFBase.h>

typedef struct __CFBoolean const* CFBooleanRef;
typedef struct __CFNumber const* CFNumberRef;

/// What a number is to be read as.
typedef enum CFNumberType {
    kCFNumberSInt8Type = 1,
    kCFNumberSInt16Type = 2,
    kCFNumberSInt32Type = 3,
    kCFNumberSInt64Type = 4,
    kCFNumberFloat32Type = 5,
    kCFNumberFloat64Type = 6,
    kCFNumberCharType = 7,
    kCFNumberShortType = 8,
    kCFNumberIntType = 9,
    /// 32 bits on every machine, an SInt32: that is what those who ask for this type rely on.
    kCFNumberLongType = 10,
    kCFNumberLongLongType = 11,
    kCFNumberFloatType = 12,
    kCFNumberDoubleType = 13,
    kCFNumberCFIndexType = 14
} CFNumberType;

/// The number of the type of truth values. There are two of them, which are never numbers here.
PLATFORM_API CFTypeID CFBooleanGetTypeID(void);
/// Whether it is the true one.
PLATFORM_API Boolean CFBooleanGetValue(CFBooleanRef boolean);

/// The number of the type of numbers. Two are equal when their values are: 2 and 2.0 are.
PLATFORM_API CFTypeID CFNumberGetTypeID(void);
/// Writes the value to `value`, a variable of that type, and returns whether nothing was lost. What does not
/// fit is truncated: a fraction goes, a whole number keeps its low bits, a real number becomes the nearest
/// one that fits, and 0 where it is none. For a type that is not listed nothing is written, and the answer is
/// false.
PLATFORM_API Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);
