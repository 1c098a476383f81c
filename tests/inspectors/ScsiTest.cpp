// SCSI buses and devices, against a program that stands in for the platform's SCSI Manager.

#include <Carbon/MacErrors.h>

#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "RegistrationLog.h"
#include "Slot.h"
#include "filesystem/Asking.h"
#include "modules/ScsiIterationModule.h"
#include "modules/ScsiModule.h"

using namespace std::string_literals;

namespace {

struct Device {
    std::string inquiry;
    OSErr result = noErr;
};

std::map<int, OSErr> buses;  // and what comes of an inquiry
std::map<std::pair<int, int>, Device> devices;
std::vector<std::pair<int, int>> inquired;
SCSIBusInquiryPB answer;  // of each bus
SCSIBusInquiryPB busRequest;
SCSIExecIOPB deviceRequest;

OSErr InquireBus(SCSIBusInquiryPB& request) {
    busRequest = request;
    auto const found = buses.find(request.scsiDevice.bus);
    if (found == buses.end()) return scsiBusInvalid;
    request.scsiFeatureFlags = answer.scsiFeatureFlags;
    request.scsiVersionNumber = answer.scsiVersionNumber;
    request.scsiHBAInquiry = answer.scsiHBAInquiry;
    return found->second;
}

OSErr InquireDevice(SCSIExecIOPB& request) {
    deviceRequest = request;
    std::pair<int, int> const place(request.scsiDevice.bus, request.scsiDevice.targetID);
    inquired.push_back(place);
    auto const found = devices.find(place);
    if (found == devices.end()) return scsiSelectTimeout;
    std::memcpy(request.scsiDataPtr, found->second.inquiry.data(), found->second.inquiry.size());
    return found->second.result;
}

}  // namespace

OSErr SCSIAction(SCSI_PB* request) {
    return request->scsiFunctionCode == 3 ? InquireBus(reinterpret_cast<SCSIBusInquiryPB&>(*request))
                                          : InquireDevice(reinterpret_cast<SCSIExecIOPB&>(*request));
}

void* Allocate_Inspector_Memory(unsigned int size) {
    static std::vector<std::unique_ptr<unsigned char[]>> blocks;
    blocks.push_back(std::make_unique<unsigned char[]>(size));
    return blocks.back().get();
}

namespace {

std::string Inquiry(unsigned char type, std::string const& vendor, std::string const& product,
                    std::string const& revision) {
    std::string data = "\0\0\5\2\x1F\0\0\0"s + vendor + product + revision;
    data[0] = static_cast<char>(type);
    return data;
}

// A test with buses and devices of its own.
class Scsi : public testing::Test {
  protected:
    ~Scsi() override {
        ClearscsiDevCache(nullptr);
        buses.clear();
        devices.clear();
        inquired.clear();
        answer = {};
    }

    static void AddBus(int bus, OSErr result = noErr) { buses[bus] = result; }
    // A device is known by its revision, two digits of bus and target.
    static void AddDevice(int bus, int target, OSErr result = noErr) {
        std::string const place = {char('0' + bus), ':', char('0' + target / 10), char('0' + target % 10)};
        devices[{bus, target}] = {Inquiry(0, "VENDOR  ", "PRODUCT         ", place), result};
    }
    static std::string PlaceOf(scsiDevice const& device) { return Text(revision_of(device)); }

