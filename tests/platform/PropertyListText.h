#pragma once

// Property lists in tests that care for the order of keys and for what is a string.

#include "platform/ListVerbs.h"

/// The object as Show has it, but with strings in quotes, with keys in their order, and with blanks.
inline std::string Shown(CFTypeRef object) {
    CFTypeID const type = CFGetTypeID(object);
    if (type == CFStringGetTypeID()) return '"' + Show(object) + '"';
    std::string shown;
    auto const separate = [&shown](char const* separator) { shown += shown.empty() ? "" : separator; };
    if (type == CFArrayGetTypeID()) {
        auto const array = static_cast<CFArrayRef>(object);
        for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) {
            separate(", ");
            shown += Shown(CFArrayGetValueAtIndex(array, i));
        }
        return "(" + shown + ")";
    }
    if (type != CFDictionaryGetTypeID()) return Show(object);
    auto const dictionary = static_cast<CFDictionaryRef>(object);
    std::vector<CFTypeRef> keys(static_cast<std::size_t>(CFDictionaryGetCount(dictionary)));
    std::vector<CFTypeRef> values(keys.size());
    CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        separate("; ");
        shown += Shown(keys[i]) + " = " + Shown(values[i]);
    }
    return "{" + shown + "}";
}

/// The property list that the bytes are, as text, or "refused: " and why they are none.
inline std::string List(std::string_view bytes) {
    std::string reason;
    Owned<CFTypeRef> const list = ReadList(bytes, reason);
    return list ? Shown(list) : "refused: " + reason;
}
