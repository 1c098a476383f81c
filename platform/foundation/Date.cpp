#include "foundation/Date.h"

#include <functional>

CFTimeInterval const kCFAbsoluteTimeIntervalSince1970 = 978307200.0;
CFTimeInterval const kCFAbsoluteTimeIntervalSince1904 = 3061152000.0;

CFTypeID __CFDate::TypeID() const { return CFDateGetTypeID(); }

bool __CFDate::EqualTo(Platform::Object const& other) const {
    return time == static_cast<__CFDate const&>(other).time;
}

CFHashCode __CFDate::Hash() const { return std::hash<double>()(time); }

CFTypeID CFDateGetTypeID() {
    static CFTypeID const id = Platform::NewTypeID();
    return id;
}

CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date) { return date->time; }
