#pragma once

// The USB buses of the machine, by their root hubs: the folders usb1, usb2, … in /sys/bus/usb/devices. Read
// anew by each call. They give what GetFact gives.

#include <Carbon/MacErrors.h>
#include <Carbon/MacTypes.h>

namespace Platform {

/// Finds out whether the machine has a USB bus.
OSErr FindUsbRootHubs(bool& areThere);
/// Gets the highest version of a root hub as a version word of a final release, such as 0x03108000 for 3.10.
/// A hub whose version makes no sense does not count; gestaltUndefSelectorErr when none counts.
OSErr GetHighestUsbVersion(UInt32& word);

}  // namespace Platform
