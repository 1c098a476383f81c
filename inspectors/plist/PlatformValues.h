#pragma once

// What the platform's property-list objects hold, as values of the host.

#include <CoreFoundation/CoreFoundation.h>

#include "Evaluator/Exceptions.h"
#include "Evaluator/Values.h"
#include "plist/PlatformHolders.h"

namespace Inspectors {

/// The number of the type that a kind of reference leads to.
template <class Reference>
CFTypeID TypeIDOf();
template <>
inline CFTypeID TypeIDOf<CFStringRef>() {
    return CFStringGetTypeID();
}
template <>
inline CFTypeID TypeIDOf<CFDataRef>() {
    return CFDataGetTypeID();
}
template <>
inline CFTypeID TypeIDOf<CFBooleanRef>() {
    return CFBooleanGetTypeID();
}
template <>
inline CFTypeID TypeIDOf<CFNumberRef>() {
    return CFNumberGetTypeID();
}
template <>
inline CFTypeID TypeIDOf<CFDateRef>() {
    return CFDateGetTypeID();
}
template <>
inline CFTypeID TypeIDOf<CFArrayRef>() {
    return CFArrayGetTypeID();
}
template <>
inline CFTypeID TypeIDOf<CFDictionaryRef>() {
    return CFDictionaryGetTypeID();
}

/// The object as one of that type; null when it is of another. The object is not null.
template <class Reference>
Reference IfIs(CFTypeRef object) {
    return CFGetTypeID(object) == TypeIDOf<Reference>() ? static_cast<Reference>(object) : nullptr;
}

}  // namespace Inspectors

/// The object as one of that type. Throws CFCastError<Reference> when it is of another. The object is not
/// null.
template <class Reference>
Reference CFCast(CFTypeRef object) {
    if (auto const cast = Inspectors::IfIs<Reference>(object)) return cast;
    throw CFCastError<Reference>();
}

/// The text in Mac Roman, with a question mark for each character that has no form in it.
inspector_string CFStringValue(CFStringRef text);
/// All bytes of the data.
inspector_string CFDataValue(CFDataRef data);
/// All bytes of the data, but for one zero byte at the end.
inspector_string CFDataAsCStringValue(CFDataRef data);

/// The dictionary at the root of a property list. Throws DictionaryCreateFromXMLDataFailed for data that is
/// none, or that has another root. `mutability` is kCFPropertyListImmutable.
AutoCFDictionary DictionaryCreateFromXMLData(CFDataRef data, UInt32 mutability);
