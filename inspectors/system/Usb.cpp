#include "system/Usb.h"

#include <Carbon/Gestalt.h>

#include "Evaluator/Exceptions.h"
#include "system/Gestalt.h"

namespace {

constexpr std::uint32_t kIsPresent = 1, kIsIsochronous = 2;

}  // namespace

usb usb_of() {
    usb const support{MacGestalt(gestaltUSBAttr).response};
    if ((support.attributes & kIsPresent) == 0) throw NoSuchObject();
    return support;
}

MacVersion usb_version_of(usb const&) { return VersionOfWord(MacGestalt(gestaltUSBVersion).response); }

boolean isoch_of(usb const& support) { return (support.attributes & kIsIsochronous) != 0; }