    template <class First, class Next>
    static std::vector<std::string> Collect(First const& first, Next const& next) {
        std::vector<std::string> places;
        try {
            places.push_back(first());
            for (;;) places.push_back(next());
        } catch (NoSuchObject const&) {
        }
        if (!places.empty()) {
            EXPECT_THROW(next(), NoSuchObject);  // the end stays the end
        }
        return places;
    }
    static std::vector<std::string> Buses() {
        SCSIBusIterator iterator;
        return Collect([&] { return std::to_string(iterator.First().Number()); },
                       [&] { return std::to_string(iterator.Next().Number()); });
    }
    static std::vector<std::string> DevicesOf(scsibus const& bus) {
        SCSIDeviceIterator1 iterator;
        return Collect([&] { return PlaceOf(iterator.First(bus)); },
                       [&] { return PlaceOf(iterator.Next(bus)); });
    }
    static std::vector<std::string> Devices() {
        SCSIDeviceIterator2 iterator;
        return Collect([&] { return PlaceOf(iterator.First()); }, [&] { return PlaceOf(iterator.Next()); });
    }
    static std::string TypeOf(unsigned char type) {
        devices[{0, 0}].inquiry = Inquiry(type, "VENDOR  ", "PRODUCT         ", "0001");
        return Text(type_of(scsiDevice(0, 0)));
    }
};

using Places = std::vector<std::string>;

}  // namespace

// Buses

TEST_F(Scsi, BusIsAskedForByAnInquiry) {
    AddBus(7);
    EXPECT_EQ(7, scsi_bus_of(7).Number());
    EXPECT_EQ(sizeof(SCSIBusInquiryPB), busRequest.scsiPBLength);
    EXPECT_EQ(3, busRequest.scsiFunctionCode);
    EXPECT_EQ(7, busRequest.scsiDevice.bus);
    busRequest.scsiPBLength = 0;
    busRequest.scsiFunctionCode = busRequest.scsiDevice.bus = 0;
    SCSIBusInquiryPB const zero{};
    EXPECT_EQ(0, std::memcmp(&zero, &busRequest, sizeof zero));
}

TEST_F(Scsi, BusOfTheLengthErrorIsThePlatformsFailure) {
    AddBus(0, scsiPBLengthError);
    try {
        scsi_bus_of(0);
        FAIL();
    } catch (OSError const& error) {
        EXPECT_EQ(-7872, error.Code());
    }
}

TEST_F(Scsi, BusOfAnyOtherFailureDoesNotExist) {
    for (int const error : {-7869, -108, -50, -7917, 1}) {
        AddBus(0, static_cast<OSErr>(error));
        EXPECT_THROW(scsi_bus_of(0), NoSuchObject) << error;
    }
}

TEST_F(Scsi, BusNumbersAreNotCutOff) {
    AddBus(0);
    AddBus(255);
    EXPECT_EQ(255, scsi_bus_of(255).Number());
    for (unsigned long long const number : {256ull, 65536ull, 1ull << 32, ~0ull})
        EXPECT_THROW(scsi_bus_of(number), NoSuchObject) << number;
}

TEST_F(Scsi, VersionOfABusIsTheMajorRevision) {
    AddBus(0);
    answer.scsiVersionNumber = 43;
    MacVersion const version = version_of(scsi_bus_of(0));
    EXPECT_EQ(43, version.major);
    EXPECT_EQ(0, version.minor);
    EXPECT_EQ(0, version.bugrev);
    EXPECT_EQ(0, version.stage);
    EXPECT_EQ(0, version.nonrel);
    EXPECT_EQ("", version.text);
    answer.scsiVersionNumber = 0xFF;
    EXPECT_EQ(255, version_of(scsi_bus_of(0)).major);
}

TEST_F(Scsi, SpeedAndWidthAreBitsOfTheBus) {
    AddBus(0);
    auto const truths = [] {
        scsibus const bus = scsi_bus_of(0);
        return std::vector<bool>{static_cast<bool>(fast_scsi_of(bus)), static_cast<bool>(wide16_scsi_of(bus)),
                                 static_cast<bool>(wide32_scsi_of(bus))};
    };
    answer.scsiFeatureFlags = 2;
    EXPECT_EQ((std::vector<bool>{true, false, false}), truths());
    answer.scsiFeatureFlags = ~2u;
    answer.scsiHBAInquiry = 0x20;
    EXPECT_EQ((std::vector<bool>{false, true, false}), truths());
    answer.scsiHBAInquiry = 0x40;
    EXPECT_EQ((std::vector<bool>{false, false, true}), truths());
    answer.scsiHBAInquiry = 0x9F;
    EXPECT_EQ((std::vector<bool>{false, false, false}), truths());
}

