#pragma once

// What binary property lists hold beside the types of the interface: objects that nothing can be asked of but
// that they are of no type that is known. Internal to the platform.

#include <CoreFoundation/CFArray.h>

namespace Platform {

/// A new null object, and a new object with the number of an object in an archive. Two are equal when their
/// numbers are.
CFTypeRef NewNull();
CFTypeRef NewUniqueIdentifier(UInt64 number);
/// A new set of an array's elements, of which it takes a reference of its own. Two sets are equal when they
/// have equal elements in the same order.
CFTypeRef NewSet(CFArrayRef elements);

}  // namespace Platform
