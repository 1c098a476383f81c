#pragma once

// SCSI buses and devices of tests: recorded ones, and what the call says of them.

#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/TemporaryFolder.h"
#include "support/Variable.h"

/// A machine with SCSI of the test's making, as long as one lives.
class RecordedScsi {
  public:
    void AddHost(int host, std::string const& driver = "driver") const {
        Write("sys/class/scsi_host/host" + std::to_string(host), "proc_name", driver + "\n");
    }
    /// A unit, such as "0:0:1:0", that has nothing yet.
    void AddUnit(std::string const& name) const { folder.MakeFolder(UnitFolder(name)); }
    /// A unit with an answer that is kept.
    void AddUnit(std::string const& name, std::string const& inquiry) const {
        Write(UnitFolder(name), "inquiry", inquiry);
    }
    void SetFact(std::string const& unit, std::string const& name, std::string const& text) const {
        Write(UnitFolder(unit), name, text);
    }
    void Write(std::string const& place, std::string const& name, std::string const& text) const {
        folder.MakeFolder(place);
        folder.Write(place + "/" + name, text);
    }
    static std::string UnitFolder(std::string const& name) {
        return "sys/class/scsi_device/" + name + "/device";
    }
    TemporaryFolder const& Folder() const { return folder; }

  private:
    TemporaryFolder const folder;
    Variable const root{"ZELQ_MACHINE_ROOT", folder.Path()};
};

/// An inquiry of a bus.
inline SCSIBusInquiryPB BusRequest(UInt8 bus) {
    SCSIBusInquiryPB request{};
    request.scsiPBLength = sizeof request;
    request.scsiFunctionCode = SCSIBusInquiry;
    request.scsiDevice.bus = bus;
    return request;
}

/// An inquiry of a device, into a buffer.
inline SCSIExecIOPB DeviceRequest(UInt8 bus, UInt8 target, void* buffer, UInt32 size) {
    SCSIExecIOPB request{};
    request.scsiPBLength = sizeof request;
    request.scsiFunctionCode = SCSIExecIO;
    request.scsiDevice = {0, bus, target, 0};
    request.scsiFlags = scsiDirectionIn | scsiDisableAutosense | scsiSIMQNoFreeze;
    request.scsiDataPtr = static_cast<UInt8*>(buffer);
    request.scsiDataLength = size;
    request.scsiCDBLength = 6;
    request.scsiCDB[0] = 0x12;
    request.scsiCDB[4] = 255;
    request.scsiTimeout = 600;
    return request;
}

template <class Request>
OSErr Act(Request& request) {
    OSErr const result = SCSIAction(reinterpret_cast<SCSI_PB*>(&request));
    EXPECT_EQ(result, request.scsiResult);
    return result;
}

/// What is known of a bus.
inline SCSIBusInquiryPB DescribeBus(UInt8 bus) {
    SCSIBusInquiryPB request = BusRequest(bus);
    EXPECT_EQ(noErr, Act(request)) << int{bus};
    return request;
}

/// What came of an inquiry of a device, and what was written to a buffer of its own.
struct DeviceAnswer {
    OSErr result = noErr;
    std::string data;  // without the residual
    UInt8 status = 0;
};
inline DeviceAnswer AskDevice(UInt8 bus, UInt8 target) {
    std::string buffer(256, '\xA5');
    SCSIExecIOPB request = DeviceRequest(bus, target, buffer.data(), 256);
    DeviceAnswer answer;
    answer.result = Act(request);
    std::size_t const length = 256 - static_cast<std::size_t>(request.scsiDataResidual);
    EXPECT_EQ(std::string(256 - length, '\xA5'), buffer.substr(length)) << "written beyond the data";
    answer.data = buffer.substr(0, length);
    answer.status = request.scsiSCSIstatus;
    return answer;
}

/// The data of devices of tests: as long as is wanted, with vendor, product and revision.
inline std::string InquiryData(std::size_t length,
                               std::string const& texts = "VENDOR  PRODUCT         0001") {
    std::string data(length, '\0');
    data[4] = static_cast<char>(length - 5);
    data.replace(8, texts.size(), texts);
    return data;
}
