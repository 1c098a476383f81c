#pragma once

// Preferences of applications.

#include "Evaluator/Time.h"
#include "Evaluator/Values.h"
#include "plist/PropertyListTypes.h"

/// What is set for an application: its identifier, which nothing need be set for. The copies own the
/// identifier together.
struct Preferences {
    /// Takes over a reference that the caller owned, which is not null.
    explicit Preferences(CFStringRef owned) noexcept : application(owned) {}

    Inspectors::SharedReference<CFStringRef> application;
};

/// The preferences of an application by its identifier, which is text in Mac Roman. Looks nothing up.
Preferences prefs_of(unsigned char const* name, unsigned long length);

/// The value of a key, which is text in Mac Roman; the caller owns it. NoSuchObject when there is none.
CFTypeRef keyedLookup(unsigned char const* name, unsigned long length, Preferences const& preferences);

/// The value of a key, as the function of values with that name gives it. NoSuchObject when there is none,
/// and when it is of another type.
inspector_string string_of_prefs(unsigned char const* name, unsigned long length,
                                 Preferences const& preferences);
boolean boolean_of_prefs(unsigned char const* name, unsigned long length, Preferences const& preferences);
integer integer_of_prefs(unsigned char const* name, unsigned long length, Preferences const& preferences);
moment date_of_prefs(unsigned char const* name, unsigned long length, Preferences const& preferences);
OSXArray array_of_prefs(unsigned char const* name, unsigned long length, Preferences const& preferences);
OSXDictionary dictionary_of_prefs(unsigned char const* name, unsigned long length,
                                  Preferences const& preferences);
