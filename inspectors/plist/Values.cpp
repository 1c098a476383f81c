#include "plist/Values.h"

#include <cmath>
#include <string_view>

#include "Evaluator/Exceptions.h"
#include "plist/PlatformValues.h"

using Inspectors::IfIs;

namespace {

template <class Reference>
Reference Expect(OSXValue const& value) {
    if (auto const object = IfIs<Reference>(value.object)) return object;
    throw NoSuchObject();
}

inspector_string Static(std::string_view text) {
    return {reinterpret_cast<unsigned char const*>(text.data()), static_cast<std::uint32_t>(text.size())};
}

// The moment that many microseconds after the beginning of 1904.
moment MomentOf(double microseconds) {
    constexpr double tooMany = 0x1p63;
    // A number that is not one fails here too: its rounding has no meaning.
    if (!(std::fabs(microseconds) < tooMany)) throw NoSuchObject();
    try {
        return january_1_1904_GMT() + microsecond_of() * integer(std::llround(microseconds));
    } catch (ArithmeticOverflow const&) {
        throw NoSuchObject();
    }
}

}  // namespace

inspector_string type_of_value(OSXValue const& value) {
    CFTypeRef const object = value.object;
    if (IfIs<CFBooleanRef>(object)) return Static("boolean");
    if (IfIs<CFStringRef>(object)) return Static("string");
    if (IfIs<CFNumberRef>(object)) return Static("integer");
    if (IfIs<CFDataRef>(object)) return Static("data");
    if (IfIs<CFDateRef>(object)) return Static("date");
    if (IfIs<CFArrayRef>(object)) return Static("array");
    if (IfIs<CFDictionaryRef>(object)) return Static("dictionary");
    return Static("unknown type");
}

inspector_string string_of_value(OSXValue const& value) {
    if (auto const text = IfIs<CFStringRef>(value.object)) return CFStringValue(text);
    return CFDataValue(Expect<CFDataRef>(value));
}

inspector_string cstring_of_value(OSXValue const& value) {
    if (auto const text = IfIs<CFStringRef>(value.object)) return CFStringValue(text);
    return CFDataAsCStringValue(Expect<CFDataRef>(value));
}

boolean boolean_of_value(OSXValue const& value) {
    return CFBooleanGetValue(Expect<CFBooleanRef>(value)) != 0;
}

integer integer_of_value(OSXValue const& value) {
    SInt32 number;
    if (!CFNumberGetValue(Expect<CFNumberRef>(value), kCFNumberLongType, &number)) throw NoSuchObject();
    return number;
}

moment date_of_value(OSXValue const& value) {
    CFAbsoluteTime const seconds =
        CFDateGetAbsoluteTime(Expect<CFDateRef>(value)) + kCFAbsoluteTimeIntervalSince1904;
    return MomentOf(seconds * 1000000.0);
}

OSXArray array_of_value(OSXValue const& value) {
    auto const array = Expect<CFArrayRef>(value);
    CFRetain(array);
    return OSXArray(array);
}

OSXDictionary dictionary_of_value(OSXValue const& value) {
    return OSXDictionary(AutoCFDictionary(Duplicate(Expect<CFDictionaryRef>(value))));
}
