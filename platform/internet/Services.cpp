#include "internet/Services.h"

#include <Carbon/InternetConfig.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <utility>

#include "foundation/TextLines.h"

namespace Platform {

namespace {

constexpr std::size_t kLongestName = 255;
constexpr std::size_t kShortestOfFirst = 4;  // bytes of the names that come first
constexpr std::size_t kMostServices = 65535;

// Takes the word at the front of a line.
std::string_view TakeWord(std::string_view& line) {
    constexpr std::string_view white = " \t\r\v\f";
    line.remove_prefix(std::min(line.find_first_not_of(white), line.size()));
    std::string_view const word = line.substr(0, line.find_first_of(white));
    line.remove_prefix(word.size());
    return word;
}

std::optional<UInt16> PortIn(std::string_view digits) {
    UInt16 port = 0;
    auto const [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
    bool const isWhole = error == std::errc() && end == digits.data() + digits.size();
    return isWhole && (digits.size() == 1 || digits.front() != '0') ? std::optional(port) : std::nullopt;
}

UInt16 FlagOf(std::string_view protocol) {
    if (protocol == "tcp") return kICServicesTCP;
    return protocol == "udp" ? kICServicesUDP : 0;
}

std::optional<InternetService> ServiceIn(std::string_view line) {
    line = line.substr(0, line.find('#'));
    std::string_view const name = TakeWord(line), place = TakeWord(line);
    std::size_t const slash = place.find('/');
    if (name.empty() || name.size() > kLongestName || slash == place.npos) return std::nullopt;
    auto const port = PortIn(place.substr(0, slash));
    UInt16 const flag = FlagOf(place.substr(slash + 1));
    if (!port || flag == 0) return std::nullopt;
    return InternetService{std::string(name), *port, flag};
}

void AddNumber(std::string& bytes, std::size_t number) {
    bytes += static_cast<char>(number >> 8);
    bytes += static_cast<char>(number);
}

}  // namespace

std::vector<InternetService> ServicesIn(std::string_view text) {
    std::vector<InternetService> services;
    std::map<std::pair<std::string, UInt16>, std::size_t> places;
    while (!text.empty() && services.size() < kMostServices) {
        auto service = ServiceIn(TakeLine(text));
        if (!service) continue;
        auto const [place, isNew] = places.try_emplace({service->name, service->port}, services.size());
        if (isNew) {
            services.push_back(std::move(*service));
        } else {
            services[place->second].flags |= service->flags;
        }
    }
    std::stable_partition(services.begin(), services.end(), [](InternetService const& service) {
        return service.name.size() >= kShortestOfFirst;
    });
    return services;
}

std::string PackServices(std::span<InternetService const> services) {
    std::string bytes;
    AddNumber(bytes, services.size());
    for (InternetService const& service : services) {
        bytes += static_cast<char>(service.name.size());
        bytes += service.name;
        AddNumber(bytes, service.port);
        AddNumber(bytes, service.flags);
    }
    return bytes;
}

}  // namespace Platform
