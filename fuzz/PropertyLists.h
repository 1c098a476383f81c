#pragma once

// What the fuzz targets of property lists hold the platform to: any bytes are a list, with objects that can
// be walked, or are refused with a reason.

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <vector>

#include "Invariants.h"

namespace Fuzz {

/// Asks every object for what can be asked of its type. Objects that are shared are seen again at each place,
/// so `budget` bounds how many are seen.
inline void HoldObject(CFTypeRef object, int levels, int& budget) {
    if (--budget < 0) return;
    Hold(CFGetRetainCount(object) >= 1, "an object is owned");
    CFTypeID const type = CFGetTypeID(object);
    if (type == CFStringGetTypeID()) {
        auto const text = static_cast<CFStringRef>(object);
        CFRange const all = CFRangeMake(0, CFStringGetLength(text));
        CFIndex size = 0, written = 0;
        CFStringGetBytes(text, all, kCFStringEncodingMacRoman, '?', true, nullptr, 0, &size);
        std::vector<UInt8> bytes(static_cast<std::size_t>(size) + 1);
        CFStringGetBytes(text, all, kCFStringEncodingMacRoman, '?', true, bytes.data(), size, &written);
        Hold(size == written, "measuring and converting agree");
    } else if (type == CFNumberGetTypeID()) {
        auto const number = static_cast<CFNumberRef>(object);
        SInt32 small;
        SInt64 large;
        bool const fits = CFNumberGetValue(number, kCFNumberLongType, &small) != 0;
        bool const fitsLarge = CFNumberGetValue(number, kCFNumberSInt64Type, &large) != 0;
        Hold(!fits || (fitsLarge && small == large), "a number that fits 32 bits fits 64");
    } else if (type == CFDataGetTypeID()) {
        auto const data = static_cast<CFDataRef>(object);
        UInt8 const* const bytes = CFDataGetBytePtr(data);
        std::vector<UInt8> const copy(bytes, bytes + CFDataGetLength(data));
        Hold(std::equal(copy.begin(), copy.end(), bytes), "all bytes of data can be read");
    } else if (type == CFArrayGetTypeID()) {
        auto const array = static_cast<CFArrayRef>(object);
        Hold(levels > 0, "containers are not too deep");
        for (CFIndex i = 0; i < CFArrayGetCount(array); ++i)
            HoldObject(CFArrayGetValueAtIndex(array, i), levels - 1, budget);
    } else if (type == CFDictionaryGetTypeID()) {
        auto const dictionary = static_cast<CFDictionaryRef>(object);
        Hold(levels > 0, "containers are not too deep");
        std::vector<CFTypeRef> keys(static_cast<std::size_t>(CFDictionaryGetCount(dictionary)));
        std::vector<CFTypeRef> values(keys.size());
        CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
        for (std::size_t i = 0; i < keys.size() && budget > 0; ++i) {
            Hold(CFDictionaryGetValue(dictionary, keys[i]) == values[i], "every key is found");
            HoldObject(keys[i], 0, budget);
            HoldObject(values[i], levels - 1, budget);
        }
    }
}

/// Reads bytes as a property list.
inline void HoldPropertyList(UInt8 const* bytes, std::size_t size) {
    CFDataRef const data = CFDataCreate(kCFAllocatorDefault, bytes, static_cast<CFIndex>(size));
    CFStringRef reason = nullptr;
    CFPropertyListRef const list = CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data, 0, &reason);
    CFRelease(data);
    Hold((list == nullptr) == (reason != nullptr), "a list is read, or refused with a reason");
    if (reason != nullptr) CFRelease(reason);
    if (list == nullptr) return;
    constexpr int mostLevels = 512;
    int budget = 100000;
    HoldObject(list, mostLevels, budget);
    CFIndex const formerOwners = CFGetRetainCount(list);
    CFRetain(list);
    Hold(CFGetRetainCount(list) == formerOwners + 1, "the root can be shared");
    CFRelease(list);
    CFRelease(list);
}

}  // namespace Fuzz