TEST_F(Scsi, OneBusIsTheOnlyOne) {
    AddBus(0);
    EXPECT_EQ(Places{"0"}, Buses());
    EXPECT_THROW(scsi_bus_of(1), NoSuchObject);
}

TEST_F(Scsi, BusesEndAtTheFirstThatIsMissing) {
    EXPECT_EQ(Places(), Buses());
    AddBus(0);
    AddBus(1);
    AddBus(3);
    AddBus(4);
    SCSIBusIterator iterator;
    EXPECT_EQ(0, iterator.First().Number());
    EXPECT_EQ(1, iterator.Next().Number());
    EXPECT_THROW(iterator.Next(), NoSuchObject);
    EXPECT_EQ(0, iterator.First().Number());
}

TEST_F(Scsi, AllBusesThatHaveNumbersAreIterated) {
    for (int bus = 0; bus < 256; ++bus) AddBus(bus);
    EXPECT_EQ(256u, Buses().size());
}

TEST_F(Scsi, BusesThatFailPassTheFailureOn) {
    AddBus(0);
    AddBus(1, scsiPBLengthError);
    SCSIBusIterator iterator;
    iterator.First();
    EXPECT_THROW(iterator.Next(), OSError);
}

// Devices

TEST_F(Scsi, DeviceIsAskedForByAnInquiry) {
    AddDevice(2, 5);
    scsiDevice const device(2, 5);
    SCSIExecIOPB const& request = deviceRequest;
    EXPECT_EQ(sizeof(SCSIExecIOPB), request.scsiPBLength);
    EXPECT_EQ(1, request.scsiFunctionCode);
    EXPECT_EQ(2, request.scsiDevice.bus);
    EXPECT_EQ(5, request.scsiDevice.targetID);
    EXPECT_EQ(0, request.scsiDevice.LUN);
    EXPECT_EQ(0x60040000u, request.scsiFlags);
    EXPECT_NE(nullptr, request.scsiDataPtr);
    EXPECT_EQ(256u, request.scsiDataLength);
    EXPECT_EQ(6, request.scsiCDBLength);
    EXPECT_EQ(0, std::memcmp("\x12\0\0\0\xFF\0\0\0\0\0\0\0\0\0\0\0", request.scsiCDB, 16));
    EXPECT_EQ(600, request.scsiTimeout);
    EXPECT_EQ(250, request.scsiSelectTimeout);
}

TEST_F(Scsi, DeviceHasItsPlaceBehindTheData) {
    AddDevice(2, 5);
    scsiDevice const device(2, 5);
    auto const* const bytes = reinterpret_cast<unsigned char const*>(&device);
    std::uint64_t target, bus;
    std::memcpy(&target, bytes + 256, sizeof target);
    std::memcpy(&bus, bytes + 264, sizeof bus);
    EXPECT_EQ(5u, target);
    EXPECT_EQ(2u, bus);
    EXPECT_EQ(devices.at({2, 5}).inquiry, std::string(reinterpret_cast<char const*>(bytes), 36));
    EXPECT_EQ(std::string(220, '\0'), std::string(reinterpret_cast<char const*>(bytes) + 36, 220));
}

TEST_F(Scsi, DeviceTextsAreAsTheyAreStored) {
    devices[{0, 0}].inquiry = Inquiry(0, "ACME    ", "DISK \0\xFF         "s, "1   ");
    scsiDevice const device(0, 0);
    EXPECT_EQ("ACME    ", Text(vendor_of(device)));
    EXPECT_EQ("DISK \0\xFF         "s, Text(product_of(device)));
    EXPECT_EQ("1   ", Text(revision_of(device)));
    EXPECT_EQ(device.inquiry + 8, vendor_of(device).bytes);
    EXPECT_EQ(device.inquiry + 16, product_of(device).bytes);
    EXPECT_EQ(device.inquiry + 32, revision_of(device).bytes);
}

