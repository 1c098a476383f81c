// Asking a unit itself, through one of the kernel's files for commands: /dev/sgN, or /dev/bsg/H:C:T:L where
// there is no driver of the first kind.

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <linux/bsg.h>
#include <scsi/sg.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "files/Descriptor.h"
#include "machine/MachineFiles.h"
#include "scsi/ScsiInquiry.h"

namespace Platform {
namespace {

unsigned char const kInquiry[] = {0x12, 0, 0, 0, kMostOfInquiry, 0};

// What the kernel says of a command that it has carried out.
struct Outcome {
    unsigned host = 0;
    unsigned driver = 0;
    unsigned device = 0;
    std::int64_t residual = 0;
};

OSErr ResultOf(Outcome const& outcome) {
    constexpr unsigned noConnection = 1, timeOut = 3;  // of the host
    constexpr unsigned hasSense = 8;                   // of the driver; no failure of its own
    if (outcome.host == noConnection) return scsiSelectTimeout;
    if (outcome.host == timeOut) return scsiCommandTimeout;
    if (outcome.host != 0) return scsiRequestAborted;
    if (outcome.device != 0) return scsiNonZeroStatus;
    return (outcome.driver & ~hasSense) != 0 ? OSErr{scsiRequestAborted} : OSErr{noErr};
}

// The first part of the data is what was transferred.
InquiryAnswer AnswerOf(Outcome const& outcome, std::string data) {
    InquiryAnswer answer{ResultOf(outcome), static_cast<std::uint8_t>(outcome.device), {}};
    if (answer.result != noErr) return answer;
    auto const room = static_cast<std::int64_t>(data.size());
    data.resize(static_cast<std::size_t>(room - std::clamp<std::int64_t>(outcome.residual, 0, room)));
    answer.data = std::move(data);
    return answer;
}

bool CarryOut(int file, void* command) {
    int result;
    do {
        result = ioctl(file, SG_IO, command);
    } while (result < 0 && errno == EINTR);
    return result == 0;
}

std::optional<InquiryAnswer> AskGeneric(int file, std::chrono::milliseconds timeout) {
    std::string data(kMostOfInquiry, '\0');
    sg_io_hdr command{};
    command.interface_id = 'S';
    command.dxfer_direction = SG_DXFER_FROM_DEV;
    command.cmd_len = sizeof kInquiry;
    command.cmdp = const_cast<unsigned char*>(kInquiry);
    command.dxfer_len = static_cast<unsigned>(data.size());
    command.dxferp = data.data();
    command.timeout = static_cast<unsigned>(timeout.count());
    if (!CarryOut(file, &command)) return std::nullopt;
    return AnswerOf({command.host_status, command.driver_status, command.status, command.resid},
                    std::move(data));
}

std::optional<InquiryAnswer> AskBlockGeneric(int file, std::chrono::milliseconds timeout) {
    std::string data(kMostOfInquiry, '\0');
    sg_io_v4 command{};
    command.guard = 'Q';
    command.protocol = BSG_PROTOCOL_SCSI;
    command.subprotocol = BSG_SUB_PROTOCOL_SCSI_CMD;
    command.request_len = sizeof kInquiry;
    command.request = reinterpret_cast<std::uintptr_t>(kInquiry);
    command.din_xfer_len = static_cast<std::uint32_t>(data.size());
    command.din_xferp = reinterpret_cast<std::uintptr_t>(data.data());
    command.timeout = static_cast<std::uint32_t>(timeout.count());
    if (!CarryOut(file, &command)) return std::nullopt;
    return AnswerOf(
        {command.transport_status, command.driver_status, command.device_status, command.din_resid},
        std::move(data));
}

using Question = std::optional<InquiryAnswer> (*)(int file, std::chrono::milliseconds timeout);

std::optional<InquiryAnswer> AskThrough(std::string const& path, Question question,
                                        std::chrono::milliseconds timeout) {
    int const number = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (number < 0) return std::nullopt;
    Descriptor const file(number);
    return question(number, timeout);
}

}  // namespace

std::optional<InquiryAnswer> AskUnit(ScsiUnit const& unit, std::chrono::milliseconds timeout) {
    std::vector<std::string> generic;  // its one name, such as "sg0"
    ListFacts(FolderOf(unit) + "scsi_generic", generic);
    for (std::string const& name : generic) {
        if (auto const answer = AskThrough("/dev/" + name, AskGeneric, timeout)) return answer;
    }
    return AskThrough("/dev/bsg/" + NameOf(unit), AskBlockGeneric, timeout);
}

}  // namespace Platform
