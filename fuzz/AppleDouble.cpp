// Any bytes as an AppleDouble image, as its entries behind a sound header, and as an AFP record.

#include "files/AppleDouble.h"

#include <cstring>
#include <vector>

#include "Invariants.h"

using namespace Platform;

namespace {

using Bytes = std::vector<unsigned char>;

void HoldImage(Bytes const& image) {
    auto const facts = DecodeAppleDouble(MemorySource(image));
    if (!facts) return;
    Fuzz::Hold(HasAppleDoubleMagic(MemorySource(image)), "only what begins as an image is one");
    if (!facts->resourceFork) return;
    ByteRange const fork = *facts->resourceFork;
    Fuzz::Hold(fork.offset <= image.size() && fork.length <= image.size() - fork.offset,
               "a fork lies within its image");
}

// A header with a number of entries, and the bytes behind it.
Bytes WithHeader(Bytes const& rest) {
    Bytes image = {0, 5, 0x16, 7, 0, 2, 0, 0};
    image.resize(24);
    image.push_back(0);
    image.push_back(rest.empty() ? 0 : rest[0] % 22);
    image.insert(image.end(), rest.begin(), rest.end());
    return image;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Bytes const bytes(data, data + size);
    HoldImage(bytes);
    HoldImage(WithHeader(bytes));
    DecodeAfpInfo(bytes);
    return 0;
}
