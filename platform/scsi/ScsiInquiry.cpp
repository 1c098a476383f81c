#include "scsi/ScsiInquiry.h"

#include <Carbon/MacErrors.h>

#include <atomic>
#include <memory>

#include "files/Patience.h"
#include "foundation/Numbers.h"
#include "machine/Environment.h"
#include "machine/MachineFiles.h"

namespace Platform {
namespace {

constexpr std::size_t kShortest = 36;  // with vendor, product and revision

// A fact of the unit, without the line end but with blanks; empty where it cannot be read.
std::optional<std::string> FactOf(ScsiUnit const& unit, char const* name) {
    std::string text;
    if (ReadFact(FolderOf(unit) + name, text) != 0) return std::nullopt;
    return text.substr(0, text.find('\n'));
}

std::optional<unsigned char> TypeOf(ScsiUnit const& unit) {
    constexpr unsigned char highest = 0x1F;
    auto const type = NumberIn<unsigned char>(FactOf(unit, "type").value_or(""));
    return type && *type <= highest ? type : std::nullopt;
}

// Asks the unit on a thread of its own, as the kernel may try to reach it for long, and nobody can stop it.
// Empty where it cannot be asked, or is still busy with another question.
std::optional<InquiryAnswer> AskPatiently(ScsiUnit const& unit, std::chrono::milliseconds timeout) {
    struct Question {
        std::atomic<bool> isAsked = false;
        std::optional<InquiryAnswer> answer;
    };
    constexpr std::chrono::seconds forTheKernel{5};
    if (IsRecordedMachine()) return std::nullopt;
    auto const question = std::make_shared<Question>();
    OSErr const error = CallServer(Server::Scsi, timeout + forTheKernel, [=] {
        question->isAsked = true;
        question->answer = AskUnit(unit, timeout);
        return OSErr{noErr};
    });
    if (error == noErr) return question->answer;
    if (error == volOffLinErr && question->isAsked) return InquiryAnswer{scsiCommandTimeout, 0, {}};
    return error == userCanceledErr ? std::optional(InquiryAnswer{error, 0, {}}) : std::nullopt;
}

}  // namespace

std::string FolderOf(ScsiUnit const& unit) { return "sys/class/scsi_device/" + NameOf(unit) + "/device/"; }

std::optional<std::string> KeptInquiry(ScsiUnit const& unit) {
    std::string data;
    if (ReadFact(FolderOf(unit) + "inquiry", data, kMostOfInquiry) != 0 || data.empty()) return std::nullopt;
    return data;
}

std::optional<std::string> MadeInquiry(ScsiUnit const& unit) {
    struct {
        char const* name;
        std::size_t from, size;
    } constexpr texts[] = {{"vendor", 8, 8}, {"model", 16, 16}, {"rev", 32, 4}};
    auto const type = TypeOf(unit);
    if (!type) return std::nullopt;
    std::string data(kShortest, '\0');
    data[0] = static_cast<char>(*type);
    data[4] = kShortest - 5;
    for (auto const& text : texts) {
        auto fact = FactOf(unit, text.name);
        if (!fact) return std::nullopt;
        fact->resize(text.size, ' ');
        data.replace(text.from, text.size, *fact);
    }
    return data;
}

InquiryAnswer Inquire(ScsiUnit const& unit, std::chrono::milliseconds timeout) {
    if (auto const data = KeptInquiry(unit)) return {noErr, 0, *data};
    if (auto const answer = AskPatiently(unit, timeout)) return *answer;
    if (auto const data = MadeInquiry(unit)) return {noErr, 0, *data};
    return {scsiSelectTimeout, 0, {}};
}

}  // namespace Platform
