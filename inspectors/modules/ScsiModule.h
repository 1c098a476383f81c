#pragma once

#include "frame/Adapters.h"
#include "system/ScsiBuses.h"
#include "system/ScsiDevices.h"

/// SCSI buses and devices by their numbers, and what is known of them.
class ScsiModule {
    using Truth = Property<scsibus, boolean>;
    using Text = Property<scsiDevice, inspector_string>;

    TypeRecord<scsibus> busType{"scsibus"};
    TypeRecord<scsiDevice> deviceType{"scsidevice"};
    NumberedGlobalProperty<scsibus> bus{"scsibus", "scsibuses", "scsibus", scsi_bus_of};
    NumberedGlobalProperty<scsiDevice> device{"scsidevice", "scsidevices", "scsidevice", scsi_device_of};
    Property<scsibus, MacVersion> version{"version", "versions", "scsibus", "version", version_of};
    Truth fast{"fast scsi", "fast scsis", "scsibus", "boolean", fast_scsi_of};
    Truth wide16{"wide16 scsi", "wide16 scsis", "scsibus", "boolean", wide16_scsi_of};
    Truth wide32{"wide32 scsi", "wide32 scsis", "scsibus", "boolean", wide32_scsi_of};
    NumberedProperty<scsibus, scsiDevice> deviceOfBus{"scsidevice", "scsidevices", "scsibus", "scsidevice",
                                                      scsi_device_of};
    Text vendor{"vendor", "vendors", "scsidevice", "string", vendor_of};
    Text type{"type", "types", "scsidevice", "string", type_of};
    Text product{"product", "products", "scsidevice", "string", product_of};
    Text revision{"revision", "revisions", "scsidevice", "string", revision_of};
    CacheRecord cache{ClearscsiDevCache};
};
