// Any bytes as an old-style property list, as a .strings file, and as the text of one in UTF-16.

#include <string>

#include "PropertyLists.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Fuzz::HoldPropertyList(data, size);
    std::string wide = "\xFE\xFF";
    for (std::size_t i = 0; i < size; ++i) {
        wide += '\0';
        wide += static_cast<char>(data[i]);
    }
    Fuzz::HoldPropertyList(reinterpret_cast<UInt8 const*>(wide.data()), wide.size());
    std::string const pairs = "first = 1; " + std::string(Fuzz::AsQuery(data, size));
    Fuzz::HoldPropertyList(reinterpret_cast<UInt8 const*>(pairs.data()), pairs.size());
    return 0;
}
