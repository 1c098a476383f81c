#pragma once

// What the kernel tells of parallel SCSI: the host, and the transfers that were agreed on with its targets,
// in /sys/class/spi_host and spi_transport.

#include <cstdint>
#include <optional>
#include <string_view>

#include "scsi/ScsiBuses.h"

namespace Platform {

/// A bus of parallel SCSI. Where the kernel does not tell, 0.
struct ParallelScsi {
    std::uint32_t features = 0;  // as in scsiFeatureFlags
    std::uint8_t inquiry = 0;    // as in scsiHBAInquiry
    std::uint8_t ownId = 0;      // of the host
    std::uint8_t highestId = 7;
};

/// Empty for another kind of bus.
std::optional<ParallelScsi> ParallelScsiOf(ScsiBus const& bus);

/// The features that a signalling is: "SE", "HVD", "LVD".
std::uint32_t FeaturesOfSignalling(std::string_view signalling);
/// The features that a period of transfers in ns needs, such as "12.5".
std::uint32_t FeaturesOfPeriod(std::string_view period);

}  // namespace Platform
