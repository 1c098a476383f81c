#include "plist/Arrays.h"

#include "Evaluator/Exceptions.h"
#include "plist/Values.h"

namespace {

// The index is not held against the count: the platform knows what lies past the end.
OSXValue ElementOf(OSXArray const& array, CFIndex index) {
    CFTypeRef const element = CFArrayGetValueAtIndex(array.array, index);
    if (element == nullptr) throw NoSuchObject();
    return OSXValue(element);
}

OSXValue Numbered(unsigned long long index, OSXArray const& array) {
    constexpr unsigned long long tooLarge = 1ULL << 31;
    if (index >= tooLarge) throw NoSuchObject();
    return ElementOf(array, static_cast<CFIndex>(index));
}

}  // namespace

integer size_of_array(OSXArray const& array) { return CFArrayGetCount(array.array); }

inspector_string string_of_array(unsigned long long index, OSXArray const& array) {
    return string_of_value(Numbered(index, array));
}

boolean boolean_of_array(unsigned long long index, OSXArray const& array) {
    return boolean_of_value(Numbered(index, array));
}

integer integer_of_array(unsigned long long index, OSXArray const& array) {
    return integer_of_value(Numbered(index, array));
}

moment date_of_array(unsigned long long index, OSXArray const& array) {
    return date_of_value(Numbered(index, array));
}

OSXDictionary dictionary_of_array(unsigned long long index, OSXArray const& array) {
    return dictionary_of_value(Numbered(index, array));
}

OSXArray array_of_array(unsigned long long index, OSXArray const& array) {
    return array_of_value(Numbered(index, array));
}

OSXValue OSXArrayIterator::First(OSXArray const& array) {
    count = static_cast<std::int32_t>(CFArrayGetCount(array.array));
    position = 0;
    return Next(array);
}

OSXValue OSXArrayIterator::Next(OSXArray const& array) {
    if (position >= count) throw NoSuchObject();
    return ElementOf(array, position++);
}
