// The buses of recorded machines, as the SCSI Manager numbers and describes them.

#include "scsi/ScsiBuses.h"

#include <Platform/Items.h>

#include <cstring>

#include "ScsiVerbs.h"
#include "scsi/ParallelScsi.h"
#include "support/Unprivileged.h"

using namespace Platform;

namespace {

template <std::size_t size>
std::string Text(SInt8 const (&field)[size]) {
    return {reinterpret_cast<char const*>(field), size};
}

// The drivers of the buses, in order.
std::vector<std::string> Drivers() {
    std::vector<std::string> drivers;
    for (int bus = 0; bus < 256; ++bus) {
        SCSIBusInquiryPB request = BusRequest(static_cast<UInt8>(bus));
        OSErr const result = Act(request);
        if (result != noErr) {
            EXPECT_EQ(scsiBusInvalid, result);
            break;
        }
        std::string const driver = Text(request.scsiSIMVendor);
        drivers.push_back(driver.substr(0, driver.find_last_not_of(' ') + 1));
    }
    return drivers;
}

OSErr ResultOf(UInt8 bus) {
    SCSIBusInquiryPB request = BusRequest(bus);
    return Act(request);
}

using Names = std::vector<std::string>;

}  // namespace

TEST(ScsiNames, OfHosts) {
    EXPECT_EQ(0u, HostNamed("host0"));
    EXPECT_EQ(4294967295u, HostNamed("host4294967295"));
    for (char const* const name : {"", "host", "host-1", "host+1", "host01", "host1 ", "host1a", " host1",
                                   "Host1", "host4294967296", "hostess"})
        EXPECT_FALSE(HostNamed(name)) << name;
}

TEST(ScsiNames, OfUnits) {
    auto const unit = UnitNamed("10:2:300:18446744073709551615");
    ASSERT_TRUE(unit);
    EXPECT_EQ((ScsiBus{10, 2}), unit->bus);
    EXPECT_EQ(300u, unit->target);
    EXPECT_EQ(~0ull, unit->unit);
    EXPECT_EQ("10:2:300:18446744073709551615", NameOf(*unit));
    for (char const* const name : {"", "0", "0:0:0", "0:0:0:", ":0:0:0", "0:0:0:0:0", "0:0:0:0 ", "00:0:0:0",
                                   "0:-1:0:0", "0:0:4294967296:0", "a:0:0:0", "0.0.0.0"})
        EXPECT_FALSE(UnitNamed(name)) << name;
}

TEST(ScsiBuses, AreInTheOrderOfTheirHostsNumbers) {
    RecordedScsi const machine;
    for (int const host : {10, 2, 0, 1}) machine.AddHost(host, "h" + std::to_string(host));
    EXPECT_EQ((Names{"h0", "h1", "h2", "h10"}), Drivers());
}

TEST(ScsiBuses, AreTheChannelsOfHosts) {
    RecordedScsi const machine;
    machine.AddHost(3, "three");
    machine.AddHost(4, "four");
    machine.AddUnit("3:10:0:0", InquiryData(36, "third"));
    machine.AddUnit("3:2:0:0", InquiryData(36, "first"));
    machine.AddUnit("3:2:1:0", InquiryData(36, "second"));
    EXPECT_EQ((Names{"three", "three", "four"}), Drivers());
    EXPECT_EQ("first", AskDevice(0, 0).data.substr(8, 5));
    EXPECT_EQ("second", AskDevice(0, 1).data.substr(8, 6));
    EXPECT_EQ("third", AskDevice(1, 0).data.substr(8, 5));
}

TEST(ScsiBuses, OfAHostWithoutDevicesAreOne) {
    RecordedScsi const machine;
    machine.AddHost(5);
    EXPECT_EQ(Names{"driver"}, Drivers());
    EXPECT_EQ(scsiSelectTimeout, AskDevice(0, 0).result);
    EXPECT_EQ(0, DescribeBus(0).scsiMaxTarget);
}

