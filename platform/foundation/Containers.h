#pragma once

// The objects of arrays and dictionaries. Internal to the platform.
//
// Both keep their elements behind the object, in the same piece of memory, and own a reference to each.

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFString.h>

#include <span>

#include "foundation/Object.h"

namespace Platform {

/// An array of the elements: a new one, or the one that is empty. Takes their references over; when it
/// throws, it has taken none.
CFArrayRef NewArray(std::span<CFTypeRef const> elements);
/// A dictionary, made in the same way, of keys, which are strings, and values, which take turns with them. Of
/// equal keys the first one keeps its place and the last one's value counts. Takes the references over; when
/// it throws, it has taken none.
CFDictionaryRef NewDictionary(std::span<CFTypeRef const> keysAndValues);

}  // namespace Platform

struct __CFArray final : Platform::Object {
    ~__CFArray() override;
    CFTypeID TypeID() const override;
    bool EqualTo(Platform::Object const& other) const override;
    CFHashCode Hash() const override;
    unsigned Levels() const override { return levels; }

    std::span<CFTypeRef const> Elements() const noexcept { return {ElementsBehind<CFTypeRef>(this), count}; }

  private:
    friend CFArrayRef Platform::NewArray(std::span<CFTypeRef const> elements);
    explicit __CFArray(std::span<CFTypeRef const> elements) noexcept;

    UInt32 const count;
    UInt32 const levels;
};

/// Entries in the order in which they came, and, where there are many, an index of them behind the last one.
struct __CFDictionary final : Platform::Object {
    struct Entry {
        CFStringRef key;
        CFTypeRef value;
    };

    ~__CFDictionary() override;
    CFTypeID TypeID() const override;
    bool EqualTo(Platform::Object const& other) const override;
    CFHashCode Hash() const override;
    unsigned Levels() const override { return levels; }

    std::span<Entry const> Entries() const noexcept { return {ElementsBehind<Entry>(this), count}; }
    /// The value of the key that equals this one; null when there is none.
    CFTypeRef Find(CFStringRef key) const;

  private:
    friend CFDictionaryRef Platform::NewDictionary(std::span<CFTypeRef const> keysAndValues);
    explicit __CFDictionary(UInt32 mostEntries) noexcept;

    void Add(CFStringRef key, CFTypeRef value);
    // The entry of an equal key, or null. `place` is where the index has the entry, or would have it.
    Entry* Locate(CFStringRef key, UInt32*& place) const;

    UInt32 count = 0;
    UInt16 levels = 1;
    UInt8 indexBits;     // 2^indexBits places in the index; 0 where there is none
    UInt32 mostEntries;  // before the index
};
