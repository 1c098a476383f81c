#pragma once

// Preferences, with what went wrong.

#include <Carbon/Files.h>
#include <CoreFoundation/CFString.h>

#include <string>

#include "foundation/Held.h"
#include "foundation/Object.h"

namespace Platform {

/// Gets the value that an application's preferences have for a key, from the first of their files that has
/// one; null where none has. The result is noErr, unless a wait for a file was given up, which might have
/// had one.
OSErr CopyPreference(CFStringRef key, std::string const& application, Held<Object const>& value);

}  // namespace Platform