TEST(ScsiBuses, HaveHosts) {
    RecordedScsi const machine;
    EXPECT_EQ(scsiBusInvalid, ResultOf(0));
    machine.AddUnit("0:0:0:0", InquiryData(36));  // its host is not there
    EXPECT_EQ(scsiBusInvalid, ResultOf(0));
    machine.Folder().MakeFolder("sys/class/scsi_host/nothost0");
    EXPECT_EQ(scsiBusInvalid, ResultOf(0));
    machine.AddHost(0);
    EXPECT_EQ(noErr, ResultOf(0));
    EXPECT_EQ(scsiBusInvalid, ResultOf(1));
    EXPECT_EQ(scsiBusInvalid, ResultOf(255));
}

TEST(ScsiBuses, AreNumberedAnew) {
    RecordedScsi const machine;
    machine.AddHost(1, "one");
    EXPECT_EQ(Names{"one"}, Drivers());
    machine.AddHost(0, "zero");
    EXPECT_EQ((Names{"zero", "one"}), Drivers());
    std::filesystem::remove_all(machine.Folder().Path("sys/class/scsi_host/host1"));
    EXPECT_EQ(Names{"zero"}, Drivers());
}

TEST(ScsiBuses, AreNumbered255AtMost) {
    RecordedScsi const machine;
    for (int host = 0; host < 300; ++host) machine.AddHost(host, "h" + std::to_string(host));
    EXPECT_EQ(256u, Drivers().size());
    EXPECT_EQ("h255", Drivers().back());
    EXPECT_EQ(255, DescribeBus(0).scsiHiBusID);
}

TEST(ScsiBuses, ThatMayNotBeListedAreAFailureThatIsNoted) {
    using std::filesystem::perms;
    RecordedScsi const machine;
    machine.AddHost(0);
    machine.AddUnit("0:0:1:0");
    std::filesystem::permissions(machine.Folder().Path(), perms(0755));
    {
        Unprivileged const nobody;
        EXPECT_EQ(noErr, ResultOf(0));
    }
    for (char const* const folder : {"sys/class/scsi_host", "sys/class/scsi_device"}) {
        std::string const path = machine.Folder().Path(folder);
        std::filesystem::permissions(path, perms::none);
        PlatformForgetFileFailure();
        {
            Unprivileged const nobody;
            EXPECT_EQ(afpAccessDenied, ResultOf(0)) << folder;
        }
        char noted[256];
        EXPECT_EQ(afpAccessDenied, PlatformFileFailure(noted, sizeof noted));
        EXPECT_EQ(path, noted);
        std::filesystem::permissions(path, perms(0755));
    }
}

TEST(ScsiBuses, AreNotAskedWhenTheHostSaysStop) {
    RecordedScsi const machine;
    machine.AddHost(0);
    machine.AddUnit("0:0:1:0", InquiryData(36));
    PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
    OSErr const bus = ResultOf(0), device = AskDevice(0, 1).result;
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ(userCanceledErr, bus);
    EXPECT_EQ(userCanceledErr, device);
}

