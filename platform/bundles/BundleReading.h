#pragma once

// What is read of bundles on the disk. Waits patiently for slow mounts.

#include <Carbon/Files.h>

#include <optional>
#include <string_view>

#include "bundles/Bundle.h"
#include "foundation/Held.h"

namespace Platform {

/// Finds the folder that a path leads to; a result code.
OSErr FindBundleFolder(std::string_view path, BundleFolder& folder);

/// Reads the parts of a folder's bundle; empty for a folder that is none. A result code: failures to read a
/// part of it are none, but waits that were given up are.
OSErr ReadBundleParts(BundleFolder const& folder, std::optional<BundleParts>& parts);

/// Reads the dictionary of InfoPlist.strings for the languages of the user, that of the bundle's making and
/// English: see CFBundleGetLocalInfoDictionary. Null when there is none. A result code as above.
OSErr ReadLocalDictionary(BundleParts const& parts, Held<__CFDictionary const>& dictionary);

/// The value of a key, which is ASCII, in a dictionary; null when it has none, or when it is no string.
CFTypeRef ValueOf(CFDictionaryRef dictionary, std::string_view key);
CFStringRef StringOf(CFDictionaryRef dictionary, std::string_view key);

}  // namespace Platform
