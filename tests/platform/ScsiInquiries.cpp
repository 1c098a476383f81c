// The devices of recorded machines, as the SCSI Manager asks them.

#include "scsi/ScsiInquiry.h"

#include <sys/stat.h>

#include <limits>

#include "ScsiVerbs.h"

using namespace std::string_literals;

namespace {

// A machine with one bus.
class OneBus : public RecordedScsi {
  public:
    OneBus() { AddHost(0); }
    // The facts that an answer can be made of.
    void AddFacts(std::string const& unit) const {
        SetFact(unit, "type", "5\n");
        SetFact(unit, "vendor", "ACME    \n");
        SetFact(unit, "model", "SILVER DISC     \n");
        SetFact(unit, "rev", "2.1 \n");
    }
};

}  // namespace

TEST(ScsiInquiries, AreWhatTheKernelKeeps) {
    OneBus const machine;
    for (std::size_t const length : {36u, 37u, 96u, 255u}) {
        machine.AddUnit("0:0:1:0", InquiryData(length));
        DeviceAnswer const answer = AskDevice(0, 1);
        EXPECT_EQ(noErr, answer.result);
        EXPECT_EQ(InquiryData(length), answer.data);
    }
}

TEST(ScsiInquiries, Are255BytesAtMost) {
    OneBus const machine;
    machine.AddUnit("0:0:1:0", InquiryData(255) + "and more");
    EXPECT_EQ(InquiryData(255), AskDevice(0, 1).data);
    char buffer[1000];
    SCSIExecIOPB request = DeviceRequest(0, 1, buffer, sizeof buffer);
    request.scsiCDB[3] = 1;  // more may come
    EXPECT_EQ(noErr, Act(request));
    EXPECT_EQ(1000 - 255, request.scsiDataResidual);
}

TEST(ScsiInquiries, ThatAreShortAreWhatTheyAre) {
    OneBus const machine;
    machine.AddUnit("0:0:1:0", "\5");
    EXPECT_EQ("\5", AskDevice(0, 1).data);
    EXPECT_EQ(noErr, AskDevice(0, 1).result);
}

TEST(ScsiInquiries, AreOfUnit0) {
    OneBus const machine;
    machine.AddUnit("0:0:1:1", InquiryData(36));
    EXPECT_EQ(scsiSelectTimeout, AskDevice(0, 1).result);
    machine.AddUnit("0:0:1:0", InquiryData(96));
    EXPECT_EQ(InquiryData(96), AskDevice(0, 1).data);
    char buffer[36];
    SCSIExecIOPB request = DeviceRequest(0, 1, buffer, sizeof buffer);
    request.scsiDevice.LUN = 1;
    EXPECT_EQ(scsiLUNInvalid, Act(request));
}

TEST(ScsiInquiries, OfTargetsThatAreMissing) {
    OneBus const machine;
    machine.AddUnit("0:0:1:0", InquiryData(36));
    for (UInt8 const target : {0, 2, 255}) EXPECT_EQ(scsiSelectTimeout, AskDevice(0, target).result);
    EXPECT_EQ(scsiBusInvalid, AskDevice(1, 1).result);
}

TEST(ScsiInquiries, OfTargetsUpTo255) {
    OneBus const machine;
    machine.AddUnit("0:0:255:0", InquiryData(36));
    machine.AddUnit("0:0:256:0", InquiryData(96));
    EXPECT_EQ(InquiryData(36), AskDevice(0, 255).data);
    EXPECT_EQ(scsiSelectTimeout, AskDevice(0, 0).result);
}

TEST(ScsiInquiries, AreMadeOfFactsWhereNoneIsKept) {
    OneBus const machine;
    machine.AddUnit("0:0:1:0");
    EXPECT_EQ(scsiSelectTimeout, AskDevice(0, 1).result);
    machine.AddFacts("0:0:1:0");
    EXPECT_EQ("\5\0\0\0\x1F\0\0\0ACME    SILVER DISC     2.1 "s, AskDevice(0, 1).data);
    machine.SetFact("0:0:1:0", "inquiry", "");
    EXPECT_EQ(36u, AskDevice(0, 1).data.size());
    machine.SetFact("0:0:1:0", "inquiry", InquiryData(96));
    EXPECT_EQ(InquiryData(96), AskDevice(0, 1).data);
}

