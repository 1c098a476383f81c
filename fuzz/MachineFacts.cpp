// Any bytes as each of the files that facts of the machine are read from.

#include <Carbon/Gestalt.h>
#include <stdlib.h>

#include <array>
#include <filesystem>
#include <fstream>

#include "Invariants.h"

namespace {

constexpr std::array kFacts{
    "proc/meminfo",
    "proc/cpuinfo",
    "proc/device-tree/model",
    "proc/sys/kernel/hostname",
    "etc/os-release",
    "sys/devices/system/cpu/online",
    "sys/class/dmi/id/bios_release",
    "sys/devices/system/cpu/cpufreq/policy0/cpuinfo_max_freq",
    "sys/bus/usb/devices/usb1/version",
};

// A machine of the program's own; it goes with the program.
class Machine {
  public:
    Machine() {
        char pattern[] = "/dev/shm/zelq-facts-XXXXXX";
        root = mkdtemp(pattern);
        for (char const* const fact : kFacts)
            std::filesystem::create_directories((root / fact).parent_path());
        std::filesystem::create_directories(root / "proc/sys/kernel");
        std::ofstream(root / "proc/sys/kernel/arch") << "x86_64\n";
        setenv("ZELQ_MACHINE_ROOT", root.c_str(), 1);
    }
    ~Machine() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    void Say(std::string_view text) const {
        for (char const* const fact : kFacts) std::ofstream(root / fact, std::ios::binary) << text;
    }

  private:
    std::filesystem::path root;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static Machine const machine;
    machine.Say(Fuzz::AsQuery(data, size));
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
