#pragma once

#include "frame/Adapters.h"
#include "plist/DictionaryEntries.h"

/// All keys and all entries of a dictionary.
class DictionaryIterationModule {
    IteratedProperty<OSXDictionaryKeyIterator, OSXDictionary, inspector_string> keys{"key", "keys",
                                                                                     "dictionary", "string"};
    IteratedProperty<OSXDictionaryEntryIterator, OSXDictionary, OSXDictionaryEntry> entries{
        "entry", "entries", "dictionary", "dictionaryentry"};
};
