#include "plist/DictionaryEntries.h"

#include "Evaluator/Exceptions.h"
#include "plist/PlatformValues.h"

namespace {

// How many entries an iteration is to yield; NoSuchObject for none.
std::int32_t CountOf(OSXDictionary const& dictionary) {
    auto const count = static_cast<std::int32_t>(CFDictionaryGetCount(dictionary.dictionary));
    if (count == 0) throw NoSuchObject();
    return count;
}

std::unique_ptr<CFTypeRef[]> RoomFor(std::int32_t count) {
    return std::make_unique<CFTypeRef[]>(static_cast<std::size_t>(count));
}

// All keys of a dictionary are strings.
CFStringRef AsKey(CFTypeRef key) { return static_cast<CFStringRef>(key); }

}  // namespace

inspector_string key_of_entry(OSXDictionaryEntry const& entry) { return CFStringValue(entry.key); }
OSXValue value_of_entry(OSXDictionaryEntry const& entry) { return OSXValue(entry.value); }

inspector_string OSXDictionaryKeyIterator::First(OSXDictionary const& dictionary) {
    count = CountOf(dictionary);
    keys = RoomFor(count);
    CFDictionaryGetKeysAndValues(dictionary.dictionary, keys.get(), nullptr);
    position = 0;
    return Next(dictionary);
}

inspector_string OSXDictionaryKeyIterator::Next(OSXDictionary const&) {
    if (position >= count) throw NoSuchObject();
    return CFStringValue(AsKey(keys[position++]));
}

OSXDictionaryEntry OSXDictionaryEntryIterator::First(OSXDictionary const& dictionary) {
    count = CountOf(dictionary);
    values = RoomFor(count);
    keys = RoomFor(count);
    CFDictionaryGetKeysAndValues(dictionary.dictionary, keys.get(), values.get());
    position = 0;
    return Next(dictionary);
}

OSXDictionaryEntry OSXDictionaryEntryIterator::Next(OSXDictionary const&) {
    if (position >= count) throw NoSuchObject();
    std::int32_t const place = position++;
    return {AsKey(keys[place]), values[place]};
}
