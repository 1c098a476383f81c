#pragma once

// USB, as the platform's Gestalt tells of it.

#include <cstdint>

#include "Evaluator/Values.h"
#include "versions/Version.h"

/// What the platform says of USB.
struct usb {
    std::uint32_t attributes;
};

/// Asks the platform. NoSuchObject on a machine without USB.
usb usb_of();
/// The highest version that the machine supports; the platform is asked anew.
MacVersion usb_version_of(usb const&);
/// Whether there are isochronous transfers.
boolean isoch_of(usb const& support);
