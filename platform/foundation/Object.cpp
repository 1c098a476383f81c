#include "foundation/Object.h"

#include <cstdio>
#include <cstdlib>

namespace Platform {

CFTypeID NewTypeID() noexcept {
    static std::atomic<CFTypeID> last{0};
    return ++last;
}

}  // namespace Platform

namespace {

Platform::Object const& Checked(CFTypeRef object, char const* function) {
    if (object == nullptr) {
        std::fprintf(stderr, "%s: the reference is null\n", function);
        std::abort();
    }
    return *static_cast<Platform::Object const*>(object);
}

}  // namespace

CFTypeRef CFRetain(CFTypeRef object) {
    Checked(object, "CFRetain").Retain();
    return object;
}

void CFRelease(CFTypeRef object) { Checked(object, "CFRelease").Release(); }

CFIndex CFGetRetainCount(CFTypeRef object) { return Checked(object, "CFGetRetainCount").Count(); }

Boolean CFEqual(CFTypeRef left, CFTypeRef right) {
    Platform::Object const& first = Checked(left, "CFEqual");
    Platform::Object const& second = Checked(right, "CFEqual");
    return left == right || (first.TypeID() == second.TypeID() && first.EqualTo(second));
}

CFHashCode CFHash(CFTypeRef object) { return Checked(object, "CFHash").Hash(); }

CFTypeID CFGetTypeID(CFTypeRef object) { return Checked(object, "CFGetTypeID").TypeID(); }
