// Any bytes as each of the kernel's facts of a SCSI device and its host, and as the name of a device.

#include <Carbon/SCSI.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string_view>

#include "Invariants.h"
#include "Machine.h"

namespace {

// Adds a device with a name, and returns its folder; nothing where no folder can have the name.
std::filesystem::path AddDevice(Fuzz::Machine const& machine, std::string_view name) {
    std::error_code error;
    bool const isName = !name.empty() && name.find_first_of(std::string_view("/\0", 2)) == name.npos;
    auto const path = machine.Root() / "sys/class/scsi_device" / name;
    return isName && std::filesystem::create_directory(path, error) ? path : std::filesystem::path();
}

void InquireBus() {
    SCSIBusInquiryPB request{};
    request.scsiPBLength = sizeof request;
    request.scsiFunctionCode = SCSIBusInquiry;
    Fuzz::Hold(SCSIAction(reinterpret_cast<SCSI_PB*>(&request)) == noErr, "the bus is there");
    Fuzz::Hold(request.scsiMaxTarget == 7 || request.scsiMaxTarget == 15, "parallel SCSI has 8 or 16 ids");
}

void InquireDevice(UInt8 target) {
    unsigned char data[256];
    std::memset(data, 0xA5, sizeof data);
    SCSIExecIOPB request{};
    request.scsiPBLength = sizeof request;
    request.scsiFunctionCode = SCSIExecIO;
    request.scsiDevice = {0, 0, target, 0};
    request.scsiFlags = scsiDirectionIn;
    request.scsiDataPtr = data;
    request.scsiDataLength = sizeof data;
    request.scsiCDBLength = 6;
    request.scsiCDB[0] = 0x12;
    request.scsiCDB[4] = 255;
    OSErr const error = SCSIAction(reinterpret_cast<SCSI_PB*>(&request));
    Fuzz::Hold(error == noErr || error == scsiSelectTimeout, "a device is there or not");
    Fuzz::Hold(request.scsiDataResidual > 0 && request.scsiDataResidual <= 256, "at most 255 bytes come");
    Fuzz::Hold(std::all_of(data + 256 - request.scsiDataResidual, data + 256,
                           [](unsigned char byte) { return byte == 0xA5; }),
               "nothing is written behind the data");
    Fuzz::Hold(error == noErr || request.scsiDataResidual == 256, "a failure has no data");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static Fuzz::Machine const machine({
        "sys/class/scsi_host/host0/proc_name",
        "sys/class/spi_host/host0/signalling",
        "sys/class/spi_host/host0/hba_id",
        "sys/class/spi_host/host0/host_width",
        "sys/class/spi_transport/target0:0:1/period",
        "sys/class/spi_transport/target0:0:1/offset",
        "sys/class/spi_transport/target0:0:1/width",
        "sys/class/scsi_device/0:0:1:0/device/inquiry",
        "sys/class/scsi_device/0:0:2:0/device/type",
        "sys/class/scsi_device/0:0:2:0/device/vendor",
        "sys/class/scsi_device/0:0:2:0/device/model",
        "sys/class/scsi_device/0:0:2:0/device/rev",
    });
    std::string_view const text = Fuzz::AsQuery(data, size);
    machine.Say(text);
    auto const added = AddDevice(machine, text.substr(0, text.find('\n')));
    InquireBus();
    for (UInt8 const target : {0, 1, 2}) InquireDevice(target);
    if (!added.empty()) std::filesystem::remove(added);
    return 0;
}
