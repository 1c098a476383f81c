#include "scsi/ScsiInquiry.h"

#include <Carbon/MacErrors.h>

#include <charconv>

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
    std::string const text = FactOf(unit, "type").value_or("");
    unsigned char type = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), type);
    if (error != std::errc() || end != text.data() + text.size() || type > highest) return std::nullopt;
    return type;
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
    if (auto const answer = AskUnit(unit, timeout)) return *answer;
    if (auto const data = MadeInquiry(unit)) return {noErr, 0, *data};
    return {scsiSelectTimeout, 0, {}};
}

}  // namespace Platform
