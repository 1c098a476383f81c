#include "gestalt/UsbBuses.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gestalt/Facts.h"

namespace Platform {
namespace {

constexpr std::string_view kDevices = "sys/bus/usb/devices";

bool IsDigit(char letter) { return letter >= '0' && letter <= '9'; }

bool IsRootHub(std::string_view name) {
    constexpr std::string_view prefix = "usb";
    return name.starts_with(prefix) && name.size() > prefix.size() &&
           std::ranges::all_of(name.substr(prefix.size()), IsDigit);
}

OSErr GetRootHubs(std::vector<std::string>& names) {
    OSErr const error = GetFactNames(kDevices, names);
    std::erase_if(names, [](auto& name) { return !IsRootHub(name); });
    return error;
}

// The version word of a text such as "2.00": one or two decimal digits, and two behind the point.
std::optional<UInt32> VersionIn(std::string_view text) {
    constexpr UInt32 finalRelease = 0x8000;
    std::size_t const point = text.find('.');
    if (point < 1 || point > 2 || text.size() != point + 3) return std::nullopt;
    std::string digits(text);
    digits.erase(point, 1);
    if (!std::ranges::all_of(digits, IsDigit)) return std::nullopt;
    UInt32 word = 0;
    for (char const digit : digits) word = word << 4 | static_cast<UInt32>(digit - '0');
    return word << 16 | finalRelease;
}

}  // namespace

OSErr FindUsbRootHubs(bool& areThere) {
    std::vector<std::string> hubs;
    OSErr const error = GetRootHubs(hubs);
    areThere = !hubs.empty();
    return error;
}

OSErr GetHighestUsbVersion(UInt32& word) {
    std::vector<std::string> hubs;
    if (OSErr const error = GetRootHubs(hubs); error != noErr) return error;
    std::optional<UInt32> highest;
    for (std::string const& hub : hubs) {
        std::string line;
        OSErr const error = GetFactLine(std::string(kDevices) + "/" + hub + "/version", line);
        if (error == gestaltUnknownErr) return error;
        // An empty version is lower than any other.
        highest = std::max(highest, VersionIn(line));
    }
    if (!highest) return gestaltUndefSelectorErr;
    word = *highest;
    return noErr;
}

}  // namespace Platform
