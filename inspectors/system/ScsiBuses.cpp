#include "system/ScsiBuses.h"

#include <limits>

#include "Evaluator/Exceptions.h"

scsibus::scsibus(unsigned long long number) : SCSIBusInquiryPB() {
    if (number > std::numeric_limits<UInt8>::max()) throw NoSuchObject();  // the request has no room for it
    scsiPBLength = sizeof(SCSIBusInquiryPB);
    scsiFunctionCode = SCSIBusInquiry;
    scsiDevice.bus = static_cast<UInt8>(number);
    OSErr const error = SCSIAction(reinterpret_cast<SCSI_PB*>(static_cast<SCSIBusInquiryPB*>(this)));
    if (error == scsiPBLengthError) throw OSError(error);
    if (error != noErr) throw NoSuchObject();
}

scsibus scsi_bus_of(unsigned long long number) { return scsibus(number); }

MacVersion version_of(scsibus const& bus) {
    MacVersion version;
    version.major = bus.scsiVersionNumber;
    return version;
}

boolean fast_scsi_of(scsibus const& bus) { return (bus.scsiFeatureFlags & scsiBusFastSCSI) != 0; }
boolean wide16_scsi_of(scsibus const& bus) { return (bus.scsiHBAInquiry & scsiBusWide16) != 0; }
boolean wide32_scsi_of(scsibus const& bus) { return (bus.scsiHBAInquiry & scsiBusWide32) != 0; }

scsibus SCSIBusIterator::First() {
    next = 0;
    return Next();
}

scsibus SCSIBusIterator::Next() { return scsibus(next++); }
