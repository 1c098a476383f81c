#pragma once

#include "frame/Adapters.h"
#include "plist/Dictionaries.h"

/// Dictionaries of property lists: of files, how many keys they have, and the value of each key. "data" is
/// another word for "string".
class DictionariesModule {
    using Text = NamedProperty<OSXDictionary, inspector_string>;

    TypeRecord<OSXDictionary> type{"dictionary"};
    Property<file, OSXDictionary> ofFile{"dictionary", "dictionaries", "file", "dictionary",
                                         dictionary_of_file};
    Property<OSXDictionary, integer> size{"size", "sizes", "dictionary", "integer", size_of_dictionary};
    Text data{"data", "datas", "dictionary", "string", string_of_dictionary};
    Text string{"string", "strings", "dictionary", "string", string_of_dictionary};
    Text cstring{"cstring", "cstrings", "dictionary", "string", cstring_of_dictionary};
    NamedProperty<OSXDictionary, boolean> truth{"boolean", "booleans", "dictionary", "boolean",
                                                boolean_of_dictionary};
    NamedProperty<OSXDictionary, integer> number{"integer", "integers", "dictionary", "integer",
                                                 integer_of_dictionary};
    NamedProperty<OSXDictionary, OSXArray> array{"array", "arrays", "dictionary", "array",
                                                 array_of_dictionary};
    NamedProperty<OSXDictionary, OSXDictionary> dictionary{"dictionary", "dictionaries", "dictionary",
                                                           "dictionary", dictionary_of_dictionary};
    NamedProperty<OSXDictionary, moment> date{"date", "dates", "dictionary", "time", date_of_dictionary};
};
