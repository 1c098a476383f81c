#include "foundation/Containers.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "foundation/SecretHash.h"
#include "foundation/String.h"

using namespace Platform;

namespace {

Object const& ObjectOf(CFTypeRef reference) { return *static_cast<Object const*>(reference); }

bool AreEqual(CFTypeRef left, CFTypeRef right) { return left == right || CFEqual(left, right) != 0; }

bool AreEqualKeys(CFStringRef left, CFStringRef right) { return left == right || left->EqualTo(*right); }

unsigned LevelsAbove(unsigned levels, CFTypeRef element) {
    return std::max(levels, ObjectOf(element).Levels() + 1);
}

// Property lists have fewer elements than bytes, and those fit 32 bits by far.
UInt32 CheckedCount(std::size_t count) {
    if (count > std::numeric_limits<SInt32>::max()) throw std::bad_alloc();
    return static_cast<UInt32>(count);
}

template <class Reference>
Reference Retained(Reference object) {
    object->Retain();
    return object;
}

// Up to so many entries are searched one by one.
constexpr UInt32 kMostWithoutIndex = 8;

// An index is at most two thirds full.
UInt8 IndexBits(UInt32 entries) {
    if (entries <= kMostWithoutIndex) return 0;
    return static_cast<UInt8>(std::bit_width(std::size_t{entries} + entries / 2));
}

std::size_t IndexSize(UInt8 bits) { return bits == 0 ? 0 : std::size_t{1} << bits; }

}  // namespace

__CFArray::__CFArray(std::span<CFTypeRef const> elements) noexcept
    : count(static_cast<UInt32>(elements.size())), levels([&] {
          unsigned most = 1;
          for (CFTypeRef const element : elements) most = LevelsAbove(most, element);
          return most;
      }()) {
    std::ranges::copy(elements, ElementsBehind<CFTypeRef>(this));
}

__CFArray::~__CFArray() {
    for (CFTypeRef const element : Elements()) ObjectOf(element).Release();
}

CFTypeID __CFArray::TypeID() const { return CFArrayGetTypeID(); }

bool __CFArray::EqualTo(Object const& other) const {
    return std::ranges::equal(Elements(), static_cast<__CFArray const&>(other).Elements(), AreEqual);
}

CFHashCode __CFArray::Hash() const { return count; }

__CFDictionary::__CFDictionary(UInt32 entries) noexcept
    : indexBits(IndexBits(entries)), mostEntries(entries) {
    Entry* const end = ElementsBehind<Entry>(this) + mostEntries;
    std::fill_n(reinterpret_cast<UInt32*>(end), IndexSize(indexBits), 0);
}

__CFDictionary::~__CFDictionary() {
    for (auto const& [key, value] : Entries()) {
        key->Release();
        ObjectOf(value).Release();
    }
}

__CFDictionary::Entry* __CFDictionary::Locate(CFStringRef key, UInt32*& place) const {
    Entry* const entries = ElementsBehind<Entry>(this);
    if (indexBits == 0) {
        Entry* const end = entries + count;
        Entry* const found =
            std::find_if(entries, end, [&](auto& entry) { return AreEqualKeys(entry.key, key); });
        return found == end ? nullptr : found;
    }
    auto* const index = reinterpret_cast<UInt32*>(entries + mostEntries);
    std::size_t at = SecretHash(key->Bytes()) & (IndexSize(indexBits) - 1);
    for (;; at = (at + 1) & (IndexSize(indexBits) - 1)) {
        place = index + at;
        if (*place == 0) return nullptr;
        Entry& entry = entries[*place - 1];
        if (AreEqualKeys(entry.key, key)) return &entry;
    }
}

void __CFDictionary::Add(CFStringRef key, CFTypeRef value) {
    UInt32* place = nullptr;
    Entry* const former = Locate(key, place);
    if (former != nullptr) {
        ObjectOf(former->value).Release();
        key->Release();
        former->value = value;
    } else {
        ElementsBehind<Entry>(this)[count++] = {key, value};
        if (place != nullptr) *place = count;
    }
    levels = static_cast<UInt16>(LevelsAbove(levels, value));
}

CFTypeRef __CFDictionary::Find(CFStringRef key) const {
    UInt32* place = nullptr;
    Entry const* const entry = Locate(key, place);
    return entry == nullptr ? nullptr : entry->value;
}

CFTypeID __CFDictionary::TypeID() const { return CFDictionaryGetTypeID(); }

bool __CFDictionary::EqualTo(Object const& other) const {
    auto const& dictionary = static_cast<__CFDictionary const&>(other);
    return count == dictionary.count && std::ranges::all_of(Entries(), [&](Entry const& entry) {
               CFTypeRef const value = dictionary.Find(entry.key);
               return value != nullptr && AreEqual(entry.value, value);
           });
}

CFHashCode __CFDictionary::Hash() const { return count; }

namespace Platform {

CFArrayRef NewArray(std::span<CFTypeRef const> elements) {
    static CFArrayRef const none = new __CFArray({});
    if (elements.empty()) return Retained(none);
    CheckedCount(elements.size());
    return new (Behind{elements.size_bytes()}) __CFArray(elements);
}

CFDictionaryRef NewDictionary(std::span<CFTypeRef const> keysAndValues) {
    static CFDictionaryRef const none = new __CFDictionary(0);
    if (keysAndValues.empty()) return Retained(none);
    UInt32 const entries = CheckedCount(keysAndValues.size() / 2);
    Behind const behind{entries * sizeof(__CFDictionary::Entry) +
                        IndexSize(IndexBits(entries)) * sizeof(UInt32)};
    auto* const dictionary = new (behind) __CFDictionary(entries);
    for (std::size_t i = 0; i < keysAndValues.size(); i += 2)
        dictionary->Add(static_cast<CFStringRef>(keysAndValues[i]), keysAndValues[i + 1]);
    return dictionary;
}

}  // namespace Platform

CFTypeID CFArrayGetTypeID() {
    static CFTypeID const id = NewTypeID();
    return id;
}

CFIndex CFArrayGetCount(CFArrayRef array) { return static_cast<CFIndex>(array->Elements().size()); }

CFTypeRef CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    auto const elements = array->Elements();
    if (index < 0 || static_cast<std::size_t>(index) >= elements.size()) return nullptr;
    return elements[static_cast<std::size_t>(index)];
}

CFTypeID CFDictionaryGetTypeID() {
    static CFTypeID const id = NewTypeID();
    return id;
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
    return static_cast<CFIndex>(dictionary->Entries().size());
}

CFTypeRef CFDictionaryGetValue(CFDictionaryRef dictionary, CFTypeRef key) {
    if (CFGetTypeID(key) != CFStringGetTypeID()) return nullptr;
    return dictionary->Find(static_cast<CFStringRef>(key));
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, CFTypeRef* keys, CFTypeRef* values) {
    for (auto const& [key, value] : dictionary->Entries()) {
        if (keys != nullptr) *keys++ = key;
        if (values != nullptr) *values++ = value;
    }
}
