// USB root hubs as a kernel shows them.

#include <Carbon/Gestalt.h>

#include "EmulatedDevices.h"
#include "command/Running.h"

namespace {

SInt32 AnswerOf(OSType selector) {
    SInt32 answer = -1;
    EXPECT_EQ(noErr, Gestalt(selector, &answer));
    return answer;
}

std::string Device(std::string const& path, std::string const& version) {
    return "P: /devices/pci0000:00/0000:00:14.0/" + path +
           "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nA: version= " + version + "\\n\n\n";
}

}  // namespace

TEST(UsbHubs, ThatAKernelShowsAreUsb) {
    EmulatedDevices devices;
    devices.Add(Device("usb1", "2.00") + Device("usb2", "3.10") + Device("usb1/1-4", "9.00"));
    EXPECT_EQ(3, AnswerOf(gestaltUSBAttr));
    EXPECT_EQ(0x03108000, AnswerOf(gestaltUSBVersion));
    EXPECT_EQ("3.1\ntrue\n", RunZelq({"(version of it as string; isochronous of it as string) of usb"}).out);
}

TEST(UsbHubs, ThatAreMissingAreNoUsb) {
    EmulatedDevices const devices;
    EXPECT_EQ(0, AnswerOf(gestaltUSBAttr));
    EXPECT_EQ("false\n", RunZelq({"exists usb"}).out);
}
