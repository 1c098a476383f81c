#pragma once

// Devices on SCSI buses, as they answer an INQUIRY. Only unit 0 of each target is asked.

#include <cstdint>

#include "Evaluator/Values.h"
#include "system/ScsiBuses.h"

/// A device: the INQUIRY data that it has, the rest zero, and where it is.
struct scsiDevice {
    /// Asks. NoSuchObject for a device that does not exist or does not answer.
    scsiDevice(unsigned long long bus, unsigned long long target);

    unsigned char inquiry[256] = {};
    std::uint64_t target;
    std::uint64_t bus;
};
static_assert(sizeof(scsiDevice) == 272);

/// A device of the first bus, and of a bus. These are remembered: see ClearscsiDevCache.
scsiDevice scsi_device_of(unsigned long long target);
scsiDevice scsi_device_of(unsigned long long target, scsibus const& bus);

// Texts as the device has them, as a rule padded with blanks; what it did not send is NUL. Their bytes are
// the value's.
inspector_string vendor_of(scsiDevice const& device);
inspector_string product_of(scsiDevice const& device);
inspector_string revision_of(scsiDevice const& device);
/// The kind of device, such as "TAPE"; an optical memory is a "DISK". "UNKNOWN" for one without a name.
inspector_string type_of(scsiDevice const& device);

/// Forgets the last eight devices that were asked for by number. The argument means nothing.
void ClearscsiDevCache(void*);

/// The devices of a bus with targets from 0 to 7, in order; NoSuchObject ends them.
class SCSIDeviceIterator1 {
  public:
    scsiDevice First(scsibus const& bus);
    scsiDevice Next(scsibus const& bus);

  private:
    std::uint16_t next = 0;  // target
};

/// The same of all buses.
class SCSIDeviceIterator2 {
  public:
    scsiDevice First();
    scsiDevice Next();

  private:
    std::uint16_t next = 0;  // target
    SCSIBusIterator buses;
};
