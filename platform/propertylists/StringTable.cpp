#include "propertylists/StringTable.h"

#include <utility>

#include "foundation/SecretHash.h"

namespace Platform {

StringTable::~StringTable() {
    for (CFStringRef const string : places) {
        if (string != nullptr) string->Release();
    }
}

CFStringRef StringTable::Get(std::string_view utf8) {
    if (!IsAscii(utf8)) return NewUtf8String(utf8);
    if (2 * count >= places.size()) Grow();
    CFStringRef& place = PlaceOf(utf8);
    if (place == nullptr) {
        place = NewAsciiString(utf8);
        ++count;
    }
    place->Retain();
    return place;
}

// The place of a text, or the free one that it would get. There is always a free one.
CFStringRef& StringTable::PlaceOf(std::string_view ascii) {
    std::size_t const mask = places.size() - 1;
    std::size_t at = SecretHash(ascii) & mask;
    while (places[at] != nullptr && places[at]->Ascii() != ascii) at = (at + 1) & mask;
    return places[at];
}

void StringTable::Grow() {
    constexpr std::size_t least = 64;
    std::vector<CFStringRef> const former =
        std::exchange(places, std::vector<CFStringRef>(places.empty() ? least : 2 * places.size()));
    for (CFStringRef const string : former) {
        if (string != nullptr) PlaceOf(string->Ascii()) = string;
    }
}

}  // namespace Platform
