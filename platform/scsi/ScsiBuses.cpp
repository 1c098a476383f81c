#include "scsi/ScsiBuses.h"

#include <algorithm>
#include <cerrno>
#include <set>

#include "files/Errors.h"
#include "files/FileFailure.h"
#include "foundation/Numbers.h"
#include "machine/Environment.h"
#include "machine/MachineFiles.h"

namespace Platform {
namespace {

// Takes a number as the kernel writes it off the beginning of a text.
template <class Number>
bool TakePlain(std::string_view& text, Number& number) {
    bool const hasZeroInFront = text.size() > 1 && text[0] == '0' && text[1] >= '0' && text[1] <= '9';
    return !hasZeroInFront && TakeNumber(text, number) == std::errc();
}

bool TakeColon(std::string_view& text) {
    if (!text.starts_with(':')) return false;
    text.remove_prefix(1);
    return true;
}

int ListClass(std::string_view path, std::vector<std::string>& names) {
    int const error = ListFacts(path, names);
    if (error == 0 || error == ENOENT || error == ENOTDIR) return 0;
    NoteFileFailure(ErrorOfErrno(error), Path(MachinePath(path)));
    return error;
}

}  // namespace

std::optional<std::uint32_t> HostNamed(std::string_view name) {
    constexpr std::string_view prefix = "host";
    std::uint32_t host = 0;
    if (!name.starts_with(prefix)) return std::nullopt;
    name.remove_prefix(prefix.size());
    if (!TakePlain(name, host) || !name.empty()) return std::nullopt;
    return host;
}

std::optional<ScsiUnit> UnitNamed(std::string_view name) {
    ScsiUnit found;
    bool const isUnit = TakePlain(name, found.bus.host) && TakeColon(name) &&
                        TakePlain(name, found.bus.channel) && TakeColon(name) &&
                        TakePlain(name, found.target) && TakeColon(name) && TakePlain(name, found.unit);
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
