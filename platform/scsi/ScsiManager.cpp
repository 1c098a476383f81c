// The call of Carbon/SCSI.h.

#include <Carbon/SCSI.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "files/CheckIn.h"
#include "files/Errors.h"
#include "foundation/Object.h"
#include "machine/MachineFiles.h"
#include "scsi/ParallelScsi.h"
#include "scsi/ScsiBuses.h"
#include "scsi/ScsiInquiry.h"

using namespace Platform;

namespace {

constexpr std::uint32_t kHighestNumber = 255;  // of a bus and of a target: the identification's bytes
constexpr UInt32 kFlags = scsiDirectionMask | scsiDisableAutosense | scsiSIMQNoFreeze;

// ---- A bus

void SetText(SInt8 (&field)[16], std::string_view text) {
    std::memset(field, ' ', sizeof field);
    std::memcpy(field, text.data(), std::min(text.size(), sizeof field));
}

std::uint8_t HighestTarget(ScsiMachine const& machine, ScsiBus const& bus) {
    std::uint32_t highest = 0;
    for (ScsiUnit const& unit : machine.units) {
        if (unit.bus == bus && unit.target <= kHighestNumber) highest = std::max(highest, unit.target);
    }
    return static_cast<std::uint8_t>(highest);
}

void DescribeInterface(SCSIBusInquiryPB& block) {
    block.scsiMaxTransferType = 1;
    block.scsiDataTypes = 1 << scsiDataBuffer;
    block.scsiIOpbSize = block.scsiMaxIOpbSize = sizeof(SCSIExecIOPB);
    block.scsiVersionNumber = 43;
    block.scsiFlagsSupported = scsiDirectionIn | (kFlags & ~scsiDirectionMask);
    for (auto* const text : {&block.scsiHBAVendor, &block.scsiControllerFamily, &block.scsiControllerType})
        SetText(*text, "");
}

void DescribeBus(ScsiMachine const& machine, ScsiBus const& bus, SCSIBusInquiryPB& block) {
    std::size_t const last = machine.buses.size() - 1;
    block.scsiHiBusID = static_cast<UInt8>(std::min<std::size_t>(last, kHighestNumber));
    SetText(block.scsiSIMVendor,
            FactLine("sys/class/scsi_host/host" + std::to_string(bus.host) + "/proc_name"));
    block.scsiMaxTarget = HighestTarget(machine, bus);
    auto const parallel = ParallelScsiOf(bus);
    if (!parallel) return;
    block.scsiFeatureFlags = parallel->features;
    block.scsiHBAInquiry = parallel->inquiry;
    block.scsiInitiatorID = parallel->ownId;
    block.scsiMaxTarget = parallel->highestId;
}

// The bus that a request is for, and the machine that it is one of.
OSErr FindBus(SCSI_PB const& request, ScsiMachine& machine, ScsiBus& bus) {
    if (int const error = FindScsi(machine); error != 0) return ErrorOfErrno(error);
    if (request.scsiDevice.bus >= machine.buses.size()) return scsiBusInvalid;
    bus = machine.buses[request.scsiDevice.bus];
    return noErr;
}

OSErr InquireBus(SCSI_PB& request) {
    if (request.scsiPBLength != sizeof(SCSIBusInquiryPB)) return scsiPBLengthError;
    ScsiMachine machine;
    ScsiBus bus;
    if (OSErr const error = FindBus(request, machine, bus); error != noErr) return error;
    auto& block = reinterpret_cast<SCSIBusInquiryPB&>(request);
    std::memset(reinterpret_cast<char*>(&block) + sizeof(SCSI_PB), 0, sizeof block - sizeof(SCSI_PB));
    DescribeInterface(block);
    DescribeBus(machine, bus, block);
    return noErr;
}

// ---- A command

// Whether it is an INQUIRY of the device's own data, into a buffer.
bool IsInquiry(SCSIExecIOPB const& block) {
    UInt8 const* const command = block.scsiCDB;
    bool const asksForData = command[0] == 0x12 && command[1] == 0 && command[2] == 0;
    return block.scsiCDBLength == 6 && asksForData && (block.scsiFlags & ~kFlags) == 0 &&
           (block.scsiFlags & scsiDirectionMask) == scsiDirectionIn && block.scsiCompletion == nullptr &&
           block.scsiDataType == scsiDataBuffer &&
           (block.scsiDataPtr != nullptr || block.scsiDataLength == 0);
}

std::chrono::milliseconds TimeoutOf(SCSIExecIOPB const& block) {
    using namespace std::chrono;
    if (block.scsiTimeout == 0) return seconds(5);
    if (block.scsiTimeout > 0) return milliseconds(block.scsiTimeout);
    return ceil<milliseconds>(-microseconds(block.scsiTimeout));
}

// Gives as much of the data as the command allows and the buffer holds.
void Transfer(std::string_view data, SCSIExecIOPB& block) {
    std::size_t const allowed = std::size_t{block.scsiCDB[3]} << 8 | block.scsiCDB[4];
    std::size_t const count =
        std::min({data.size(), allowed, static_cast<std::size_t>(block.scsiDataLength)});
    if (count != 0) std::memcpy(block.scsiDataPtr, data.data(), count);
    block.scsiDataResidual = static_cast<SInt32>(block.scsiDataLength - count);
}

OSErr Execute(SCSI_PB& request) {
    if (request.scsiPBLength != sizeof(SCSIExecIOPB)) return scsiPBLengthError;
    auto& block = reinterpret_cast<SCSIExecIOPB&>(request);
    if (!IsInquiry(block)) return scsiRequestInvalid;
    ScsiMachine machine;
    ScsiUnit unit;
    if (OSErr const error = FindBus(request, machine, unit.bus); error != noErr) return error;
    if (request.scsiDevice.LUN != 0) return scsiLUNInvalid;
    unit.target = request.scsiDevice.targetID;
    block.scsiSCSIstatus = 0;
    block.scsiDataResidual = static_cast<SInt32>(block.scsiDataLength);
    if (!std::ranges::binary_search(machine.units, unit)) return scsiSelectTimeout;
    InquiryAnswer const answer = Inquire(unit, TimeoutOf(block));
    block.scsiSCSIstatus = answer.status;
    if (answer.result == noErr) Transfer(answer.data, block);
    return answer.result;
}

OSErr CarryOut(SCSI_PB& request) {
    if (!MayGoOn(0)) return userCanceledErr;
    switch (request.scsiFunctionCode) {
        case SCSIBusInquiry:
            return InquireBus(request);
        case SCSIExecIO:
            return Execute(request);
        default:
            return scsiFunctionNotAvailable;
    }
}

}  // namespace

OSErr SCSIAction(SCSI_PB* request) {
    if (request == nullptr) return paramErr;
    request->scsiResult = Guarded<OSErr>(memFullErr, [&] { return CarryOut(*request); });
    return request->scsiResult;
}
