#pragma once

// What a value of a property list is. A value of another type than the one asked for is NoSuchObject.

#include "Evaluator/Time.h"
#include "Evaluator/Values.h"
#include "plist/PropertyListTypes.h"

/// "boolean", "string", "integer" (of all numbers), "data", "date", "array", "dictionary" or "unknown type".
inspector_string type_of_value(OSXValue const& value);

/// A string in Mac Roman, with question marks for what has no form in it; data as it is. The second one drops
/// one zero byte at the end of data.
inspector_string string_of_value(OSXValue const& value);
inspector_string cstring_of_value(OSXValue const& value);
boolean boolean_of_value(OSXValue const& value);
/// A whole number of 32 bits with a sign; any other number is NoSuchObject.
integer integer_of_value(OSXValue const& value);
/// To the nearest microsecond; a date that no time can hold is NoSuchObject.
moment date_of_value(OSXValue const& value);
OSXArray array_of_value(OSXValue const& value);
OSXDictionary dictionary_of_value(OSXValue const& value);
