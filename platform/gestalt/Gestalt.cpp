#include <Carbon/Gestalt.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "files/SettingsFailure.h"
#include "foundation/Numbers.h"
#include "foundation/Object.h"
#include "foundation/TextLines.h"
#include "gestalt/Facts.h"
#include "gestalt/MachineName.h"
#include "gestalt/Processors.h"
#include "gestalt/SystemVersion.h"
#include "gestalt/UsbBuses.h"
#include "machine/Environment.h"

namespace Platform {

namespace {

// Each of these answers one selector or a few. They give what GetFact gives.

// ---- Memory

OSErr GetKilobytesOfMemory(UInt64& kilobytes) {
    constexpr std::string_view file = "proc/meminfo";
    constexpr std::size_t most = 65536;
    std::string text;
    if (OSErr const error = GetFact(file, text, most); error != noErr) return error;
    std::string_view value = ValueOf("MemTotal", text);
    if (TakeNumber(value, kilobytes) != std::errc() || value != " kB")
        return NoteSenseless(file, "its MemTotal is no number of kB");
    return noErr;
}

OSErr MemorySize(UInt32& bytes) {
    UInt64 kilobytes = 0;
    OSErr const error = GetKilobytesOfMemory(kilobytes);
    constexpr UInt64 enough = UInt64{1} << 32;  // more kilobytes would not fit, whatever they are times
    bytes = Saturated(std::min(kilobytes, enough) * 1024);
    return error;
}

OSErr MemoryMegabytes(UInt32& megabytes) {
    UInt64 kilobytes = 0;
    OSErr const error = GetKilobytesOfMemory(kilobytes);
    megabytes = Saturated(kilobytes / 1024);
    return error;
}

OSErr VirtualMemory(UInt32& bits) {
    bits = 1;
    return noErr;
}

OSErr PageSize(UInt32& bytes) {
    if (IsRecordedMachine()) return gestaltUndefSelectorErr;
    bytes = Saturated(static_cast<UInt64>(sysconf(_SC_PAGESIZE)));
    return noErr;
}

// ---- Processors

OSErr ClockInHertz(UInt32& clock) {
    UInt64 hertz = 0;
    OSErr const error = GetProcessorClock(hertz);
    clock = Saturated(hertz);
    return error;
}

OSErr ClockInMegahertz(UInt32& clock) {
    UInt64 hertz = 0;
    OSErr const error = GetProcessorClock(hertz);
    clock = Saturated(hertz / 1000000);
    return error;
}

// ---- Versions

OSErr GetSystemVersion(VersionParts& version) {
    constexpr std::size_t most = 65536;
    std::string text;
    OSErr error = GetFact("etc/os-release", text, most);
    if (error == gestaltUndefSelectorErr) error = GetFact("usr/lib/os-release", text, most);
    if (error != noErr) return error;
    auto const parts = VersionPartsIn(VariableIn(text, "VERSION_ID"));
    if (!parts) return gestaltUndefSelectorErr;  // as systems without releases are
    version = *parts;
    return noErr;
}

OSErr SystemVersion(UInt32& word) {
    VersionParts version{};
    OSErr const error = GetSystemVersion(version);
    word = VersionWord(version);
    return error;
}

template <std::size_t part>
OSErr SystemVersionPart(UInt32& number) {
    VersionParts version{};
    OSErr const error = GetSystemVersion(version);
    number = version[part];
    return error;
}

OSErr FirmwareVersion(UInt32& word) {
    constexpr std::string_view file = "sys/class/dmi/id/bios_release";
    std::string text;
    if (OSErr const error = GetFactLine(file, text); error != noErr) return error;
    auto const parts = VersionPartsIn(text);
    if (!parts) return NoteSenseless(file, "it is no version");
    word = VersionWord(*parts);
    return noErr;
}

// ---- Names

OSErr NameOfMachine(UInt32& address) {
    std::string name;
    OSErr const error = GetMachineName(name);
    return error == noErr ? GetLowString(name, address) : error;
}

// ---- USB

OSErr UsbAttributes(UInt32& bits) {
    constexpr UInt32 isPresent = 1, hasIsochronous = 2;  // every driver has them
    bool areThere = false;
    OSErr const error = FindUsbRootHubs(areThere);
    bits = areThere ? isPresent | hasIsochronous : 0;
    return error;
}

struct Answer {
    OSType selector;
    OSErr (*get)(UInt32& response);
};

constexpr std::array kAnswers{
    Answer{gestaltPhysicalRAMSize, MemorySize},
    Answer{gestaltPhysicalRAMSizeInMegabytes, MemoryMegabytes},
    Answer{gestaltLogicalRAMSize, MemorySize},
    Answer{gestaltSysArchitecture, GetArchitecture},
    Answer{gestaltNativeCPUtype, GetProcessorType},
    Answer{gestaltNativeCPUfamily, GetProcessorType},
    Answer{gestaltCountOfCPUs, GetProcessorCount},
    Answer{gestaltProcClkSpeed, ClockInHertz},
    Answer{gestaltProcClkSpeedMHz, ClockInMegahertz},
    Answer{gestaltX86Features, GetProcessorFeatures},
    Answer{gestaltLogicalPageSize, PageSize},
    Answer{gestaltVMAttr, VirtualMemory},
    Answer{gestaltSystemVersion, SystemVersion},
    Answer{gestaltSystemVersionMajor, SystemVersionPart<0>},
    Answer{gestaltSystemVersionMinor, SystemVersionPart<1>},
    Answer{gestaltSystemVersionBugFix, SystemVersionPart<2>},
    Answer{gestaltROMVersion, FirmwareVersion},
    Answer{gestaltUserVisibleMachineName, NameOfMachine},
    Answer{gestaltUSBAttr, UsbAttributes},
    Answer{gestaltUSBVersion, GetHighestUsbVersion},
};

OSErr Ask(OSType selector, UInt32& response) {
    auto const found = std::find_if(kAnswers.begin(), kAnswers.end(),
                                    [=](Answer const& answer) { return answer.selector == selector; });
    return found != kAnswers.end() ? found->get(response) : OSErr{gestaltUndefSelectorErr};
}

}  // namespace

}  // namespace Platform

OSErr Gestalt(OSType selector, SInt32* response) {
    if (response == nullptr) return paramErr;
    Platform::ForgetSettingsFailure();
    UInt32 answer = 0;
    OSErr const error = Platform::Guarded<OSErr>(memFullErr, [&] { return Platform::Ask(selector, answer); });
    *response = error == noErr ? static_cast<SInt32>(answer) : 0;
    return error;
}
