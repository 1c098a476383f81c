#pragma once

// Verbs of tests that read property lists.

#include <CoreFoundation/CoreFoundation.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/Owned.h"
#include "support/TemporaryFolder.h"

/// The text of a string in UTF-8.
inline std::string Utf8(CFStringRef string) {
    CFIndex size = 0;
    CFRange const all = CFRangeMake(0, CFStringGetLength(string));
    CFStringGetBytes(string, all, kCFStringEncodingUTF8, '?', false, nullptr, 0, &size);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(string, all, kCFStringEncodingUTF8, '?', false, reinterpret_cast<UInt8*>(bytes.data()),
                     size, nullptr);
    return bytes;
}

inline std::string Show(CFTypeRef object);

inline std::string ShowNumber(CFNumberRef number) {
    std::ostringstream shown;
    SInt64 whole = 0;
    double real = 0;
    if (CFNumberGetValue(number, kCFNumberSInt64Type, &whole)) {
        shown << whole;
    } else {
        CFNumberGetValue(number, kCFNumberFloat64Type, &real);
        shown.precision(17);
        shown << real;
    }
    return shown.str();
}

inline std::string ShowData(CFDataRef data) {
    constexpr char digits[] = "0123456789abcdef";
    std::string shown = "<";
    for (CFIndex i = 0; i < CFDataGetLength(data); ++i) {
        UInt8 const byte = CFDataGetBytePtr(data)[i];
        shown += {digits[byte / 16], digits[byte % 16]};
    }
    return shown + ">";
}

inline std::string ShowArray(CFArrayRef array) {
    std::string shown;
    for (CFIndex i = 0; i < CFArrayGetCount(array); ++i)
        shown += (i > 0 ? "," : "") + Show(CFArrayGetValueAtIndex(array, i));
    return "(" + shown + ")";
}

/// The entries in the order of their texts.
inline std::string ShowDictionary(CFDictionaryRef dictionary) {
    auto const count = static_cast<std::size_t>(CFDictionaryGetCount(dictionary));
    std::vector<void const*> keys(count), values(count);
    CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
    std::vector<std::string> entries;
    for (std::size_t i = 0; i < count; ++i) entries.push_back(Show(keys[i]) + "=" + Show(values[i]));
    std::sort(entries.begin(), entries.end());
    std::string shown;
    for (std::string const& entry : entries) shown += (shown.empty() ? "" : ";") + entry;
    return "{" + shown + "}";
}

/// An object of a property list in short: {key=value;...}, (element,...), <hexadecimal>, @seconds, and texts
/// as they are. "(null)" where there is none.
inline std::string Show(CFTypeRef object) {
    if (object == nullptr) return "(null)";
    CFTypeID const type = CFGetTypeID(object);
    if (type == CFStringGetTypeID()) return Utf8(static_cast<CFStringRef>(object));
    if (type == CFDictionaryGetTypeID()) return ShowDictionary(static_cast<CFDictionaryRef>(object));
    if (type == CFArrayGetTypeID()) return ShowArray(static_cast<CFArrayRef>(object));
    if (type == CFDataGetTypeID()) return ShowData(static_cast<CFDataRef>(object));
    if (type == CFNumberGetTypeID()) return ShowNumber(static_cast<CFNumberRef>(object));
    if (type == CFBooleanGetTypeID())
        return CFBooleanGetValue(static_cast<CFBooleanRef>(object)) ? "true" : "false";
    if (type == CFDateGetTypeID())
        return "@" + std::to_string(std::lround(CFDateGetAbsoluteTime(static_cast<CFDateRef>(object))));
    return "(other)";
}

inline Owned<CFDataRef> NewTestData(std::string_view bytes) {
    return CFDataCreate(kCFAllocatorDefault, Bytes(bytes), static_cast<CFIndex>(bytes.size()));
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

/// The object that a property list holds, in short; "!" and why for what is none.
inline std::string Read(std::string_view bytes) {
    std::string reason;
    Owned<CFPropertyListRef> const list = ReadList(bytes, reason);
    EXPECT_NE(list == nullptr, reason.empty()) << bytes;
    return reason.empty() ? Show(list) : "!" + reason;
}

inline std::string FileText(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.good()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}
