// Any bytes as a binary property list, and as the objects and offsets of one whose trailer is sound.

#include <string>

#include "PropertyLists.h"

namespace {

std::string BigEndian(std::uint64_t number) {
    std::string bytes(8, '\0');
    for (std::size_t i = 8; i > 0; --i, number >>= 8) bytes[i - 1] = static_cast<char>(number);
    return bytes;
}

// The first byte says how many of the last bytes are the table of offsets.
std::string WithTrailer(std::string_view bytes) {
    std::string const objects = "bplist00" + std::string(bytes);
    std::size_t const count = bytes.empty() ? 0 : static_cast<std::uint8_t>(bytes[0]) % bytes.size();
    return objects + std::string(6, '\0') + "\x01\x01" + BigEndian(count) + BigEndian(0) +
           BigEndian(objects.size() - count);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Fuzz::HoldPropertyList(data, size);
    std::string const list = WithTrailer(Fuzz::AsQuery(data, size));
    Fuzz::HoldPropertyList(reinterpret_cast<UInt8 const*>(list.data()), list.size());
    return 0;
}
