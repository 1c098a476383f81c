#pragma once

// The services of the network by name and port, as the file "services" lists them. Pure.

#include <CoreFoundation/CFBase.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// A service, with the protocols that it is offered by.
struct InternetService {
    std::string name;  // of 1 to 255 bytes
    UInt16 port = 0;
    UInt16 flags = 0;  // kICServicesTCP, kICServicesUDP

    bool operator==(InternetService const&) const = default;
};

/// The services in the text of such a file, `name port/protocol alias… # comment` a line, where the protocol
/// is tcp or udp and the port is in decimal: one for each name and port, and the first 65535. Those with
/// names of four and more bytes come first, in the order of the file, then the others: who reads a table of
/// services may stop at the first short name. Lines of other forms and of other protocols are passed over.
std::vector<InternetService> ServicesIn(std::string_view text);

/// The bytes that Carbon/InternetConfig.h calls ICServices. Requires: at most 65535 services.
std::string PackServices(std::span<InternetService const> services);

}  // namespace Platform
