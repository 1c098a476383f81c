// SCSI devices as a kernel shows them, and those that answer for themselves.

#include <Platform/Items.h>

#include "ScsiVerbs.h"

#include <linux/bsg.h>
#include <scsi/sg.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "EmulatedDevices.h"
#include "command/Running.h"

using namespace std::chrono_literals;
using namespace std::string_literals;

namespace {

// Of a host that no kernel has: what is missing in the emulated /dev is looked for in the real one.
constexpr char kHost[] = "/devices/pci0000:00/0000:00:17.0/host4000000000";
std::string const kUnit = "4000000000:0:1:0";

std::string Host() {
    return "P: "s + kHost + "/scsi_host/host4000000000\nE: SUBSYSTEM=scsi_host\nA: proc_name=ahci\\n\n\n";
}

// A unit with the facts that every kernel shows, and others.
std::string Unit(std::string const& name, std::string const& facts = {}) {
    std::string const unit = kHost + "/target4000000000:0:1/"s + name;
    return "P: " + unit +
           "\nE: SUBSYSTEM=scsi\nE: DEVTYPE=scsi_device\nA: type=1\\n\nA: vendor=ACME    \\n\n"
           "A: model=REEL            \\n\nA: rev=1.0 \\n\n" +
           facts + "\nP: " + unit + "/scsi_device/" + name +
           "\nE: SUBSYSTEM=scsi_device\nL: device=../../../" + name + "\n\n";
}

// The file of a unit in /dev, of the usual driver.
std::string Generic(std::string const& unit) {
    return "P: "s + kHost + "/target4000000000:0:1/" + unit +
           "/scsi_generic/sg0\nN: sg0=00\nE: SUBSYSTEM=scsi_generic\nE: DEVNAME=/dev/sg0\n\n";
}

// That of the driver of all kinds of blocks.
std::string BlockGeneric(std::string const& unit) {
    return "P: "s + kHost + "/target4000000000:0:1/" + unit + "/bsg/" + unit + "\nN: bsg/" + unit +
           "=00\nE: SUBSYSTEM=bsg\nE: DEVNAME=/dev/bsg/" + unit + "\n\n";
}

std::string Hex(std::string const& bytes) {
    std::string text;
    for (unsigned char const byte : bytes) {
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 15];
    }
    return text;
}

std::string const kMade = "\1\0\0\0\x1F\0\0\0ACME    REEL            1.0 "s;

// A tape drive behind a file of its own, and what it was asked.
class Tape {
  public:
    explicit Tape(EmulatedDevices& devices) : emulated(devices) {}

    // Through either file.
    void AnswerGeneric() {
        emulated.Answer("/dev/sg0", [this](auto request, auto& argument) {
            return Take<sg_io_hdr>(request, argument,
                                   [this](auto& header, auto& data) { Generic(header, data); });
        });
    }
    void AnswerBlockGeneric() {
        emulated.Answer("/dev/bsg/" + kUnit, [this](auto request, auto& argument) {
            return Take<sg_io_v4>(request, argument,
                                  [this](auto& header, auto& data) { Block(header, data); });
        });
    }

    std::string data = InquiryData(96);
    unsigned host = 0, driver = 0, status = 0;  // what comes of a command
    int residual = 255 - 96;
    std::atomic<int> error = 0;  // of the call
    std::atomic<int> interruptions = 0;
    std::atomic<bool> isSilent = false;  // it answers when it is silent no more

    std::atomic<int> asked = 0;
    std::string command;  // the last one
    unsigned timeout = 0, room = 0;

