#pragma once

// The keys and the entries of dictionaries, in the platform's order.

#include <cstdint>
#include <memory>

#include "Evaluator/Values.h"
#include "plist/PropertyListTypes.h"

/// The key in Mac Roman, as strings of values are.
inspector_string key_of_entry(OSXDictionaryEntry const& entry);
OSXValue value_of_entry(OSXDictionaryEntry const& entry);

/// The keys alone.
class OSXDictionaryKeyIterator {
  public:
    inspector_string First(OSXDictionary const& dictionary);
    inspector_string Next(OSXDictionary const& dictionary);

  private:
    std::int32_t position = 0;
    std::int32_t count = 0;
    std::unique_ptr<CFTypeRef[]> keys;
};

/// The keys with their values.
class OSXDictionaryEntryIterator {
  public:
    OSXDictionaryEntry First(OSXDictionary const& dictionary);
    OSXDictionaryEntry Next(OSXDictionary const& dictionary);

  private:
    std::int32_t position = 0;
    std::int32_t count = 0;
    std::unique_ptr<CFTypeRef[]> values;
    std::unique_ptr<CFTypeRef[]> keys;
};