TEST_F(Scsi, DeviceOfAShortTransferIsThere) {
    AddDevice(0, 0, scsiUnexpectedBusFree);
    EXPECT_EQ("0:00", PlaceOf(scsiDevice(0, 0)));
}

TEST_F(Scsi, DeviceOfAnyOtherFailureIsNot) {
    for (int const error : {-7926, -7872, -7932, -108, -7918, 1}) {
        AddDevice(0, 0, static_cast<OSErr>(error));
        EXPECT_THROW(scsiDevice(0, 0), NoSuchObject) << error;
    }
}

TEST_F(Scsi, DeviceNumbersAreNotCutOff) {
    AddDevice(0, 0);
    AddDevice(0, 255);
    EXPECT_NO_THROW(scsi_device_of(255));
    for (unsigned long long const number : {256ull, 65536ull, 1ull << 32, ~0ull}) {
        EXPECT_THROW(scsi_device_of(number), NoSuchObject) << number;
        EXPECT_THROW(scsiDevice(number, 0), NoSuchObject) << number;
    }
}

TEST_F(Scsi, DeviceTypesHaveNames) {
    char const* const names[] = {"DISK", "TAPE", "PRINTER", "CPU", "WORM", "CDROM", "SCAN", "DISK"};
    for (unsigned char type = 0; type < 8; ++type) EXPECT_EQ(names[type], TypeOf(type)) << int{type};
    for (unsigned char type = 8; type < 32; ++type) EXPECT_EQ("UNKNOWN", TypeOf(type)) << int{type};
}

TEST_F(Scsi, DeviceTypesAreFiveBits) {
    EXPECT_EQ("TAPE", TypeOf(0xE1));
    EXPECT_EQ("UNKNOWN", TypeOf(0x3F));
}

// Devices by number

TEST_F(Scsi, DeviceByNumberIsOneOfTheFirstBus) {
    AddDevice(0, 3);
    AddDevice(1, 3);
    EXPECT_EQ("0:03", PlaceOf(scsi_device_of(3)));
    EXPECT_THROW(scsi_device_of(4), NoSuchObject);
}

TEST_F(Scsi, DeviceByNumberAndBusIsOneOfThatBus) {
    AddBus(1);
    AddDevice(0, 3);
    AddDevice(1, 3);
    EXPECT_EQ("1:03", PlaceOf(scsi_device_of(3, scsi_bus_of(1))));
}

TEST_F(Scsi, DevicesAreRemembered) {
    AddBus(0);
    AddBus(1);
    AddDevice(0, 3);
    AddDevice(1, 3);
    AddDevice(0, 4);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ("0:03", PlaceOf(scsi_device_of(3)));
        EXPECT_EQ("0:03", PlaceOf(scsi_device_of(3, scsi_bus_of(0))));
        EXPECT_EQ("1:03", PlaceOf(scsi_device_of(3, scsi_bus_of(1))));
        EXPECT_EQ("0:04", PlaceOf(scsi_device_of(4)));
    }
    EXPECT_EQ(3u, inquired.size());
}

TEST_F(Scsi, DevicesThatFailAreNotRemembered) {
    AddDevice(0, 0);
    scsi_device_of(0);
    for (int i = 0; i < 9; ++i) EXPECT_THROW(scsi_device_of(3), NoSuchObject);
    EXPECT_EQ(10u, inquired.size());
    scsi_device_of(0);
    EXPECT_EQ(10u, inquired.size());
}