TEST(ScsiInquiries, AreNotMadeOfFactsThatAreMissing) {
    for (char const* const fact : {"type", "vendor", "model", "rev"}) {
        OneBus const machine;
        machine.AddFacts("0:0:1:0");
        std::filesystem::remove(machine.Folder().Path(RecordedScsi::UnitFolder("0:0:1:0") + "/" + fact));
        EXPECT_EQ(scsiSelectTimeout, AskDevice(0, 1).result) << fact;
    }
}

TEST(ScsiInquiries, AreMadeOfTypesThatMakeSense) {
    OneBus const machine;
    machine.AddFacts("0:0:1:0");
    machine.SetFact("0:0:1:0", "type", "31\n");
    EXPECT_EQ('\x1F', AskDevice(0, 1).data[0]);
    for (char const* const type : {"32\n", "-1\n", "x\n", "", "5 \n", "256\n"}) {
        machine.SetFact("0:0:1:0", "type", type);
        EXPECT_EQ(scsiSelectTimeout, AskDevice(0, 1).result) << type;
    }
}

TEST(ScsiInquiries, AreMadeOfTextsOfAnyLength) {
    OneBus const machine;
    machine.AddFacts("0:0:1:0");
    machine.SetFact("0:0:1:0", "vendor", "A\n");
    machine.SetFact("0:0:1:0", "model", "0123456789ABCDEFG\n");
    machine.SetFact("0:0:1:0", "rev", "");
    EXPECT_EQ("A       0123456789ABCDEF    ", AskDevice(0, 1).data.substr(8));
}

TEST(ScsiInquiries, DoNotWaitForPipes) {
    OneBus const machine;
    machine.AddFacts("0:0:1:0");
    std::string const unit = RecordedScsi::UnitFolder("0:0:1:0");
    ASSERT_EQ(0, mkfifo(machine.Folder().Path(unit + "/inquiry").c_str(), 0600));
    EXPECT_EQ(36u, AskDevice(0, 1).data.size());
}

TEST(ScsiInquiries, OfRecordedMachinesAskNoDevice) {
    OneBus const machine;
    machine.AddUnit("0:0:1:0");
    machine.Write(RecordedScsi::UnitFolder("0:0:1:0") + "/scsi_generic", "sg0", "");
    EXPECT_FALSE(Platform::AskUnit({{0, 0}, 1, 0}, std::chrono::milliseconds(1)));
}

// Buffers

TEST(ScsiInquiries, AreNotWrittenBeyondTheBuffer) {
    OneBus const machine;
    machine.AddUnit("0:0:1:0", InquiryData(96));
    std::string buffer(100, '\xA5');
    SCSIExecIOPB request = DeviceRequest(0, 1, buffer.data(), 20);
    EXPECT_EQ(noErr, Act(request));
    EXPECT_EQ(0, request.scsiDataResidual);
    EXPECT_EQ(InquiryData(96).substr(0, 20) + std::string(80, '\xA5'), buffer);
}

TEST(ScsiInquiries, AreNoLongerThanTheCommandAllows) {
    OneBus const machine;
    machine.AddUnit("0:0:1:0", InquiryData(96));
    std::string buffer(100, '\xA5');
    SCSIExecIOPB request = DeviceRequest(0, 1, buffer.data(), 100);
    request.scsiCDB[4] = 8;
    EXPECT_EQ(noErr, Act(request));
    EXPECT_EQ(92, request.scsiDataResidual);
    EXPECT_EQ(InquiryData(96).substr(0, 8) + std::string(92, '\xA5'), buffer);
    request.scsiCDB[3] = 1;  // 256 and the 8 of above
    EXPECT_EQ(noErr, Act(request));
    EXPECT_EQ(4, request.scsiDataResidual);
}

TEST(ScsiInquiries, WithoutABufferAreInvalid) {
    OneBus const machine;
    machine.AddUnit("0:0:1:0", InquiryData(96));
    SCSIExecIOPB request = DeviceRequest(0, 1, nullptr, 1);
    EXPECT_EQ(scsiRequestInvalid, Act(request));
    request.scsiDataLength = 0;
    EXPECT_EQ(noErr, Act(request));
    EXPECT_EQ(0, request.scsiDataResidual);
}

