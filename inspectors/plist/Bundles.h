#pragma once

// Bundles: folders that hold a program, framework or plug-in with all that belongs to it.

#include <CoreFoundation/CFBundle.h>

#include "filesystem/FileCodes.h"
#include "filesystem/FileSystemObject.h"
#include "plist/PropertyListTypes.h"
#include "versions/Version.h"

/// A bundle; its copies own one reference together.
struct Bundle {
    /// Takes over a reference that the caller owned, which is not null.
    explicit Bundle(CFBundleRef owned) noexcept : bundle(owned) {}

    Inspectors::SharedReference<CFBundleRef> bundle;
};

/// The bundle that the folder is; NoSuchObject when it is none.
Bundle bundle_of(folder const& object);
/// The bundle of that identifier, which is text in Mac Roman, among those that the process knows.
/// NoSuchObject when it knows none.
Bundle bundle_named(unsigned char const* name, unsigned long length);

/// The bundle's version, without stage and number within the stage, and the one with them. Both are that of
/// the bundle's packed number; without one, that of the text CFBundleShortVersionString and CFBundleVersion.
/// NoSuchObject when there is no such text, CFCastError<CFStringRef> when it is something else.
MacVersion version_of(Bundle const& bundle);
MacVersion bundle_version_of(Bundle const& bundle);

file_type type_of(Bundle const& bundle);
file_signature creator_of(Bundle const& bundle);

/// The information dictionary, and the one of the user's language. NoSuchObject when there is none.
OSXDictionary global_dictionary_of(Bundle const& bundle);
OSXDictionary local_dictionary_of(Bundle const& bundle);

/// Lend the same dictionaries. Throw CFBundleGetInfoDictionaryFailed and CFBundleGetLocalInfoDictionaryFailed
/// when there is none.
CFDictionaryRef BundleGetInfoDictionary(CFBundleRef bundle);
CFDictionaryRef BundleGetLocalInfoDictionary(CFBundleRef bundle);
