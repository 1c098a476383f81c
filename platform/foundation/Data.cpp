#include "foundation/Data.h"

#include <algorithm>
#include <functional>
#include <string_view>

CFTypeID __CFData::TypeID() const { return CFDataGetTypeID(); }

bool __CFData::EqualTo(Platform::Object const& other) const {
    return std::ranges::equal(Bytes(), static_cast<__CFData const&>(other).Bytes());
}

CFHashCode __CFData::Hash() const {
    return std::hash<std::string_view>()({ElementsBehind<char>(this), size});
}

namespace Platform {

__CFData* NewData(std::size_t size) { return new (Behind{size}) __CFData(size); }

CFDataRef NewData(std::span<UInt8 const> bytes) {
    __CFData* const data = NewData(bytes.size());
    std::ranges::copy(bytes, data->Bytes().begin());
    return data;
}

}  // namespace Platform

CFTypeID CFDataGetTypeID() {
    static CFTypeID const id = Platform::NewTypeID();
    return id;
}

CFDataRef CFDataCreate(CFAllocatorRef, UInt8 const* bytes, CFIndex length) {
    return Platform::Guarded<CFDataRef>(nullptr, [&]() -> CFDataRef {
        if (length < 0) return nullptr;
        return Platform::NewData(std::span(bytes, static_cast<std::size_t>(length)));
    });
}

CFIndex CFDataGetLength(CFDataRef data) { return static_cast<CFIndex>(data->Bytes().size()); }

UInt8 const* CFDataGetBytePtr(CFDataRef data) { return data->Bytes().data(); }
