// Any bytes as each of the files that facts of the machine are read from.

#include <Carbon/Gestalt.h>

#include "Invariants.h"
#include "Machine.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static Fuzz::Machine const machine({
        "proc/meminfo",
        "proc/cpuinfo",
        "proc/device-tree/model",
        "proc/sys/kernel/hostname",
        "etc/os-release",
        "sys/class/dmi/id/product_name",
        "sys/devices/system/cpu/online",
        "sys/class/dmi/id/bios_release",
        "sys/devices/system/cpu/cpufreq/policy0/cpuinfo_max_freq",
        "sys/bus/usb/devices/usb1/version",
    });
    machine.Say(Fuzz::AsQuery(data, size));
    machine.SayOf("proc/sys/kernel/arch", size % 2 == 0 ? "x86_64\n" : "ppc\n");
    for (OSType const selector :
         {gestaltPhysicalRAMSize, gestaltPhysicalRAMSizeInMegabytes, gestaltNativeCPUtype, gestaltCountOfCPUs,
          gestaltProcClkSpeed, gestaltProcClkSpeedMHz, gestaltX86Features, gestaltSystemVersion,
          gestaltSystemVersionMajor, gestaltROMVersion, gestaltUserVisibleMachineName, gestaltUSBVersion}) {
        SInt32 response = 1;
        OSErr const error = Gestalt(selector, &response);
        Fuzz::Hold(error == noErr || error == gestaltUndefSelectorErr || error == gestaltUnknownErr,
                   "a fact is known, missing or senseless");
        Fuzz::Hold(error == noErr || response == 0, "a failure has no answer");
        if (error == noErr && (selector == gestaltSystemVersion || selector == gestaltROMVersion))
            Fuzz::Hold(response >= 0 && response <= 0x9999, "a version word has four digits");
    }
    return 0;
}
