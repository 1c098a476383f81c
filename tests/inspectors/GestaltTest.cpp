// Facts of the machine, against a program that stands in for the platform's Gestalt.

#include "system/Gestalt.h"

#include <Carbon/Gestalt.h>
#include <sys/mman.h>

#include <cstring>
#include <initializer_list>
#include <map>

#include "RegistrationLog.h"
#include "Slot.h"
#include "filesystem/Asking.h"
#include "modules/GestaltModule.h"
#include "modules/GestaltSelectorsModule.h"

namespace {

std::map<OSType, UInt32> responses;
OSErr failure = gestaltUndefSelectorErr;  // for the other selectors
int calls = 0;

}  // namespace

OSErr Gestalt(OSType selector, SInt32* response) {
    ++calls;
    auto const found = responses.find(selector);
    *response = found != responses.end() ? static_cast<SInt32>(found->second) : 0;
    return found != responses.end() ? OSErr{noErr} : failure;
}

namespace {

class MachineFacts : public testing::Test {
  protected:
    ~MachineFacts() override {
        responses.clear();
        failure = gestaltUndefSelectorErr;
    }
    static long long Named(std::string_view name) { return gestalt_of(Bytes(name), name.size()); }
    static std::string Text(MacVersion const& version) { return VersionToString(version); }
};

// What the property of the world with a row answers.
template <class Result>
Result Asked(std::string const& row, inspector_string const* name = nullptr) {
    Registration const entry = RegisteredAs(row);
    Slot<Result> slot;
    entry.get(slot, name, nullptr, nullptr, entry.context);
    Result const answer = slot.Value();
    slot.End();
    return answer;
}

}  // namespace

// ---- The modules

TEST(GestaltModule, RegistersItsTableInOrder) {
    ExpectRows<GestaltModule>({"property \"physical ram\" \"physical rams\": \"integer\"",
                               "property \"logical ram\" \"logical rams\": \"integer\"",
                               "property \"powerpc\" \"powerpcs\": \"boolean\"",
                               "property \"virtual memory\" \"virtual memories\": \"boolean\"",
                               "property \"quickdraw version\" \"quickdraw versions\": \"version\"",
                               "property \"system version\" \"system versions\": \"version\"",
                               "property \"rom version\" \"rom versions\": \"version\"",
                               "property \"machine type\" \"machine types\": \"integer\"",
                               "property \"keyboard type\" \"keyboard types\": \"integer\"",
                               "property \"nubus map\" \"nubus maps\": \"integer\"",
                               "property \"name registry version\" \"name registry versions\": \"version\"",
                               "property \"cpu speed\" \"cpu speeds\": \"integer\"",
                               "property \"machine name\" \"machine names\": \"string\""});
}

TEST(GestaltSelectorsModule, RegistersItsTableInOrder) {
    ExpectRows<GestaltSelectorsModule>({"property \"gestalt\" \"gestalts\" [\"string\"]: \"integer\""});
}

TEST_F(MachineFacts, RowsAskForTheirSelectors) {
    GestaltModule const module;
    responses = {{0x72616D20, 1}, {0x6C72616D, 2}, {0x6D616368, 3},
                 {0x6B626420, 4}, {0x736C7463, 5}, {0x70636C6B, 6}};
    EXPECT_EQ(1, Asked<integer>("property \"physical ram\" \"physical rams\": \"integer\""));
    EXPECT_EQ(2, Asked<integer>("property \"logical ram\" \"logical rams\": \"integer\""));
    EXPECT_EQ(3, Asked<integer>("property \"machine type\" \"machine types\": \"integer\""));
    EXPECT_EQ(4, Asked<integer>("property \"keyboard type\" \"keyboard types\": \"integer\""));
    EXPECT_EQ(5, Asked<integer>("property \"nubus map\" \"nubus maps\": \"integer\""));
    EXPECT_EQ(6, Asked<integer>("property \"cpu speed\" \"cpu speeds\": \"integer\""));
    responses = {{0x73797361, 2}, {0x766D2020, 1}};
    EXPECT_TRUE(Asked<boolean>("property \"powerpc\" \"powerpcs\": \"boolean\""));
    EXPECT_TRUE(Asked<boolean>("property \"virtual memory\" \"virtual memories\": \"boolean\""));
    responses = {{0x71642020, 0x0300}, {0x73797376, 0x1049}, {0x726F6D76, 0x0922}, {0x6E726567, 0x01258003}};
    EXPECT_EQ("3.0",
              Text(Asked<MacVersion>("property \"quickdraw version\" \"quickdraw versions\": \"version\"")));
    EXPECT_EQ("10.4.9",
              Text(Asked<MacVersion>("property \"system version\" \"system versions\": \"version\"")));
    EXPECT_EQ("9.2.2", Text(Asked<MacVersion>("property \"rom version\" \"rom versions\": \"version\"")));
    EXPECT_EQ("1.2.5f3", Text(Asked<MacVersion>(
                             "property \"name registry version\" \"name registry versions\": \"version\"")));
}

