#include "machine/UsbBuses.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "machine/MachineFiles.h"

namespace Platform {
namespace {

constexpr std::string_view kDevices = "sys/bus/usb/devices/";

bool IsDigit(char letter) { return letter >= '0' && letter <= '9'; }

bool IsRootHub(std::string_view name) {
    constexpr std::string_view prefix = "usb";
    return name.starts_with(prefix) && name.size() > prefix.size() &&
           std::ranges::all_of(name.substr(prefix.size()), IsDigit);
}

std::vector<std::string> RootHubs() {
    std::vector<std::string> names;
    ListFacts(kDevices, names);
    std::erase_if(names, [](auto& name) { return !IsRootHub(name); });
    return names;
}

// The version word of a text such as "2.00": one or two decimal digits, and two behind the point.
std::optional<std::uint32_t> VersionIn(std::string_view text) {
    constexpr std::uint32_t finalRelease = 0x8000;
    std::size_t const point = text.find('.');
    if (point < 1 || point > 2 || text.size() != point + 3) return std::nullopt;
    std::string digits(text);
    digits.erase(point, 1);
    if (!std::ranges::all_of(digits, IsDigit)) return std::nullopt;
    std::uint32_t word = 0;
    for (char const digit : digits) word = word << 4 | static_cast<std::uint32_t>(digit - '0');
    return word << 16 | finalRelease;
}

}  // namespace

bool HasUsbRootHubs() { return !RootHubs().empty(); }

std::optional<std::uint32_t> HighestUsbVersion() {
    std::optional<std::uint32_t> highest;
    for (std::string const& hub : RootHubs()) {
        std::string const path = std::string(kDevices) + hub + "/version";
        // An empty version is lower than any other.
        highest = std::max(highest, VersionIn(FactLine(path)));
    }
    return highest;
}

}  // namespace Platform