  private:
    template <class Header, class Function>
    int Take(unsigned long request, UMockdevIoctlData& argument, Function const& answer) {
        ++asked;
        for (int waits = 0; isSilent && waits < 3000; ++waits) std::this_thread::sleep_for(10ms);
        if (interruptions > 0) return --interruptions, EINTR;
        if (error != 0) return error;
        if (request != SG_IO) return ENOTTY;
        auto const header = Pointed(argument, 0, sizeof(Header));
        answer(*reinterpret_cast<Header*>(header->data), *header);
        return 0;
    }
    void Generic(sg_io_hdr& header, UMockdevIoctlData& memory) {
        EXPECT_EQ('S', header.interface_id);
        EXPECT_EQ(SG_DXFER_FROM_DEV, header.dxfer_direction);
        auto const cdb = Pointed(memory, offsetof(sg_io_hdr, cmdp), header.cmd_len);
        auto const buffer = Pointed(memory, offsetof(sg_io_hdr, dxferp), header.dxfer_len);
        Note(*cdb, header.timeout, header.dxfer_len);
        std::memcpy(buffer->data, data.data(), data.size());
        header.host_status = static_cast<unsigned short>(host);
        header.driver_status = static_cast<unsigned short>(driver);
        header.status = static_cast<unsigned char>(status);
        header.resid = residual;
    }
    void Block(sg_io_v4& header, UMockdevIoctlData& memory) {
        EXPECT_EQ('Q', header.guard);
        EXPECT_EQ(0u, header.protocol);
        EXPECT_EQ(0u, header.subprotocol);
        EXPECT_EQ(0u, header.dout_xfer_len);
        auto const cdb = Pointed(memory, offsetof(sg_io_v4, request), header.request_len);
        auto const buffer = Pointed(memory, offsetof(sg_io_v4, din_xferp), header.din_xfer_len);
        Note(*cdb, header.timeout, header.din_xfer_len);
        std::memcpy(buffer->data, data.data(), data.size());
        header.transport_status = host;
        header.driver_status = driver;
        header.device_status = status;
        header.din_resid = residual;
    }
    void Note(UMockdevIoctlData const& cdb, unsigned milliseconds, unsigned size) {
        command.assign(reinterpret_cast<char const*>(cdb.data), static_cast<std::size_t>(cdb.data_len));
        timeout = milliseconds;
        room = size;
    }

    EmulatedDevices& emulated;
};

std::string const kInquiry = "\x12\0\0\0\xFF\0"s;

// A machine with a tape drive, target 1 of its bus, that answers for itself.
class ScsiTape : public testing::Test {
  protected:
    ScsiTape() {
        devices.Add(Host() + Unit(kUnit) + Generic(kUnit));
        tape.AnswerGeneric();
    }
    EmulatedDevices devices;
    Tape tape{devices};
};

}  // namespace

TEST(ScsiDevices, ThatAKernelShowsAreAsked) {
    EmulatedDevices devices;
    devices.Add(Host() + Unit(kUnit, "H: inquiry=" + Hex(InquiryData(96)) + "\n") + Generic(kUnit));
    Tape tape(devices);
    tape.AnswerGeneric();
    EXPECT_EQ("ahci            ",
              std::string(reinterpret_cast<char const*>(DescribeBus(0).scsiSIMVendor), 16));
    EXPECT_EQ(InquiryData(96), AskDevice(0, 1).data);
    EXPECT_EQ("VENDOR  \n", RunZelq({"vendors of scsidevices"}).out);
    EXPECT_EQ(0, tape.asked) << "the kernel has kept the answer";
}

TEST(ScsiDevices, WithoutAFileAreTheirFacts) {
    EmulatedDevices devices;
    devices.Add(Host() + Unit(kUnit));
    EXPECT_EQ(kMade, AskDevice(0, 1).data);
    EXPECT_EQ("ACME    , TAPE, REEL            , 1.0 \n",
              RunZelq({"(vendor of it, type of it, product of it, revision of it) of scsidevice 1"}).out);
}

TEST(ScsiDevices, OfAMachineWithoutScsiAreNone) {
    EmulatedDevices const devices;
    EXPECT_EQ(scsiBusInvalid, AskDevice(0, 1).result);
    EXPECT_EQ("", RunZelq({"scsidevices"}).out);
}

TEST_F(ScsiTape, IsAskedForItsData) {
    DeviceAnswer const answer = AskDevice(0, 1);
    EXPECT_EQ(noErr, answer.result);
    EXPECT_EQ(InquiryData(96), answer.data);
    EXPECT_EQ(1, tape.asked);
    EXPECT_EQ(kInquiry, tape.command);
    EXPECT_EQ(600u, tape.timeout);
    EXPECT_EQ(255u, tape.room);
}

TEST_F(ScsiTape, IsAskedByQueries) {
    EXPECT_EQ("VENDOR  \n", RunZelq({"vendors of scsidevices"}).out);
    EXPECT_EQ(1, tape.asked);
    EXPECT_EQ(kInquiry, tape.command);
    EXPECT_EQ(600u, tape.timeout);
}

