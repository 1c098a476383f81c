#pragma once

// The USB buses of the machine, by their root hubs: the folders usb1, usb2, … in /sys/bus/usb/devices. Read
// anew by each call.

#include <cstdint>
#include <optional>

namespace Platform {

/// Whether the machine has a USB bus.
bool HasUsbRootHubs();
/// The highest version of a root hub as a version word of a final release, such as 0x03108000 for 3.10. A
/// hub whose version makes no sense does not count; empty when none counts.
std::optional<std::uint32_t> HighestUsbVersion();

}  // namespace Platform
