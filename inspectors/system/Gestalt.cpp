#include "system/Gestalt.h"

#include <Carbon/Gestalt.h>

#include "Evaluator/Exceptions.h"
#include "filesystem/FileCodes.h"

namespace {

// The answer as a number, which is never negative.
integer NumberOf(OSType selector) { return static_cast<long long>(MacGestalt(selector).response); }

MacVersion VersionOfLowHalf(OSType selector) {
    return VersionOfHighHalf(MacGestalt(selector).response << 16);
}

}  // namespace

MacGestalt::MacGestalt(unsigned long selector) {
    SInt32 answer = 0;
    OSErr const error = Gestalt(static_cast<OSType>(selector), &answer);
    if (error == gestaltUndefSelectorErr) throw NoSuchObject();
    if (error != noErr) throw OSError(error);
    response = static_cast<std::uint32_t>(answer);
}

inspector_string MacGestalt::String() const {
    auto const text = reinterpret_cast<unsigned char const*>(static_cast<std::uintptr_t>(response));
    return {text + 1, text[0]};
}

MacVersion VersionOfHighHalf(std::uint32_t word) {
    MacVersion version;
    version.major = static_cast<std::uint16_t>((word >> 28) * 10 + ((word >> 24) & 15));
    version.minor = (word >> 20) & 15;
    version.bugrev = (word >> 16) & 15;
    return version;
}

MacVersion VersionOfWord(std::uint32_t word) {
    MacVersion version = VersionOfHighHalf(word);
    version.stage = static_cast<std::uint8_t>(word >> 8);
    version.nonrel = word & 255;
    return version;
}

integer phys_ram_of() { return NumberOf(gestaltPhysicalRAMSize); }
integer log_ram_of() { return NumberOf(gestaltLogicalRAMSize); }

boolean native_processor() {
    constexpr std::uint32_t powerPC = 2;
    return MacGestalt(gestaltSysArchitecture).response == powerPC;
}

boolean virtual_mem() { return (MacGestalt(gestaltVMAttr).response & 1) != 0; }
MacVersion qd_version_of() { return VersionOfLowHalf(gestaltQuickdrawVersion); }
MacVersion sys_version_of() { return VersionOfLowHalf(gestaltSystemVersion); }
MacVersion rom_version_of() { return VersionOfLowHalf(gestaltROMVersion); }
integer machine_type_of() { return NumberOf(gestaltMachineType); }
integer keyboard_type_of() { return NumberOf(gestaltKeyboardType); }
integer nubus_map_of() { return NumberOf(gestaltNuBusConnectors); }
MacVersion name_registry_of() { return VersionOfWord(MacGestalt(gestaltNameRegistryVersion).response); }
integer cpu_speed_of() { return NumberOf(gestaltProcClkSpeed); }
inspector_string machine_name_of() { return MacGestalt(gestaltUserVisibleMachineName).String(); }

integer gestalt_of(unsigned char const* name, unsigned long length) {
    auto const selector = file_type_of(name, length);
    return static_cast<std::int32_t>(MacGestalt(selector.code).response);
}
