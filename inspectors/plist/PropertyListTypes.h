#pragma once

// The types of what a property list holds.

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFString.h>

#include "frame/SharingPtr.h"
#include "plist/PlatformHolders.h"

/// Any value of a property list. It borrows: the object belongs to the array, dictionary or preference that
/// it was found in.
struct OSXValue {
    /// The object is not null.
    explicit OSXValue(CFTypeRef borrowed) noexcept : object(borrowed) {}

    CFTypeRef object;
    SharingLink link;
};

/// An array; its copies own one reference together.
struct OSXArray {
    /// Takes over a reference that the caller owned, which is not null.
    explicit OSXArray(CFArrayRef owned) noexcept : array(owned) {}

    Inspectors::SharedReference<CFArrayRef> array;
};

/// A dictionary; each copy owns a reference, which is not null.
struct OSXDictionary {
    explicit OSXDictionary(AutoCFDictionary owned) noexcept : dictionary(std::move(owned)) {}

    AutoCFDictionary dictionary;
};

/// A key of a dictionary and its value. It borrows both from the dictionary.
struct OSXDictionaryEntry {
    OSXDictionaryEntry(CFStringRef borrowedKey, CFTypeRef borrowedValue) noexcept
        : key(borrowedKey), value(borrowedValue) {}

    CFStringRef key;
    CFTypeRef value;
    SharingLink link;
};
