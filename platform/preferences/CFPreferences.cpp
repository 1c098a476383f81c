#include <CoreFoundation/CFPreferences.h>

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef, CFStringRef) { return nullptr; }
