#pragma once

#include "frame/Adapters.h"
#include "plist/Arrays.h"

/// Arrays of property lists: how many elements they have, and each of them by its number.
class ArraysModule {
    TypeRecord<OSXArray> type{"array"};
    Property<OSXArray, integer> size{"size", "sizes", "array", "integer", size_of_array};
    NumberedProperty<OSXArray, inspector_string> string{"string", "strings", "array", "string",
                                                        string_of_array};
    NumberedProperty<OSXArray, boolean> truth{"boolean", "booleans", "array", "boolean", boolean_of_array};
    NumberedProperty<OSXArray, integer> number{"integer", "integers", "array", "integer", integer_of_array};
    NumberedProperty<OSXArray, moment> date{"date", "dates", "array", "time", date_of_array};
    NumberedProperty<OSXArray, OSXDictionary> dictionary{"dictionary", "dictionaries", "array", "dictionary",
                                                         dictionary_of_array};
    NumberedProperty<OSXArray, OSXArray> array{"array", "arrays", "array", "array", array_of_array};
};
