#pragma once

// Arrays: immutable rows of objects.

#include <CoreFoundation/CFBase.h>

typedef struct __CFArray const* CFArrayRef;

/// The number of the type of arrays. Two arrays are equal when their elements are, one by one.
PLATFORM_API CFTypeID CFArrayGetTypeID(void);
/// Elements of the array.
PLATFORM_API CFIndex CFArrayGetCount(CFArrayRef array);
/// The element at an index from 0 on, which the array keeps; null for an index outside the array.
PLATFORM_API CFTypeRef CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