TEST(ScsiBuses, AreDescribed) {
    RecordedScsi const machine;
    machine.AddHost(0, "ahci");
    machine.AddHost(7);
    machine.AddUnit("0:0:3:0");
    machine.AddUnit("0:0:1:0");
    machine.AddUnit("0:0:256:0");
    machine.AddUnit("7:0:5:0");
    SCSIBusInquiryPB const bus = DescribeBus(0);
    EXPECT_EQ(43, bus.scsiVersionNumber);
    EXPECT_EQ(1, bus.scsiHiBusID);
    EXPECT_EQ(3, bus.scsiMaxTarget);
    EXPECT_EQ(0, bus.scsiMaxLUN);
    EXPECT_EQ(sizeof(SCSIExecIOPB), bus.scsiIOpbSize);
    EXPECT_EQ(sizeof(SCSIExecIOPB), bus.scsiMaxIOpbSize);
    EXPECT_EQ(1, bus.scsiMaxTransferType);
    EXPECT_EQ(1u, bus.scsiDataTypes);
    EXPECT_EQ(0x60040000u, bus.scsiFlagsSupported);
    EXPECT_EQ(0u, bus.scsiFeatureFlags);
    EXPECT_EQ(0, bus.scsiHBAInquiry);
    EXPECT_EQ("ahci            ", Text(bus.scsiSIMVendor));
    for (auto const& text :
         {Text(bus.scsiHBAVendor), Text(bus.scsiControllerFamily), Text(bus.scsiControllerType)})
        EXPECT_EQ(std::string(16, ' '), text);
    EXPECT_EQ(5, DescribeBus(1).scsiMaxTarget);
}

TEST(ScsiBuses, HaveDriversOf16BytesAtMost) {
    RecordedScsi const machine;
    machine.AddHost(0, "a_driver_with_a_long_name");
    machine.AddHost(1, "");
    machine.Folder().MakeFolder("sys/class/scsi_host/host2");
    EXPECT_EQ("a_driver_with_a_", Text(DescribeBus(0).scsiSIMVendor));
    EXPECT_EQ(std::string(16, ' '), Text(DescribeBus(0).scsiHBAVendor));
    EXPECT_EQ(std::string(16, ' '), Text(DescribeBus(1).scsiSIMVendor));
    EXPECT_EQ(std::string(16, ' '), Text(DescribeBus(2).scsiSIMVendor));
}

TEST(ScsiBuses, AreDescribedFromAnEmptyBlock) {
    RecordedScsi const machine;
    machine.AddHost(0, "ahci");
    SCSIBusInquiryPB clean = BusRequest(0), used;
    std::memset(&used, 0xA5, sizeof used);
    std::memcpy(&used, &clean, sizeof(SCSI_PB));
    EXPECT_EQ(noErr, Act(clean));
    EXPECT_EQ(noErr, Act(used));
    EXPECT_EQ(0, std::memcmp(&clean, &used, sizeof clean));
}

TEST(ScsiBuses, ThatFailLeaveTheBlockAsItIs) {
    RecordedScsi const machine;
    SCSIBusInquiryPB request = BusRequest(0);
    std::memset(reinterpret_cast<char*>(&request) + sizeof(SCSI_PB), 0xA5, sizeof request - sizeof(SCSI_PB));
    SCSIBusInquiryPB before = request;
    EXPECT_EQ(scsiBusInvalid, Act(request));
    before.scsiResult = scsiBusInvalid;
    EXPECT_EQ(0, std::memcmp(&before, &request, sizeof before));
}

// Parallel SCSI

namespace {

// A machine with one parallel host.
class ParallelMachine : public RecordedScsi {
  public:
    ParallelMachine() {
        AddHost(0);
        SetHost("signalling", "SE");
    }
    void SetHost(std::string const& name, std::string const& text) const {
        Write("sys/class/spi_host/host0", name, text + "\n");
    }
    void SetTarget(std::string const& target, std::string const& name, std::string const& text) const {
        Write("sys/class/spi_transport/target" + target, name, text + "\n");
    }
};

}  // namespace

TEST(ParallelScsi, SignallingIsAFeature) {
    ParallelMachine const machine;
    for (auto const& [text, features] :
         {std::pair("LVD", 0x400u), {"HVD", 4u}, {"SE", 0u}, {"unknown", 0u}}) {
        machine.SetHost("signalling", text);
        EXPECT_EQ(features, DescribeBus(0).scsiFeatureFlags) << text;
    }
}