TEST(ScsiInquiries, ThatFailHaveNoData) {
    OneBus const machine;
    std::string buffer(256, '\xA5');
    SCSIExecIOPB request = DeviceRequest(0, 1, buffer.data(), 256);
    EXPECT_EQ(scsiSelectTimeout, Act(request));
    EXPECT_EQ(256, request.scsiDataResidual);
    EXPECT_EQ(std::string(256, '\xA5'), buffer);
}

// Requests

TEST(ScsiRequests, HaveTheLengthOfTheirBlock) {
    OneBus const machine;
    machine.AddUnit("0:0:1:0", InquiryData(36));
    EXPECT_EQ(paramErr, SCSIAction(nullptr));
    SCSIBusInquiryPB bus = BusRequest(0);
    char buffer[36];
    SCSIExecIOPB device = DeviceRequest(0, 1, buffer, sizeof buffer);
    for (int const difference : {-1, 1, 0}) {
        bus.scsiPBLength = static_cast<UInt16>(static_cast<int>(sizeof bus) + difference);
        device.scsiPBLength = static_cast<UInt16>(static_cast<int>(sizeof device) + difference);
        OSErr const result = difference == 0 ? OSErr{noErr} : OSErr{scsiPBLengthError};
        EXPECT_EQ(result, Act(bus)) << difference;
        EXPECT_EQ(result, Act(device)) << difference;
    }
}

TEST(ScsiRequests, HaveOneOfTwoFunctions) {
    OneBus const machine;
    SCSIBusInquiryPB bus = BusRequest(0);
    for (int function = 0; function < 256; ++function) {
        if (function == SCSIExecIO || function == SCSIBusInquiry) continue;
        bus.scsiFunctionCode = static_cast<UInt8>(function);
        EXPECT_EQ(scsiFunctionNotAvailable, Act(bus)) << function;
    }
}

TEST(ScsiRequests, AskForInquiriesOnly) {
    OneBus const machine;
    machine.AddUnit("0:0:1:0", InquiryData(36));
    char buffer[36];
    SCSIExecIOPB const good = DeviceRequest(0, 1, buffer, sizeof buffer);
    auto const isInvalid = [&](auto const& spoil) {
        SCSIExecIOPB request = good;
        spoil(request);
        return Act(request) == scsiRequestInvalid;
    };
    EXPECT_FALSE(isInvalid([](auto&) {}));
    for (int command = 0; command < 256; ++command)
        EXPECT_EQ(command != 0x12,
                  isInvalid([&](auto& request) { request.scsiCDB[0] = static_cast<UInt8>(command); }));
    EXPECT_TRUE(isInvalid([](auto& request) { request.scsiCDB[1] = 1; }));     // a page of product data
    EXPECT_TRUE(isInvalid([](auto& request) { request.scsiCDB[2] = 0x80; }));  // which one
    EXPECT_TRUE(isInvalid([](auto& request) { request.scsiCDBLength = 10; }));
    EXPECT_TRUE(isInvalid([](auto& request) { request.scsiDataType = 1; }));
    EXPECT_TRUE(isInvalid([](auto& request) { request.scsiCompletion = [](void*) {}; }));
}

TEST(ScsiRequests, HaveDataThatComesIn) {
    OneBus const machine;
    machine.AddUnit("0:0:1:0", InquiryData(36));
    char buffer[36];
    SCSIExecIOPB request = DeviceRequest(0, 1, buffer, sizeof buffer);
    for (UInt32 const flags :
         {0u, 0x80000000u, 0xC0000000u, 0x41000000u, 0x40000001u, 0x60040000u | 0x2000u}) {
        request.scsiFlags = flags;
        EXPECT_EQ(scsiRequestInvalid, Act(request)) << flags;
    }
    for (UInt32 const flags : {0x40000000u, 0x60000000u, 0x40040000u, 0x60040000u}) {
        request.scsiFlags = flags;
        EXPECT_EQ(noErr, Act(request)) << flags;
    }
}

TEST(ScsiRequests, HaveAnyTimeout) {
    OneBus const machine;
    machine.AddUnit("0:0:1:0", InquiryData(36));
    char buffer[36];
    SCSIExecIOPB request = DeviceRequest(0, 1, buffer, sizeof buffer);
    for (SInt32 const timeout :
         {0, 1, -1, std::numeric_limits<SInt32>::max(), std::numeric_limits<SInt32>::min()}) {
        request.scsiTimeout = timeout;
        EXPECT_EQ(noErr, Act(request)) << timeout;
    }
}
