#include "scsi/ScsiBuses.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <set>

#include "machine/MachineFiles.h"

namespace Platform {
namespace {

// Takes a decimal number off the beginning of a text.
template <class Number>
bool TakeNumber(std::string_view& text, Number& number) {
    bool const hasZeroInFront = text.size() > 1 && text[0] == '0' && text[1] >= '0' && text[1] <= '9';
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (hasZeroInFront || error != std::errc()) return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

bool TakeColon(std::string_view& text) {
    if (!text.starts_with(':')) return false;
    text.remove_prefix(1);
    return true;
}

int ListClass(std::string_view path, std::vector<std::string>& names) {
    int const error = ListFacts(path, names);
    return error == ENOENT || error == ENOTDIR ? 0 : error;
}

}  // namespace

std::optional<std::uint32_t> HostNamed(std::string_view name) {
    constexpr std::string_view prefix = "host";
    std::uint32_t host = 0;
    if (!name.starts_with(prefix)) return std::nullopt;
    name.remove_prefix(prefix.size());
    if (!TakeNumber(name, host) || !name.empty()) return std::nullopt;
    return host;
}

std::optional<ScsiUnit> UnitNamed(std::string_view name) {
    ScsiUnit found;
    bool const isUnit = TakeNumber(name, found.bus.host) && TakeColon(name) &&
                        TakeNumber(name, found.bus.channel) && TakeColon(name) &&
                        TakeNumber(name, found.target) && TakeColon(name) && TakeNumber(name, found.unit);
    if (!isUnit || !name.empty()) return std::nullopt;
    return found;
}

std::string NameOf(ScsiUnit const& unit) {
    return std::to_string(unit.bus.host) + ":" + std::to_string(unit.bus.channel) + ":" +
           std::to_string(unit.target) + ":" + std::to_string(unit.unit);
}

int FindScsi(ScsiMachine& machine) {
    machine = {};
    std::vector<std::string> names;
    if (int const error = ListClass("sys/class/scsi_host", names); error != 0) return error;
    std::set<std::uint32_t> hosts;
    for (std::string const& name : names) {
        if (auto const host = HostNamed(name)) hosts.insert(*host);
    }
    if (int const error = ListClass("sys/class/scsi_device", names); error != 0) return error;
    std::set<ScsiBus> buses;
    std::set<std::uint32_t> empty = hosts;
    for (std::string const& name : names) {
        auto const unit = UnitNamed(name);
        if (!unit || !hosts.contains(unit->bus.host)) continue;
        machine.units.push_back(*unit);
        buses.insert(unit->bus);
        empty.erase(unit->bus.host);
    }
    for (std::uint32_t const host : empty) buses.insert({host, 0});
    machine.buses.assign(buses.begin(), buses.end());
    std::sort(machine.units.begin(), machine.units.end());
    return 0;
}

}  // namespace Platform