TEST(ParallelScsi, PeriodsNeedFeatures) {
    for (auto const& [text, features] : {std::pair("400", 0u),
                                         {"100.1", 0u},
                                         {"100", 2u},
                                         {"50", 0xAu},
                                         {"50.2", 2u},
                                         {"25", 0x10Au},
                                         {"12.5", 0x30Au},
                                         {"6.25", 0xB0Au},
                                         {"3.125", 0xB0Au},
                                         {"0", 0u},
                                         {"", 0u},
                                         {"reserved", 0u},
                                         {"-5", 0u},
                                         {"nan", 0u},
                                         {"inf", 0u},
                                         {"25x", 0u},
                                         {"25,5", 0u},
                                         {"0x19", 0u}})
        EXPECT_EQ(features, FeaturesOfPeriod(text)) << text;
}

TEST(ParallelScsi, IsAsFastAndWideAsItsTargets) {
    ParallelMachine const machine;
    machine.SetTarget("0:0:1", "period", "100");
    machine.SetTarget("0:0:1", "width", "0");
    EXPECT_EQ(2u, DescribeBus(0).scsiFeatureFlags);
    EXPECT_EQ(0, DescribeBus(0).scsiHBAInquiry);
    machine.SetTarget("0:0:2", "period", "25");
    machine.SetTarget("0:0:2", "offset", "31");
    machine.SetTarget("0:0:3", "width", "1");
    EXPECT_EQ(0x10Au, DescribeBus(0).scsiFeatureFlags);
    EXPECT_EQ(0x30, DescribeBus(0).scsiHBAInquiry);
}

TEST(ParallelScsi, IsNoFasterByAsynchronousTransfers) {
    ParallelMachine const machine;
    machine.SetTarget("0:0:1", "period", "25");
    machine.SetTarget("0:0:1", "offset", "0");
    EXPECT_EQ(0u, DescribeBus(0).scsiFeatureFlags);
    EXPECT_EQ(0, DescribeBus(0).scsiHBAInquiry);
}

TEST(ParallelScsi, IsAskedOfTheBusAlone) {
    ParallelMachine const machine;
    for (char const* const other : {"0:1:1", "1:0:1", "10:0:1", "0:0"}) {
        machine.SetTarget(other, "period", "25");
        machine.SetTarget(other, "width", "1");
    }
    EXPECT_EQ(0u, DescribeBus(0).scsiFeatureFlags);
    EXPECT_EQ(0, DescribeBus(0).scsiHBAInquiry);
}

TEST(ParallelScsi, KnowsItsIds) {
    ParallelMachine const machine;
    EXPECT_EQ(0, DescribeBus(0).scsiInitiatorID);
    EXPECT_EQ(7, DescribeBus(0).scsiMaxTarget);
    machine.SetHost("hba_id", "6");
    machine.SetHost("host_width", "wide");
    EXPECT_EQ(6, DescribeBus(0).scsiInitiatorID);
    EXPECT_EQ(15, DescribeBus(0).scsiMaxTarget);
    EXPECT_EQ(0x20, DescribeBus(0).scsiHBAInquiry);
    machine.SetHost("host_width", "narrow");
    EXPECT_EQ(7, DescribeBus(0).scsiMaxTarget);
    EXPECT_EQ(0, DescribeBus(0).scsiHBAInquiry);
    for (char const* const wrong : {"256", "-1", "x", "6x"}) {
        machine.SetHost("hba_id", wrong);
        EXPECT_EQ(0, DescribeBus(0).scsiInitiatorID) << wrong;
    }
}

TEST(ParallelScsi, OtherBusesAreNone) {
    RecordedScsi const machine;
    machine.AddHost(0);
    machine.Write("sys/class/spi_transport/target0:0:1", "width", "1\n");
    machine.Write("sys/class/spi_transport/target0:0:1", "period", "25\n");
    EXPECT_EQ(0u, DescribeBus(0).scsiFeatureFlags);
    EXPECT_EQ(0, DescribeBus(0).scsiHBAInquiry);
}