TEST_F(Scsi, NinthDeviceTakesTheSlotOfTheFirst) {
    for (int target = 0; target < 12; ++target) AddDevice(0, target);
    for (unsigned target = 0; target < 8; ++target) scsi_device_of(target);
    for (unsigned target = 0; target < 8; ++target) scsi_device_of(target);
    EXPECT_EQ(8u, inquired.size());
    scsi_device_of(8);
    EXPECT_EQ(9u, inquired.size());
    for (unsigned target = 1; target <= 8; ++target) scsi_device_of(target);
    EXPECT_EQ(9u, inquired.size());
    EXPECT_EQ("0:00", PlaceOf(scsi_device_of(0)));  // takes the slot of the second
    EXPECT_EQ(10u, inquired.size());
    for (unsigned const target : {0u, 2u, 3u, 8u}) scsi_device_of(target);
    EXPECT_EQ(10u, inquired.size());
    scsi_device_of(1);
    EXPECT_EQ(11u, inquired.size());
}

TEST_F(Scsi, DevicesAreForgottenWhenTheHostSaysSo) {
    for (int target = 0; target < 9; ++target) AddDevice(0, target);
    for (unsigned target = 0; target < 9; ++target) scsi_device_of(target);
    ClearscsiDevCache(nullptr);
    inquired.clear();
    for (unsigned target = 0; target < 8; ++target) scsi_device_of(target);
    for (unsigned target = 0; target < 8; ++target) scsi_device_of(target);
    EXPECT_EQ(8u, inquired.size());
}

// Iterations

TEST_F(Scsi, DevicesOfABusHaveTargetsFrom0To7) {
    AddBus(1);
    for (int const target : {0, 2, 7, 8, 9}) AddDevice(1, target);
    AddDevice(0, 1);
    scsibus const bus = scsi_bus_of(1);
    EXPECT_EQ((Places{"1:00", "1:02", "1:07"}), DevicesOf(bus));
    EXPECT_EQ(8u, inquired.size());
}

TEST_F(Scsi, DevicesOfAnEmptyBusAreNone) {
    AddBus(0);
    EXPECT_EQ(Places(), DevicesOf(scsi_bus_of(0)));
}

TEST_F(Scsi, DevicesOfAllBusesComeBusByBus) {
    for (int bus = 0; bus < 4; ++bus) AddBus(bus);
    for (auto const& [bus, target] : {std::pair(0, 6), {0, 7}, {0, 8}, {2, 0}, {2, 3}, {3, 7}})
        AddDevice(bus, target);
    EXPECT_EQ((Places{"0:06", "0:07", "2:00", "2:03", "3:07"}), Devices());
}

TEST_F(Scsi, DevicesWithoutABusAreNone) {
    AddDevice(0, 0);
    EXPECT_EQ(Places(), Devices());
    EXPECT_TRUE(inquired.empty());
}

TEST_F(Scsi, DevicesOfABusThatFailsPassTheFailureOn) {
    AddBus(0);
    AddDevice(0, 7);
    AddBus(1, scsiPBLengthError);
    SCSIDeviceIterator2 iterator;
    EXPECT_EQ("0:07", PlaceOf(iterator.First()));
    EXPECT_THROW(iterator.Next(), OSError);
    AddBus(0, scsiPBLengthError);
    EXPECT_THROW(iterator.First(), OSError);
}

TEST_F(Scsi, IterationsBeginAgain) {
    AddBus(0);
    AddDevice(0, 1);
    AddDevice(0, 2);
    SCSIDeviceIterator1 ofBus;
    SCSIDeviceIterator2 ofAll;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ("0:01", PlaceOf(ofBus.First(scsi_bus_of(0))));
        EXPECT_EQ("0:02", PlaceOf(ofBus.Next(scsi_bus_of(0))));
        EXPECT_EQ("0:01", PlaceOf(ofAll.First()));
        EXPECT_EQ("0:02", PlaceOf(ofAll.Next()));
    }
}

