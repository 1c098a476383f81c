#include "plist/Preferences.h"

#include <CoreFoundation/CFPreferences.h>

#include "Evaluator/Exceptions.h"
#include "Evaluator/PlatformStrings.h"
#include "plist/Values.h"

namespace {

// The value of a key, by the function of values. What was looked up goes when that function is done: arrays
// and dictionaries have then taken a reference of their own, and all else is copied.
template <class R>
R Get(R (*function)(OSXValue const&), unsigned char const* name, unsigned long length,
      Preferences const& preferences) {
    Evaluator::ReferenceHolder<CFTypeRef, Evaluator::Release<CFTypeRef>> const found(
        keyedLookup(name, length, preferences));
    return function(OSXValue(found));
}

}  // namespace

Preferences prefs_of(unsigned char const* name, unsigned long length) {
    return Preferences(MakeCFString({name, length}, kCFStringEncodingMacRoman));
}

CFTypeRef keyedLookup(unsigned char const* name, unsigned long length, Preferences const& preferences) {
    AutoCFString const key(MakeCFString({name, length}, kCFStringEncodingMacRoman));
    CFTypeRef const value = CFPreferencesCopyAppValue(key, preferences.application);
    if (value == nullptr) throw NoSuchObject();
    return value;
}

inspector_string string_of_prefs(unsigned char const* name, unsigned long length,
                                 Preferences const& preferences) {
    return Get(string_of_value, name, length, preferences);
}

boolean boolean_of_prefs(unsigned char const* name, unsigned long length, Preferences const& preferences) {
    return Get(boolean_of_value, name, length, preferences);
}

integer integer_of_prefs(unsigned char const* name, unsigned long length, Preferences const& preferences) {
    return Get(integer_of_value, name, length, preferences);
}

moment date_of_prefs(unsigned char const* name, unsigned long length, Preferences const& preferences) {
    return Get(date_of_value, name, length, preferences);
}

OSXArray array_of_prefs(unsigned char const* name, unsigned long length, Preferences const& preferences) {
    return Get(array_of_value, name, length, preferences);
}

OSXDictionary dictionary_of_prefs(unsigned char const* name, unsigned long length,
                                  Preferences const& preferences) {
    return Get(dictionary_of_value, name, length, preferences);
}
