#pragma once

// The SCSI buses and units of the machine, as the kernel names them in /sys/class. Read anew by each call.

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// A bus: a channel of a host.
struct ScsiBus {
    std::uint32_t host = 0;
    std::uint32_t channel = 0;
    auto operator<=>(ScsiBus const&) const = default;
};

/// A unit of a target of a bus.
struct ScsiUnit {
    ScsiBus bus;
    std::uint32_t target = 0;
    std::uint64_t unit = 0;
    auto operator<=>(ScsiUnit const&) const = default;
};

/// What a name says: "host2" and "2:0:5:1". Empty for another text, also for numbers with zeros in front.
std::optional<std::uint32_t> HostNamed(std::string_view name);
std::optional<ScsiUnit> UnitNamed(std::string_view name);
/// The name of a unit, such as "2:0:5:1".
std::string NameOf(ScsiUnit const& unit);

/// The buses in the order of hosts and channels, and the units on them.
struct ScsiMachine {
    std::vector<ScsiBus> buses;
    std::vector<ScsiUnit> units;
};
/// Gets them; a host without units has channel 0. Gives 0, also where there is no SCSI at all, or a value of
/// errno, with a note for PlatformFileFailure.
int FindScsi(ScsiMachine& machine);

}  // namespace Platform