TEST_F(Scsi, IterationsRememberNothing) {
    AddBus(0);
    AddDevice(0, 0);
    scsi_device_of(0);
    EXPECT_EQ(1u, inquired.size());
    DevicesOf(scsi_bus_of(0));
    EXPECT_EQ(9u, inquired.size());
    Devices();
    EXPECT_GE(inquired.size(), 17u);
    ClearscsiDevCache(nullptr);
    inquired.clear();
    DevicesOf(scsi_bus_of(0));
    scsi_device_of(0);
    EXPECT_EQ(9u, inquired.size());
}

// Modules

namespace {

constexpr char kFast[] = "property \"fast scsi\" \"fast scsis\" of \"scsibus\": \"boolean\"";
constexpr char kWide16[] = "property \"wide16 scsi\" \"wide16 scsis\" of \"scsibus\": \"boolean\"";
constexpr char kWide32[] = "property \"wide32 scsi\" \"wide32 scsis\" of \"scsibus\": \"boolean\"";
constexpr char kBus[] = "property \"scsibus\" \"scsibuses\" [\"integer\"]: \"scsibus\"";
constexpr char kDevice[] = "property \"scsidevice\" \"scsidevices\" [\"integer\"]: \"scsidevice\"";
constexpr char kVersion[] = "property \"version\" \"versions\" of \"scsibus\": \"version\"";
constexpr char kDeviceOfBus[] =
    "property \"scsidevice\" \"scsidevices\" [\"integer\"] of \"scsibus\": \"scsidevice\"";
constexpr char kVendor[] = "property \"vendor\" \"vendors\" of \"scsidevice\": \"string\"";
constexpr char kType[] = "property \"type\" \"types\" of \"scsidevice\": \"string\"";
constexpr char kProduct[] = "property \"product\" \"products\" of \"scsidevice\": \"string\"";
constexpr char kRevision[] = "property \"revision\" \"revisions\" of \"scsidevice\": \"string\"";
constexpr char kDevicesOfBus[] =
    "iterated property \"scsidevice\" \"scsidevices\" of \"scsibus\": \"scsidevice\"";
constexpr char kDevices[] = "iterated property \"scsidevice\" \"scsidevices\": \"scsidevice\"";
constexpr char kBuses[] = "iterated property \"scsibus\" \"scsibuses\": \"scsibus\"";

// Asks as the host does.
template <class Result>
Result Ask(char const* row, void const* object = nullptr, integer const* index = nullptr) {
    Registration const one = RegisteredAs(row);
    Slot<Result> slot;
    one.get(slot, index, object, nullptr, one.context);
    return slot.Value();
}

// The first two values of an iteration.
template <class Result>
std::pair<Result, Result> AskTwice(char const* row, void const* object = nullptr) {
    Registration const one = RegisteredAs(row);
    alignas(8) unsigned char state[16];
    Slot<Result> first, next;
    one.construct(state);
    one.get(first, nullptr, object, state, one.context);
    one.next(next, nullptr, object, state, one.context);
    return {first.Value(), next.Value()};
}

}  // namespace

TEST(ScsiModules, RegisterTheirTablesInOrder) {
    ExpectRows<ScsiModule>({"type \"scsibus\"", "type \"scsidevice\"", kBus, kDevice, kVersion, kFast,
                            kWide16, kWide32, kDeviceOfBus, kVendor, kType, kProduct, kRevision, "cache"});
    ExpectRows<ScsiIterationModule>({kDevicesOfBus, kDevices, kBuses});
}

TEST(ScsiModules, RegisterTheSizesOfTheirTypesAndStates) {
    ScsiModule const module;
    ScsiIterationModule const iterations;
    EXPECT_EQ(sizeof(SCSIBusInquiryPB), RegisteredAs("type \"scsibus\"").valueSize);
    EXPECT_EQ(272u, RegisteredAs("type \"scsidevice\"").valueSize);
    EXPECT_EQ(2u, RegisteredAs(kDevicesOfBus).valueSize);
    EXPECT_EQ(4u, RegisteredAs(kDevices).valueSize);
    EXPECT_EQ(2u, RegisteredAs(kBuses).valueSize);
}

