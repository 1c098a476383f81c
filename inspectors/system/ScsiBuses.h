#pragma once

// SCSI buses, as the platform's SCSI Manager numbers and describes them. Each question asks it anew.

#include <Carbon/SCSI.h>

#include <cstdint>

#include "Evaluator/Values.h"
#include "versions/Version.h"

/// A bus: the platform's answer to an inquiry of it.
struct scsibus : SCSIBusInquiryPB {
    /// Asks. NoSuchObject for a bus that does not exist; OSError when the platform takes the request to have
    /// the wrong length.
    explicit scsibus(unsigned long long number);

    /// Its number.
    std::uint8_t Number() const { return scsiDevice.bus; }
};

scsibus scsi_bus_of(unsigned long long number);

/// The version of the interface to the bus, as a major revision.
MacVersion version_of(scsibus const& bus);
boolean fast_scsi_of(scsibus const& bus);
/// Whether the bus is 16 bits wide, and 32.
boolean wide16_scsi_of(scsibus const& bus);
boolean wide32_scsi_of(scsibus const& bus);

/// The buses, in order; NoSuchObject ends them.
class SCSIBusIterator {
  public:
    scsibus First();
    scsibus Next();

    /// The number of the bus that was asked for last.
    std::uint16_t Current() const { return static_cast<std::uint16_t>(next - 1); }

  private:
    std::uint16_t next = 0;
};
