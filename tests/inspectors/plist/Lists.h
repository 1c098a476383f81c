#pragma once

// Property lists of tests, and what holds for their objects.

#include <gtest/gtest.h>

#include <bit>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Evaluator/Exceptions.h"
#include "platform/BinaryListBuilder.h"
#include "plist/PropertyListTypes.h"
#include "plist/Values.h"
#include "support/Owned.h"

/// The object at the root of a property list, which lives as long as this.
class List {
  public:
    explicit List(std::string_view bytes) : root(Read(bytes)) {}

    CFTypeRef Root() const { return root; }
    OSXValue Value() const { return OSXValue(root); }
    OSXArray Array() const { return array_of_value(Value()); }
    OSXDictionary Dictionary() const { return dictionary_of_value(Value()); }
    CFIndex Count() const { return CFGetRetainCount(root); }

  private:
    static CFTypeRef Read(std::string_view bytes) {
        Owned<CFDataRef> const data(
            CFDataCreate(kCFAllocatorDefault, Bytes(bytes), static_cast<CFIndex>(bytes.size())));
        CFTypeRef const list =
            CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data, kCFPropertyListImmutable, nullptr);
        if (list == nullptr) throw std::invalid_argument(std::string(bytes));
        return list;
    }

    Owned<CFTypeRef> root;
};

/// A list of one object that XML has no form for, by its bytes in a binary list.
inline std::string Binary(std::string const& object) {
    BinaryList list;
    list.Add(object);
    return list.Bytes();
}
/// Objects of a type that nothing can be asked of: null, and a unique identifier.
inline std::string const kNullObject{'\0'};
inline std::string const kUniqueIdentifier{"\x80\x05"};
/// A date, and a real number, by the bytes of a number of 64 bits.
inline std::string BinaryDate(double seconds) {
    return Binary('\x33' + BigEndian(std::bit_cast<std::uint64_t>(seconds), 8));
}
inline std::string BinaryReal(double number) {
    return Binary('\x23' + BigEndian(std::bit_cast<std::uint64_t>(number), 8));
}
