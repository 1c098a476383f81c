#include "scsi/ParallelScsi.h"

#include <Carbon/SCSI.h>

#include <charconv>
#include <string>
#include <vector>

#include "foundation/Numbers.h"
#include "machine/MachineFiles.h"

namespace Platform {
namespace {

constexpr std::string_view kTargets = "sys/class/spi_transport/";

// The names of the bus's targets: targetHOST:CHANNEL:ID.
std::vector<std::string> TargetsOf(ScsiBus const& bus) {
    std::vector<std::string> names;
    ListFacts(kTargets, names);
    std::string const prefix = "target" + std::to_string(bus.host) + ":" + std::to_string(bus.channel) + ":";
    std::erase_if(names, [&](auto& name) { return !name.starts_with(prefix); });
    return names;
}

void AddTarget(std::string const& name, ParallelScsi& found) {
    std::string const folder = std::string(kTargets) + name + "/";
    std::string const offset = FactLine(folder + "offset");
    bool const isAsynchronous = offset == "0";  // the period means nothing then
    if (FactLine(folder + "width") == "1") found.inquiry |= scsiBusWide16;
    if (!isAsynchronous) found.features |= FeaturesOfPeriod(FactLine(folder + "period"));
    if (!isAsynchronous && !offset.empty()) found.inquiry |= scsiBusSDTR;
}

}  // namespace

std::uint32_t FeaturesOfSignalling(std::string_view signalling) {
    if (signalling == "LVD") return scsiBusLVD;
    if (signalling == "HVD") return scsiBusDifferential;
    return 0;
}

std::uint32_t FeaturesOfPeriod(std::string_view period) {
    double nanoseconds = 0;
    char const* const end = period.data() + period.size();
    auto const [rest, error] = std::from_chars(period.data(), end, nanoseconds, std::chars_format::fixed);
    if (error != std::errc() || rest != end || !(nanoseconds > 0)) return 0;
    std::uint32_t features = 0;
    if (nanoseconds <= 100) features |= scsiBusFastSCSI;
    if (nanoseconds <= 50) features |= scsiBusUltraSCSI;
    if (nanoseconds <= 25) features |= scsiBusUltra2SCSI;
    if (nanoseconds <= 12.5) features |= scsiBusUltra3SCSI;
    if (nanoseconds <= 6.25) features |= scsiBusUltra320SCSI;
    return features;
}

std::optional<ParallelScsi> ParallelScsiOf(ScsiBus const& bus) {
    std::string const host = "sys/class/spi_host/host" + std::to_string(bus.host);
    std::vector<std::string> facts;
    if (ListFacts(host, facts) != 0) return std::nullopt;
    ParallelScsi found;
    found.features = FeaturesOfSignalling(FactLine(host + "/signalling"));
    found.ownId = NumberIn<std::uint8_t>(FactLine(host + "/hba_id")).value_or(0);
    if (FactLine(host + "/host_width") == "wide") {
        found.highestId = 15;
        found.inquiry |= scsiBusWide16;
    }
    for (std::string const& target : TargetsOf(bus)) AddTarget(target, found);
    return found;
}

}  // namespace Platform
