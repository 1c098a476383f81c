#pragma once

// Dictionaries: immutable sets of keys, which are strings, each with a value.

#include <CoreFoundation/CFBase.h>

typedef struct __CFDictionary const* CFDictionaryRef;

/// The number of the type of dictionaries. Two are equal when they have equal keys with equal values, in
/// whatever order.
PLATFORM_API CFTypeID CFDictionaryGetTypeID(void);
/// Keys of the dictionary.
PLATFORM_API CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
/// The value of the key that equals `key`, which the dictionary keeps; null when there is none, as for a
/// `key` that is no string.
PLATFORM_API CFTypeRef CFDictionaryGetValue(CFDictionaryRef dictionary, CFTypeRef key);
/// Copies all keys and values, which the dictionary keeps, to two arrays of that many elements, either of
/// which may be null. A key and its value get the same place. The order is that of the property list that the
/// dictionary comes from; a key that stood there more than once has its first place and its last value.
PLATFORM_API void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, CFTypeRef* keys,
                                               CFTypeRef* values);
