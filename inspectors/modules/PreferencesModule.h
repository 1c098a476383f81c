#pragma once

#include "frame/Adapters.h"
#include "plist/Preferences.h"

/// Preferences of applications, and the value of each key.
class PreferencesModule {
    TypeRecord<Preferences> type{"preference"};
    NamedGlobalProperty<Preferences> ofName{"preference", "preferences", "preference", prefs_of};
    NamedProperty<Preferences, inspector_string> string{"string", "strings", "preference", "string",
                                                        string_of_prefs};
    NamedProperty<Preferences, boolean> truth{"boolean", "booleans", "preference", "boolean",
                                              boolean_of_prefs};
    NamedProperty<Preferences, integer> number{"integer", "integers", "preference", "integer",
                                               integer_of_prefs};
    NamedProperty<Preferences, moment> date{"date", "dates", "preference", "time", date_of_prefs};
    NamedProperty<Preferences, OSXArray> array{"array", "arrays", "preference", "array", array_of_prefs};
    NamedProperty<Preferences, OSXDictionary> dictionary{"dictionary", "dictionaries", "preference",
                                                         "dictionary", dictionary_of_prefs};
};
