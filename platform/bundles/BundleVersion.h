#pragma once

// Version numbers of bundles. Pure.

#include <CoreFoundation/CFBase.h>

#include <string_view>

namespace Platform {

/// The packed number of a text such as "1.2.3", "10.4b12" or ".5": see CFBundleGetVersionNumber. 0 for one of
/// another form, or of more than 10 characters.
UInt32 PackedVersion(std::u16string_view text);

}  // namespace Platform
