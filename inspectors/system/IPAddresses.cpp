#include "system/IPAddresses.h"

#include "Evaluator/Context.h"
#include "Evaluator/Exceptions.h"
#include "Evaluator/Network.h"
#include "Evaluator/Output.h"

bool operator==(ip_address const& left, ip_address const& right) { return left.number == right.number; }

ip_address ip_address_of(unsigned char const* text, unsigned long length) {
    try {
        return {TextToIPAddress({text, length})};
    } catch (ParsingFailure const&) {
        throw NoSuchObject();
    }
}

inspector_string IPasString(ip_address const& address) {
    constexpr unsigned size = 20;
    Buffer text(Data(static_cast<unsigned char*>(Allocate_Inspector_Memory(size)), size));
    for (int shift = 24; shift >= 0; shift -= 8) {
        if (shift != 24) text << ".";
        text << Numeral(static_cast<unsigned char>(address.number >> shift));
    }
    ConstData const written = text.Written();
    return {written.begin(), static_cast<std::uint32_t>(written.Size())};
}
