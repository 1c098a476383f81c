#include "gestalt/Processors.h"

#include <sys/utsname.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/Numbers.h"
#include "foundation/TextLines.h"
#include "gestalt/Facts.h"
#include "machine/Environment.h"

namespace Platform {

namespace {

constexpr std::string_view kProcessors = "proc/cpuinfo", kOnline = "sys/devices/system/cpu/online";
constexpr std::size_t kMostOfProcessors = 4 << 20;  // bytes of the text on all of them

constexpr UInt32 kPowerPC = 2, kIntel = 10, kArm32 = 100, kArm64 = 101;

// ---- The kind of processor

// What the kernel calls the machine; old kernels have no such file.
OSErr GetMachine(std::string& machine) {
    OSErr const error = GetFactLine("proc/sys/kernel/arch", machine);
    if (error != gestaltUndefSelectorErr || IsRecordedMachine()) return error;
    utsname name;
    if (uname(&name) != 0) return gestaltUndefSelectorErr;
    machine = name.machine;
    return noErr;
}

bool IsIntel(std::string_view machine) {
    bool const isThirtyTwo =
        machine.size() == 4 && machine.front() == 'i' && machine.ends_with("86");  // i386 to i686
    return machine == "x86_64" || isThirtyTwo;
}

struct PowerPC {
    std::string_view name;  // as the kernel has it, or its beginning
    UInt32 type;
};
// A longer name stands before one that it begins with.
constexpr std::array kPowerPCs{
    PowerPC{"601", 0x0101},    PowerPC{"603", 0x0103},      PowerPC{"604", 0x0104},
    PowerPC{"750FX", 0x0120},  PowerPC{"750", 0x0108},      PowerPC{"740/750", 0x0108},
    PowerPC{"7400", 0x010C},   PowerPC{"7450", 0x0110},     PowerPC{"7455", 0x0111},
    PowerPC{"7447", 0x0112},   PowerPC{"PPC970FX", 0x013C}, PowerPC{"PPC970MP", 0x0144},
    PowerPC{"PPC970", 0x0139},
};

OSErr GetPowerPCType(UInt32& type) {
    std::string text;
    if (OSErr const error = GetFact(kProcessors, text, kMostOfProcessors); error != noErr) return error;
    std::string_view const name = ValueOf("cpu", text);
    auto const found = std::find_if(kPowerPCs.begin(), kPowerPCs.end(), [&](PowerPC const& processor) {
        return name.starts_with(processor.name);
    });
    if (found == kPowerPCs.end()) return gestaltUndefSelectorErr;
    type = found->type;
    return noErr;
}

// ---- How many there are

// How many numbers there are in a list of ranges, such as "0-3,6"; 0 where it makes no sense.
UInt64 CountIn(std::string_view ranges) {
    UInt64 count = 0;
    for (;;) {
        UInt32 first = 0, last = 0;
        if (TakeNumber(ranges, first) != std::errc()) return 0;
        last = first;
        if (ranges.starts_with('-')) {
            ranges.remove_prefix(1);
            if (TakeNumber(ranges, last) != std::errc() || last < first) return 0;
        }
        count += UInt64{last} - first + 1;
        if (ranges.empty()) return count;
        if (!ranges.starts_with(',')) return 0;
        ranges.remove_prefix(1);
    }
}

// ---- The clock

// Gets the highest clock that the drivers of the processors' clocks allow, in Hz; 0 where they tell none.
OSErr GetHighestOfDrivers(UInt64& highest) {
    constexpr std::string_view folder = "sys/devices/system/cpu/cpufreq";
    std::vector<std::string> names;
    highest = 0;
    if (OSErr const error = GetFactNames(folder, names); error != noErr) return error;
    for (std::string const& name : names) {
        if (!name.starts_with("policy")) continue;
        std::string line;
        OSErr const error = GetFactLine(std::string(folder) + "/" + name + "/cpuinfo_max_freq", line);
        if (error == gestaltUnknownErr) return error;
        if (auto const kilohertz = NumberIn<UInt32>(line))
            highest = std::max(highest, UInt64{*kilohertz} * 1000);
    }
    return noErr;
}

// The clock of a line of /proc/cpuinfo, in Hz: "cpu MHz : 2399.998", or "clock : 1333.333000MHz" of PowerPCs.
UInt64 ClockIn(std::string_view line) {
    std::size_t const colon = line.find(':');
    if (colon == line.npos) return 0;
    std::string_view const name = Trimmed(line.substr(0, colon));
    if (name != "cpu MHz" && name != "clock") return 0;
    std::string_view value = Trimmed(line.substr(colon + 1));
    double megahertz = 0;
    constexpr double most = 1e9;
    if (TakeNumber(value, megahertz) != std::errc() || !(value.empty() || value == "MHz") ||
        !(megahertz > 0 && megahertz < most))
        return 0;
    return static_cast<UInt64>(std::llround(megahertz * 1e6));
}

// ---- Features

// The names that the kernel has for the bits of EDX; those without a name are reserved.
constexpr std::array<std::string_view, 32> kFeatures{
    "fpu",  "vme",  "de",   "pse", "tsc",  "msr", "pae",   "mce", "cx8",     "apic", "",
    "sep",  "mtrr", "pge",  "mca", "cmov", "pat", "pse36", "pn",  "clflush", "",     "dts",
    "acpi", "mmx",  "fxsr", "sse", "sse2", "ss",  "ht",    "tm",  "ia64",    "pbe"};

}  // namespace

OSErr GetArchitecture(UInt32& architecture) {
    std::string machine;
    if (OSErr const error = GetMachine(machine); error != noErr) return error;
    if (machine.starts_with("ppc")) {
        architecture = kPowerPC;
    } else if (IsIntel(machine)) {
        architecture = kIntel;
    } else if (machine.starts_with("aarch64")) {
        architecture = kArm64;
    } else if (machine.starts_with("arm")) {
        architecture = kArm32;
    } else {
        return gestaltUndefSelectorErr;
    }
    return noErr;
}

OSErr GetProcessorType(UInt32& type) {
    UInt32 architecture = 0;
    if (OSErr const error = GetArchitecture(architecture); error != noErr) return error;
    if (architecture == kPowerPC) return GetPowerPCType(type);
    if (architecture != kIntel) return gestaltUndefSelectorErr;
    type = 0x69353836;  // 'i586', as for all of them
    return noErr;
}

OSErr GetProcessorCount(UInt32& count) {
    std::string text;
    if (OSErr const error = GetFactLine(kOnline, text); error != noErr) return error;
    count = Saturated(CountIn(text));
    return count > 0 ? OSErr{noErr} : NoteSenseless(kOnline, "it is no list of numbers");
}

OSErr GetProcessorClock(UInt64& hertz) {
    if (OSErr const error = GetHighestOfDrivers(hertz); error != noErr || hertz > 0) return error;
    std::string text;
    if (OSErr const error = GetFact(kProcessors, text, kMostOfProcessors); error != noErr) return error;
    for (std::string_view rest = text; !rest.empty();) hertz = std::max(hertz, ClockIn(TakeLine(rest)));
    return hertz > 0 ? OSErr{noErr} : OSErr{gestaltUndefSelectorErr};
}

OSErr GetProcessorFeatures(UInt32& features) {
    UInt32 architecture = 0;
    if (OSErr const error = GetArchitecture(architecture); error != noErr) return error;
    std::string text;
    if (OSErr const error = GetFact(kProcessors, text, kMostOfProcessors); error != noErr) return error;
    std::string_view flags = ValueOf("flags", text);
    if (architecture != kIntel || flags.empty()) return gestaltUndefSelectorErr;
    features = 0;
    while (!flags.empty()) {
        std::string_view const flag = flags.substr(0, flags.find(' '));
        flags.remove_prefix(std::min(flag.size() + 1, flags.size()));
        auto const found = std::find(kFeatures.begin(), kFeatures.end(), flag);
        if (!flag.empty() && found != kFeatures.end()) features |= 1u << (found - kFeatures.begin());
    }
    return noErr;
}

}  // namespace Platform