TEST_F(Scsi, RowsLeadToTheirInspectors) {
    ScsiModule const module;
    AddBus(0);
    AddBus(1);
    AddDevice(0, 1);
    AddDevice(1, 1);
    answer.scsiVersionNumber = 43;
    integer const one = 1;
    scsibus const bus = Ask<scsibus>(kBus, nullptr, &one);
    EXPECT_EQ(1, bus.Number());
    EXPECT_EQ("0:01", PlaceOf(Ask<scsiDevice>(kDevice, nullptr, &one)));
    EXPECT_EQ("1:01", PlaceOf(Ask<scsiDevice>(kDeviceOfBus, &bus, &one)));
    EXPECT_EQ(43, Ask<MacVersion>(kVersion, &bus).major);
    for (auto const& [row, features, inquiry] :
         {std::tuple(kFast, 2u, 0), {kWide16, 0u, 0x20}, {kWide32, 0u, 0x40}}) {
        answer.scsiFeatureFlags = features;
        answer.scsiHBAInquiry = static_cast<UInt8>(inquiry);
        scsibus const asked = scsi_bus_of(0);
        for (char const* const other : {kFast, kWide16, kWide32})
            EXPECT_EQ(other == row, static_cast<bool>(Ask<boolean>(other, &asked))) << row << other;
    }
    devices[{0, 0}].inquiry = Inquiry(1, "ACME    ", "REEL            ", "1   ");
    scsiDevice const device(0, 0);
    EXPECT_EQ("ACME    ", Text(Ask<inspector_string>(kVendor, &device)));
    EXPECT_EQ("TAPE", Text(Ask<inspector_string>(kType, &device)));
    EXPECT_EQ("REEL            ", Text(Ask<inspector_string>(kProduct, &device)));
    EXPECT_EQ("1   ", Text(Ask<inspector_string>(kRevision, &device)));
}

TEST_F(Scsi, CacheRowForgetsTheDevices) {
    ScsiModule const module;
    AddDevice(0, 0);
    scsi_device_of(0);
    RegisteredAs("cache").clear(nullptr);
    scsi_device_of(0);
    EXPECT_EQ(2u, inquired.size());
}

TEST_F(Scsi, IterationRowsLeadToTheirIterators) {
    ScsiIterationModule const module;
    AddBus(0);
    AddBus(1);
    AddDevice(0, 7);
    AddDevice(1, 2);
    AddDevice(1, 3);
    scsibus const bus = scsi_bus_of(1);
    auto const ofBus = AskTwice<scsiDevice>(kDevicesOfBus, &bus);
    EXPECT_EQ("1:02", PlaceOf(ofBus.first));
    EXPECT_EQ("1:03", PlaceOf(ofBus.second));
    auto const ofAll = AskTwice<scsiDevice>(kDevices);
    EXPECT_EQ("0:07", PlaceOf(ofAll.first));
    EXPECT_EQ("1:02", PlaceOf(ofAll.second));
    auto const all = AskTwice<scsibus>(kBuses);
    EXPECT_EQ(0, all.first.Number());
    EXPECT_EQ(1, all.second.Number());
}

TEST_F(Scsi, NegativeNumbersAreNoDevices) {
    ScsiModule const module;
    AddBus(0);
    AddDevice(0, 0);
    integer const negative = -1;
    scsibus const bus = scsi_bus_of(0);
    EXPECT_THROW(Ask<scsibus>(kBus, nullptr, &negative), NoSuchObject);
    EXPECT_THROW(Ask<scsiDevice>(kDevice, nullptr, &negative), NoSuchObject);
    EXPECT_THROW(Ask<scsiDevice>(kDeviceOfBus, &bus, &negative), NoSuchObject);
}
