// Any bytes as a property list, and as the inside of an XML one.

#include <string>

#include "PropertyLists.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Fuzz::HoldPropertyList(data, size);
    std::string const xml = "<plist version=\"1.0\">" + std::string(Fuzz::AsQuery(data, size)) + "</plist>";
    Fuzz::HoldPropertyList(reinterpret_cast<UInt8 const*>(xml.data()), xml.size());
    return 0;
}
