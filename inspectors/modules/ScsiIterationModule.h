#pragma once

#include "frame/Adapters.h"
#include "system/ScsiBuses.h"
#include "system/ScsiDevices.h"

/// SCSI buses and devices one after the other.
class ScsiIterationModule {
    IteratedProperty<SCSIDeviceIterator1, scsibus, scsiDevice> devicesOfBus{"scsidevice", "scsidevices",
                                                                            "scsibus", "scsidevice"};
    IteratedGlobalProperty<SCSIDeviceIterator2, scsiDevice> devices{"scsidevice", "scsidevices",
                                                                    "scsidevice"};
    IteratedGlobalProperty<SCSIBusIterator, scsibus> buses{"scsibus", "scsibuses", "scsibus"};
};
