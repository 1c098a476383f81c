#pragma once

// Dictionaries of property lists, and of files that are such lists.

#include "Evaluator/Time.h"
#include "Evaluator/Values.h"
#include "filesystem/FileSystemObject.h"
#include "plist/PropertyListTypes.h"

/// The dictionary at the root of the property list that the file is, in whatever format. NoSuchObject when
/// the file cannot be read, DictionaryCreateFromXMLDataFailed when it is no such list.
OSXDictionary dictionary_of_file(file const& object);

integer size_of_dictionary(OSXDictionary const& dictionary);

/// The value of a key, which is text in Mac Roman; it belongs to the dictionary. NoSuchObject when there is
/// none.
CFTypeRef keyedLookup(unsigned char const* name, unsigned long length, OSXDictionary const& dictionary);

/// The value of a key, as the function of values with that name gives it. NoSuchObject when there is none,
/// and when it is of another type.
inspector_string string_of_dictionary(unsigned char const* name, unsigned long length,
                                      OSXDictionary const& dictionary);
inspector_string cstring_of_dictionary(unsigned char const* name, unsigned long length,
                                       OSXDictionary const& dictionary);
boolean boolean_of_dictionary(unsigned char const* name, unsigned long length,
                              OSXDictionary const& dictionary);
integer integer_of_dictionary(unsigned char const* name, unsigned long length,
                              OSXDictionary const& dictionary);
OSXArray array_of_dictionary(unsigned char const* name, unsigned long length,
                             OSXDictionary const& dictionary);
OSXDictionary dictionary_of_dictionary(unsigned char const* name, unsigned long length,
                                       OSXDictionary const& dictionary);
moment date_of_dictionary(unsigned char const* name, unsigned long length, OSXDictionary const& dictionary);
