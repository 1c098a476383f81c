#include "plist/Dictionaries.h"

#include <CoreFoundation/CFURLAccess.h>

#include "Evaluator/Exceptions.h"
#include "Evaluator/PlatformStrings.h"
#include "plist/PlatformValues.h"
#include "plist/Values.h"

namespace {

using Bytes = Evaluator::ReferenceHolder<CFDataRef, Evaluator::Release<CFDataRef>>;

Bytes ReadWhole(CFURLRef url) {
    CFDataRef bytes = nullptr;
    SInt32 ignored;
    if (!CFURLCreateDataAndPropertiesFromResource(kCFAllocatorDefault, url, &bytes, nullptr, nullptr,
                                                  &ignored))
        throw NoSuchObject();
    return Bytes(bytes);
}

}  // namespace

OSXDictionary dictionary_of_file(file const& object) {
    return OSXDictionary(DictionaryCreateFromXMLData(ReadWhole(object.url), kCFPropertyListImmutable));
}

integer size_of_dictionary(OSXDictionary const& dictionary) {
    return CFDictionaryGetCount(dictionary.dictionary);
}

CFTypeRef keyedLookup(unsigned char const* name, unsigned long length, OSXDictionary const& dictionary) {
    AutoCFString const key(MakeCFString({name, length}, kCFStringEncodingMacRoman));
    CFTypeRef const value = CFDictionaryGetValue(dictionary.dictionary, key);
    if (value == nullptr) throw NoSuchObject();
    return value;
}

inspector_string string_of_dictionary(unsigned char const* name, unsigned long length,
                                      OSXDictionary const& dictionary) {
    return string_of_value(OSXValue(keyedLookup(name, length, dictionary)));
}

inspector_string cstring_of_dictionary(unsigned char const* name, unsigned long length,
                                       OSXDictionary const& dictionary) {
    return cstring_of_value(OSXValue(keyedLookup(name, length, dictionary)));
}

boolean boolean_of_dictionary(unsigned char const* name, unsigned long length,
                              OSXDictionary const& dictionary) {
    return boolean_of_value(OSXValue(keyedLookup(name, length, dictionary)));
}

integer integer_of_dictionary(unsigned char const* name, unsigned long length,
                              OSXDictionary const& dictionary) {
    return integer_of_value(OSXValue(keyedLookup(name, length, dictionary)));
}

OSXArray array_of_dictionary(unsigned char const* name, unsigned long length,
                             OSXDictionary const& dictionary) {
    return array_of_value(OSXValue(keyedLookup(name, length, dictionary)));
}

OSXDictionary dictionary_of_dictionary(unsigned char const* name, unsigned long length,
                                       OSXDictionary const& dictionary) {
    return dictionary_of_value(OSXValue(keyedLookup(name, length, dictionary)));
}

moment date_of_dictionary(unsigned char const* name, unsigned long length, OSXDictionary const& dictionary) {
    return date_of_value(OSXValue(keyedLookup(name, length, dictionary)));
}
