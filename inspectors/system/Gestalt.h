#pragma once

// Facts of the machine, as the platform's Gestalt tells them. Each question asks the platform anew.

#include <cstdint>

#include "Evaluator/Values.h"
#include "versions/Version.h"

/// The platform's answer for a selector.
class MacGestalt {
  public:
    /// Asks. Throws NoSuchObject when the platform does not know the selector, and OSError with its status
    /// for any other failure.
    explicit MacGestalt(unsigned long selector);

    /// The answer, as the platform gave it.
    std::uint32_t response;

    /// The Pascal string whose address is the answer. Its bytes are the platform's.
    inspector_string String() const;
};

/// The version of a 32-bit word: two decimal digits of the major version, one each of the minor version and
/// the bug revision in the high half. Stage and non-release number are 0.
MacVersion VersionOfHighHalf(std::uint32_t word);
/// The same, with the stage and the non-release number of the low half.
MacVersion VersionOfWord(std::uint32_t word);

// Bytes of memory.
integer phys_ram_of();
integer log_ram_of();
boolean native_processor();
boolean virtual_mem();
MacVersion qd_version_of();
MacVersion sys_version_of();
MacVersion rom_version_of();
integer machine_type_of();
integer keyboard_type_of();
integer nubus_map_of();
/// Its stage and non-release number count, unlike those of the three versions above.
MacVersion name_registry_of();
/// In Hz.
integer cpu_speed_of();
inspector_string machine_name_of();

/// The answer for the selector that the name is, a negative number where its highest bit is set. NoSuchObject
/// for a name that is not four bytes long.
integer gestalt_of(unsigned char const* name, unsigned long length);
