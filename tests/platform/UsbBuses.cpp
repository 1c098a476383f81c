// The root hubs of recorded machines.

#include "gestalt/UsbBuses.h"

#include <gtest/gtest.h>

#include <optional>

#include "support/TemporaryFolder.h"
#include "support/Variable.h"

namespace {

bool HasUsbRootHubs() {
    bool areThere = false;
    EXPECT_EQ(noErr, Platform::FindUsbRootHubs(areThere));
    return areThere;
}

// Empty where there is none.
std::optional<UInt32> HighestUsbVersion() {
    UInt32 word = 0;
    OSErr const error = Platform::GetHighestUsbVersion(word);
    EXPECT_TRUE(error == noErr || error == gestaltUndefSelectorErr) << error;
    return error == noErr ? std::optional(word) : std::nullopt;
}

// A machine with USB devices of the test's making, as long as one lives.
class RecordedUsb {
  public:
    void Add(std::string const& device, std::string const& version) const {
        folder.MakeFolder("sys/bus/usb/devices/" + device);
        folder.Write("sys/bus/usb/devices/" + device + "/version", version);
    }
    TemporaryFolder const& Folder() const { return folder; }

  private:
    TemporaryFolder const folder;
    Variable const root{"ZELQ_MACHINE_ROOT", folder.Path()};
};

}  // namespace

TEST(UsbBuses, AreNoneWithoutRootHubs) {
    RecordedUsb const machine;
    EXPECT_FALSE(HasUsbRootHubs());
    EXPECT_FALSE(HighestUsbVersion());
    for (char const* const device : {"1-4", "1-0:1.0", "usb", "usbmon0", "usb1x", "xusb1", "USB1"})
        machine.Add(device, " 2.00\n");
    EXPECT_FALSE(HasUsbRootHubs());
    EXPECT_FALSE(HighestUsbVersion());
}

TEST(UsbBuses, AreThereWithARootHub) {
    RecordedUsb const machine;
    machine.Folder().MakeFolder("sys/bus/usb/devices/usb12");
    EXPECT_TRUE(HasUsbRootHubs());
    EXPECT_FALSE(HighestUsbVersion());
}

TEST(UsbBuses, HaveVersionsOfTwoDecimals) {
    for (auto const& [text, word] : {std::pair(" 2.00\n", 0x02008000u),
                                     {" 1.10\n", 0x01108000u},
                                     {" 3.10\n", 0x03108000u},
                                     {"3.20", 0x03208000u},
                                     {"12.34\n", 0x12348000u}}) {
        RecordedUsb const machine;
        machine.Add("usb1", text);
        EXPECT_EQ(word, HighestUsbVersion()) << text;
    }
}

TEST(UsbBuses, HaveTheHighestVersionOfTheirs) {
    RecordedUsb const machine;
    machine.Add("usb1", " 2.00\n");
    machine.Add("usb10", " 3.10\n");
    machine.Add("usb2", " 3.00\n");
    machine.Add("1-4", " 4.00\n");  // a device
    EXPECT_EQ(0x03108000u, HighestUsbVersion());
}

TEST(UsbBuses, HaveNoVersionThatMakesNoSense) {
    RecordedUsb const machine;
    machine.Add("usb1", " 1.10\n");
    for (char const* const text : {"", "\n", "9", "9.", "9.0", "9.000", ".00", "999.00", "9.0a", "a.00",
                                   "9,00", "-9.00", "9.00 x", "9.-1", "9..0"}) {
        machine.Add("usb2", text);
        EXPECT_EQ(0x01108000u, HighestUsbVersion()) << text;
        EXPECT_TRUE(HasUsbRootHubs());
    }
}
