#pragma once

// Arrays of property lists.

#include <cstdint>

#include "Evaluator/Time.h"
#include "Evaluator/Values.h"
#include "plist/PropertyListTypes.h"

integer size_of_array(OSXArray const& array);

/// The element at an index from 0 on, as the function of values with that name gives it. NoSuchObject when
/// there is none, and when it is of another type.
inspector_string string_of_array(unsigned long long index, OSXArray const& array);
boolean boolean_of_array(unsigned long long index, OSXArray const& array);
integer integer_of_array(unsigned long long index, OSXArray const& array);
moment date_of_array(unsigned long long index, OSXArray const& array);
OSXDictionary dictionary_of_array(unsigned long long index, OSXArray const& array);
OSXArray array_of_array(unsigned long long index, OSXArray const& array);

/// The elements in order.
class OSXArrayIterator {
  public:
    OSXValue First(OSXArray const& array);
    OSXValue Next(OSXArray const& array);

  private:
    std::int32_t position = 0;
    std::int32_t count = 0;
};
