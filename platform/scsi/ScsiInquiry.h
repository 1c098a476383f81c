#pragma once

// The INQUIRY data of a unit: what kind of device it is, who made it. Its layout is that of the SCSI
// standard: the type in the low 5 bits of byte 0, the number of bytes behind byte 4 in it, from byte 8 vendor
// (8), product (16) and revision (4), padded with blanks.

#include <CoreFoundation/CFBase.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "scsi/ScsiBuses.h"

namespace Platform {

/// As much as a command of six bytes can ask for.
inline constexpr std::size_t kMostOfInquiry = 255;

/// What came of an inquiry.
struct InquiryAnswer {
    OSErr result = 0;         // as SCSIAction gives it
    std::uint8_t status = 0;  // of the device, where it is not 0
    std::string data;
};

/// What the kernel keeps of the unit's answer; else what the unit answers now; else what can be made of the
/// facts of the kernel. scsiSelectTimeout when there is none of them; scsiCommandTimeout for a unit that has
/// not answered five seconds after its time, and until it does others are not asked; userCanceledErr when the
/// check-in function says stop.
InquiryAnswer Inquire(ScsiUnit const& unit, std::chrono::milliseconds timeout);

/// The steps of it, each empty where it is not possible. Asking a unit takes as long as the kernel likes.
std::optional<std::string> KeptInquiry(ScsiUnit const& unit);
std::optional<InquiryAnswer> AskUnit(ScsiUnit const& unit, std::chrono::milliseconds timeout);
std::optional<std::string> MadeInquiry(ScsiUnit const& unit);

/// The folder of facts of a unit.
std::string FolderOf(ScsiUnit const& unit);

}  // namespace Platform