TEST_F(MachineFacts, AreAskedAnewEachTime) {
    responses[gestaltPhysicalRAMSize] = 1;
    int const before = calls;
    EXPECT_EQ(1, phys_ram_of());
    responses[gestaltPhysicalRAMSize] = 2;
    EXPECT_EQ(2, phys_ram_of());
    EXPECT_EQ(before + 2, calls);
}

// ---- Numbers

TEST_F(MachineFacts, AreNeverNegative) {
    for (OSType const selector : {gestaltPhysicalRAMSize, gestaltLogicalRAMSize, gestaltMachineType,
                                  gestaltKeyboardType, gestaltNuBusConnectors, gestaltProcClkSpeed})
        responses[selector] = 0x80000000;
    EXPECT_EQ(2147483648, phys_ram_of());
    EXPECT_EQ(2147483648, log_ram_of());
    EXPECT_EQ(2147483648, machine_type_of());
    EXPECT_EQ(2147483648, keyboard_type_of());
    EXPECT_EQ(2147483648, nubus_map_of());
    EXPECT_EQ(2147483648, cpu_speed_of());
    EXPECT_EQ(-2147483648, Named("ram "));
}

TEST_F(MachineFacts, TellAPowerPCByItsNumberAlone) {
    for (auto const& [number, isPowerPC] : std::map<UInt32, bool>{{0, false},
                                                                  {1, false},
                                                                  {2, true},
                                                                  {3, false},
                                                                  {10, false},
                                                                  {0x10002, false},
                                                                  {0xFFFFFFFF, false}}) {
        responses[gestaltSysArchitecture] = number;
        EXPECT_EQ(isPowerPC, static_cast<bool>(native_processor())) << number;
    }
}

TEST_F(MachineFacts, TellVirtualMemoryByTheLowestBit) {
    for (auto const& [bits, hasIt] :
         std::map<UInt32, bool>{{0, false}, {1, true}, {2, false}, {0xFFFFFFFE, false}, {0xFFFFFFFF, true}}) {
        responses[gestaltVMAttr] = bits;
        EXPECT_EQ(hasIt, static_cast<bool>(virtual_mem())) << bits;
    }
}

// ---- Versions

TEST_F(MachineFacts, ReadVersionsOfSixteenBits) {
    struct Case {
        UInt32 response;
        char const* version;
    };
    for (Case const& test :
         {Case{0x1030, "10.3"}, Case{0x0922, "9.2.2"}, Case{0x1049, "10.4.9"}, Case{0, "0.0"},
          Case{0x9999, "99.9.9"}, Case{0xFFFF, "165.15.15"}, Case{0x12340750, "7.5"}}) {
        responses = {{gestaltSystemVersion, test.response},
                     {gestaltQuickdrawVersion, test.response},
                     {gestaltROMVersion, test.response}};
        for (MacVersion const& version : {sys_version_of(), qd_version_of(), rom_version_of()}) {
            EXPECT_EQ(test.version, Text(version)) << test.response;
            EXPECT_EQ(0, version.stage);
            EXPECT_EQ(0, version.nonrel);
        }
    }
}