TEST_F(ScsiTape, AnswersWithAnyNumberOfBytes) {
    for (int const length : {0, 5, 36, 255}) {
        tape.residual = 255 - length;
        tape.data = InquiryData(255);
        EXPECT_EQ(InquiryData(255).substr(0, static_cast<std::size_t>(length)), AskDevice(0, 1).data)
            << length;
    }
    tape.residual = 1000;
    EXPECT_EQ("", AskDevice(0, 1).data);
    tape.residual = -1;
    EXPECT_EQ(InquiryData(255), AskDevice(0, 1).data);
}

TEST_F(ScsiTape, HasTheTimeOfTheRequest) {
    char buffer[36];
    SCSIExecIOPB request = DeviceRequest(0, 1, buffer, sizeof buffer);
    for (auto const& [timeout, milliseconds] : {std::pair(1, 1u), {-1, 1u}, {-1500, 2u}, {0, 5000u}}) {
        request.scsiTimeout = timeout;
        EXPECT_EQ(noErr, Act(request));
        EXPECT_EQ(milliseconds, tape.timeout) << timeout;
    }
}

TEST_F(ScsiTape, FailsAsTheTransportDoes) {
    for (auto const& [host, result] : {std::pair(1u, -7926), {3u, -7925}, {2u, -7934}, {7u, -7934}}) {
        tape.host = host;
        DeviceAnswer const answer = AskDevice(0, 1);
        EXPECT_EQ(result, answer.result) << host;
        EXPECT_EQ("", answer.data);
    }
    EXPECT_EQ("", RunZelq({"scsidevices"}).out);
    tape.host = 0;
    tape.driver = 6;
    EXPECT_EQ(scsiRequestAborted, AskDevice(0, 1).result);
    tape.driver = 8;
    EXPECT_EQ(noErr, AskDevice(0, 1).result);
}

TEST_F(ScsiTape, MayRefuse) {
    tape.status = 2;
    tape.driver = 8;
    DeviceAnswer const answer = AskDevice(0, 1);
    EXPECT_EQ(scsiNonZeroStatus, answer.result);
    EXPECT_EQ(2, answer.status);
    EXPECT_EQ("", answer.data);
}

TEST_F(ScsiTape, ThatMayNotBeAskedIsItsFacts) {
    for (int const error : {EPERM, ENOTTY, EINVAL, ENODEV}) {
        tape.error = error;
        EXPECT_EQ(kMade, AskDevice(0, 1).data) << error;
    }
}

TEST_F(ScsiTape, IsAskedAgainAfterAnInterruption) {
    tape.interruptions = 2;
    EXPECT_EQ(InquiryData(96), AskDevice(0, 1).data);
    EXPECT_EQ(3, tape.asked);
}

TEST_F(ScsiTape, ThatIsSilentIsWaitedForAsLongAsTheHostWants) {
    static std::atomic<int>& asked = tape.asked;
    tape.isSilent = true;
    PlatformSetCheckIn([](UInt32) -> Boolean { return asked == 0; });
    EXPECT_EQ(userCanceledErr, AskDevice(0, 1).result);
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ(kMade, AskDevice(0, 1).data) << "while it is busy its facts have to do";
    EXPECT_EQ(1, tape.asked);
    tape.isSilent = false;
    std::string data = kMade;
    while (data == kMade) data = AskDevice(0, 1).data;
    EXPECT_EQ(InquiryData(96), data);
}

TEST_F(ScsiTape, ThatIsSilentIsNotThereWhenItsTimeIsOver) {
    tape.isSilent = true;
    EXPECT_EQ(scsiCommandTimeout, AskDevice(0, 1).result);
    tape.isSilent = false;
    while (AskDevice(0, 1).data == kMade) continue;
}

TEST(ScsiDevices, OfTheOtherDriverAreAsked) {
    EmulatedDevices devices;
    devices.Add(Host() + Unit(kUnit) + BlockGeneric(kUnit));
    Tape tape(devices);
    tape.AnswerBlockGeneric();
    EXPECT_EQ(InquiryData(96), AskDevice(0, 1).data);
    EXPECT_EQ(kInquiry, tape.command);
    EXPECT_EQ(600u, tape.timeout);
    EXPECT_EQ(255u, tape.room);
    EXPECT_EQ("VENDOR  \n", RunZelq({"vendors of scsidevices"}).out);
    tape.host = 1;
    EXPECT_EQ(scsiSelectTimeout, AskDevice(0, 1).result);
    tape.host = 0;
    tape.status = 2;
    EXPECT_EQ(scsiNonZeroStatus, AskDevice(0, 1).result);
}
