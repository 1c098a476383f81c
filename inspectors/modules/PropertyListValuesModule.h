#pragma once

#include "frame/Adapters.h"
#include "plist/Values.h"

/// Values of property lists: of which type they are, and what they are. "data" is another word for "string".
/// The plural of "cstring" lacks a letter by contract.
class PropertyListValuesModule {
    using Text = Property<OSXValue, inspector_string>;

    TypeRecord<OSXValue> type{"osxvalue"};
    Text typeOfValue{"type", "types", "osxvalue", "string", type_of_value};
    Text data{"data", "datas", "osxvalue", "string", string_of_value};
    Text string{"string", "strings", "osxvalue", "string", string_of_value};
    Text cstring{"cstring", "csrings", "osxvalue", "string", cstring_of_value};
    Property<OSXValue, boolean> truth{"boolean", "booleans", "osxvalue", "boolean", boolean_of_value};
    Property<OSXValue, integer> number{"integer", "integers", "osxvalue", "integer", integer_of_value};
    Property<OSXValue, OSXArray> array{"array", "arrays", "osxvalue", "array", array_of_value};
    Property<OSXValue, OSXDictionary> dictionary{"dictionary", "dictionaries", "osxvalue", "dictionary",
                                                 dictionary_of_value};
    Property<OSXValue, moment> date{"date", "dates", "osxvalue", "time", date_of_value};
};
