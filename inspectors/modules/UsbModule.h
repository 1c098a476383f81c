#pragma once

#include "frame/Adapters.h"
#include "system/Usb.h"

/// Whether the machine has USB, and which.
class UsbModule {
    TypeRecord<usb> type{"usb"};
    GlobalProperty<usb> all{"usb", "usbs", "usb", usb_of};
    Property<usb, MacVersion> version{"version", "versions", "usb", "version", usb_version_of};
    Property<usb, boolean> isochronous{"isochronous", "isochronouses", "usb", "boolean", isoch_of};
};
