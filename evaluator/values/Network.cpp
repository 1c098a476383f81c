#include "Evaluator/Network.h"

#include "Evaluator/Exceptions.h"

namespace {

bool IsDigit(unsigned char byte) { return byte >= '0' && byte <= '9'; }

// Reads one number from the front of the text and returns what stands behind it.
ConstData ReadOctet(ConstData text, std::uint32_t& octet) {
    unsigned char const* at = text.begin();
    octet = 0;
    while (at != text.end() && IsDigit(*at) && octet <= 255) octet = octet * 10 + (*at++ - '0');
    auto const digits = at - text.begin();
    if (digits == 0 || octet > 255 || (digits > 1 && *text.begin() == '0')) throw ParsingFailure();
    return {at, text.end()};
}

}  // namespace

std::uint32_t TextToIPAddress(ConstData text) {
    std::uint32_t address = 0;
    ConstData rest = ReadOctet(text, address);
    for (int remaining = 3; remaining > 0; --remaining) {
        if (rest.Empty() || *rest.begin() != '.') throw ParsingFailure();
        std::uint32_t octet;
        rest = ReadOctet({rest.begin() + 1, rest.end()}, octet);
        address = address << 8 | octet;
    }
    if (!rest.Empty()) throw ParsingFailure();
    return address;
}