TEST_F(MachineFacts, ReadTheVersionOfTheNameRegistryWithItsStage) {
    responses[gestaltNameRegistryVersion] = 0x12346005;
    MacVersion const version = name_registry_of();
    EXPECT_EQ(12, version.major);
    EXPECT_EQ(3, version.minor);
    EXPECT_EQ(4, version.bugrev);
    EXPECT_EQ(0x60, version.stage);
    EXPECT_EQ(5, version.nonrel);
    EXPECT_EQ("", version.text);
}

// ---- The name

TEST_F(MachineFacts, HaveANameWhereTheResponsePoints) {
    constexpr int flags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE;
    void* const low = mmap(reinterpret_cast<void*>(0x20000000), 4096, PROT_READ | PROT_WRITE, flags, -1, 0);
    ASSERT_EQ(reinterpret_cast<void*>(0x20000000), low);
    std::memcpy(low,
                "\x07"
                "archive!",
                9);
    responses[gestaltUserVisibleMachineName] = 0x20000000;
    inspector_string const name = machine_name_of();
    EXPECT_EQ("archive", ::Text(name));
    EXPECT_EQ(static_cast<unsigned char*>(low) + 1, name.begin()) << "the characters are not copied";
    munmap(low, 4096);
}

// ---- Selectors

TEST_F(MachineFacts, AnswerAnySelectorOfFourBytes) {
    GestaltSelectorsModule const module;
    responses = {{gestaltSystemVersion, 0x1049}, {0, 5}, {0xFF804142, 6}};
    inspector_string const sysv{Bytes("sysv"), 4};
    EXPECT_EQ(0x1049, Asked<integer>("property \"gestalt\" \"gestalts\" [\"string\"]: \"integer\"", &sysv));
    EXPECT_EQ(5, Named(std::string_view("\0\0\0\0", 4)));
    EXPECT_EQ(6, Named("\xFF\x80"
                       "AB"));
}

TEST_F(MachineFacts, AnswerNoSelectorOfAnotherLength) {
    responses = {{gestaltSystemVersion, 0x1049}};
    int const before = calls;
    for (char const* const name : {"", "s", "sys", "sysv ", "sysvsysv"})
        EXPECT_THROW(Named(name), NoSuchObject) << name;
    EXPECT_EQ(before, calls);
}

TEST_F(MachineFacts, WidenSelectorsWithTheirSign) {
    for (auto const& [response, number] : std::map<UInt32, long long>{
             {0x7FFFFFFF, 2147483647}, {0x80000000, -2147483648}, {0xFFFFFFFF, -1}, {0, 0}}) {
        responses[gestaltPhysicalRAMSize] = response;
        EXPECT_EQ(number, Named("ram "));
    }
}

// ---- Failures

TEST_F(MachineFacts, ThatAreUnknownAreNoSuchObject) {
    EXPECT_THROW(phys_ram_of(), NoSuchObject);
    EXPECT_THROW(native_processor(), NoSuchObject);
    EXPECT_THROW(sys_version_of(), NoSuchObject);
    EXPECT_THROW(machine_name_of(), NoSuchObject);
    EXPECT_THROW(Named("ram "), NoSuchObject);
}

TEST_F(MachineFacts, ThatFailOtherwiseTellTheStatus) {
    for (OSErr const status :
         std::initializer_list<OSErr>{gestaltUnknownErr, paramErr, memFullErr, -5552, 1}) {
        failure = status;
        for (auto const& ask : std::initializer_list<void (*)()>{
                 [] { phys_ram_of(); }, [] { virtual_mem(); }, [] { rom_version_of(); },
                 [] { machine_name_of(); }, [] { Named("none"); }}) {
            try {
                ask();
                ADD_FAILURE() << status;
            } catch (OSError const& error) {
                EXPECT_EQ(status, error.Code());
            }
        }
    }
}
