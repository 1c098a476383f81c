#pragma once

// Property lists in tests: read from bytes, and shown in one line of text.

#include <CoreFoundation/CoreFoundation.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/Owned.h"

inline std::string Utf8(CFStringRef text) {
    CFRange const all = CFRangeMake(0, CFStringGetLength(text));
    CFIndex size = 0;
    CFStringGetBytes(text, all, kCFStringEncodingUTF8, '?', false, nullptr, 0, &size);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(text, all, kCFStringEncodingUTF8, '?', false, reinterpret_cast<UInt8*>(bytes.data()),
                     size, &size);
    return bytes;
}

/// The object as text: strings as they are, in quotes; 1 and 1.5; true; dates as @ and seconds since 2001;
/// data as <hexadecimal>; (arrays) and {dictionaries}; ? for what is of none of these types.
inline void Show(CFTypeRef object, std::ostream& out) {
    CFTypeID const type = CFGetTypeID(object);
    if (type == CFStringGetTypeID()) {
        out << '"' << Utf8(static_cast<CFStringRef>(object)) << '"';
    } else if (type == CFNumberGetTypeID()) {
        SInt64 whole;
        double real;
        auto const number = static_cast<CFNumberRef>(object);
        if (CFNumberGetValue(number, kCFNumberSInt64Type, &whole)) {
            out << whole;
        } else {
            CFNumberGetValue(number, kCFNumberDoubleType, &real);
            out << real;
        }
    } else if (type == CFBooleanGetTypeID()) {
        out << (CFBooleanGetValue(static_cast<CFBooleanRef>(object)) ? "true" : "false");
    } else if (type == CFDateGetTypeID()) {
        out << '@' << CFDateGetAbsoluteTime(static_cast<CFDateRef>(object));
    } else if (type == CFDataGetTypeID()) {
        auto const data = static_cast<CFDataRef>(object);
        out << '<';
        for (CFIndex i = 0; i < CFDataGetLength(data); ++i) {
            constexpr std::string_view digits = "0123456789abcdef";
            UInt8 const byte = CFDataGetBytePtr(data)[i];
            out << digits[byte >> 4] << digits[byte & 15];
        }
        out << '>';
    } else if (type == CFArrayGetTypeID()) {
        auto const array = static_cast<CFArrayRef>(object);
        out << '(';
        for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) {
            if (i > 0) out << ", ";
            Show(CFArrayGetValueAtIndex(array, i), out);
        }
        out << ')';
    } else if (type == CFDictionaryGetTypeID()) {
        auto const dictionary = static_cast<CFDictionaryRef>(object);
        std::vector<CFTypeRef> keys(static_cast<std::size_t>(CFDictionaryGetCount(dictionary)));
        std::vector<CFTypeRef> values(keys.size());
        CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
        out << '{';
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (i > 0) out << "; ";
            Show(keys[i], out);
            out << " = ";
            Show(values[i], out);
        }
        out << '}';
    } else {
        out << '?';
    }
}

inline std::string Shown(CFTypeRef object) {
    std::ostringstream out;
    out.precision(17);
    Show(object, out);
    return out.str();
}

inline Owned<CFDataRef> NewTestData(std::string_view bytes) {
    return Owned<CFDataRef>(CFDataCreate(kCFAllocatorDefault, reinterpret_cast<UInt8 const*>(bytes.data()),
                                         static_cast<CFIndex>(bytes.size())));
}

/// The property list that the bytes are; `reason` gets why they are none.
inline Owned<CFTypeRef> ReadList(std::string_view bytes, std::string& reason) {
    Owned<CFDataRef> const data = NewTestData(bytes);
    CFStringRef error = nullptr;
    Owned<CFTypeRef> list(CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data, 0, &error));
    if (error != nullptr) {
        reason = Utf8(error);
        CFRelease(error);
    }
    return list;
}

/// The property list that the bytes are, as text, or "refused: " and why they are none.
inline std::string List(std::string_view bytes) {
    std::string reason;
    Owned<CFTypeRef> const list = ReadList(bytes, reason);
    return list ? Shown(list) : "refused: " + reason;
}
