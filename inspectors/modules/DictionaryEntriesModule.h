#pragma once

#include "frame/Adapters.h"
#include "plist/DictionaryEntries.h"

/// Entries of dictionaries: a key and its value.
class DictionaryEntriesModule {
    TypeRecord<OSXDictionaryEntry> type{"dictionaryentry"};
    Property<OSXDictionaryEntry, inspector_string> key{"key", "keys", "dictionaryentry", "string",
                                                       key_of_entry};
    Property<OSXDictionaryEntry, OSXValue> value{"value", "values", "dictionaryentry", "osxvalue",
                                                 value_of_entry};
};
