#include <Carbon/Gestalt.h>
#include <Platform/Items.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "support/Machine.h"
#include "support/Unprivileged.h"

namespace {

// An answer: a result code and, where that is noErr, a number.
struct Told {
    OSErr error;
    UInt32 number = 0;
    bool operator==(Told const&) const = default;
};
void PrintTo(Told const& told, std::ostream* stream) { *stream << told.error << ", " << told.number; }

constexpr Told kUnknown{gestaltUndefSelectorErr}, kSenseless{gestaltUnknownErr};

Told Ask(OSType selector) {
    SInt32 response = 77;
    OSErr const error = Gestalt(selector, &response);
    if (error != noErr) {
        EXPECT_EQ(0, response);
    }
    return {error, static_cast<UInt32>(response)};
}
Told Is(UInt32 number) { return {noErr, number}; }

std::string Text(UInt32 address) {
    auto const text = reinterpret_cast<unsigned char const*>(static_cast<std::uintptr_t>(address));
    return {reinterpret_cast<char const*>(text) + 1, text[0]};
}
std::string NameOfMachine() {
    Told const told = Ask(gestaltUserVisibleMachineName);
    return told.error == noErr ? Text(told.number) : "(" + std::to_string(told.error) + ")";
}

// The file and the reason of the last failure.
std::string Why() {
    char file[256] = "", reason[256] = "";
    PlatformSettingsFailure(file, sizeof file, reason, sizeof reason);
    return std::string(file) + ": " + reason;
}

constexpr char kOsRelease[] = "etc/os-release";
constexpr char kFirmware[] = "sys/class/dmi/id/bios_release";

// What the machine says of its system, by a VERSION_ID.
Told SystemOf(Machine const& machine, std::string const& version) {
    machine.Write(kOsRelease, "NAME=\"Example\"\nVERSION_ID=" + version + "\nID=example\n");
    return Ask(gestaltSystemVersion);
}

}  // namespace

// ---- Selectors

TEST(Gestalt, KnowsNoOtherSelectors) {
    for (OSType const selector : std::initializer_list<OSType>{
             0, 0xFFFFFFFF, 0x52414D20, gestaltQuickdrawVersion, gestaltMachineType, gestaltKeyboardType,
             gestaltNuBusConnectors, gestaltNameRegistryVersion})
        EXPECT_EQ(kUnknown, Ask(selector)) << selector;
}

TEST(Gestalt, WithoutARoomForTheResponseIsAMistake) { EXPECT_EQ(paramErr, Gestalt(gestaltVMAttr, nullptr)); }

TEST(Gestalt, OfAMachineWithoutFactsKnowsVirtualMemoryAndThatThereIsNoUsb) {
    Machine const machine;
    EXPECT_EQ(Is(1), Ask(gestaltVMAttr));
    EXPECT_EQ(Is(0), Ask(gestaltUSBAttr));
    for (OSType const selector :
         {gestaltPhysicalRAMSize, gestaltPhysicalRAMSizeInMegabytes, gestaltLogicalRAMSize,
          gestaltSysArchitecture, gestaltNativeCPUtype, gestaltNativeCPUfamily, gestaltCountOfCPUs,
          gestaltProcClkSpeed, gestaltProcClkSpeedMHz, gestaltX86Features, gestaltLogicalPageSize,
          gestaltSystemVersion, gestaltSystemVersionMajor, gestaltSystemVersionMinor,
          gestaltSystemVersionBugFix, gestaltROMVersion, gestaltUserVisibleMachineName, gestaltUSBVersion})
        EXPECT_EQ(kUnknown, Ask(selector)) << selector;
}

// ---- Recorded machines

TEST(Gestalt, OfTheLaptop) {
    RecordedMachine const machine("laptop");
    EXPECT_EQ(Is(0xFFFFFFFF), Ask(gestaltPhysicalRAMSize));
    EXPECT_EQ(Is(0xFFFFFFFF), Ask(gestaltLogicalRAMSize));
    EXPECT_EQ(Is(15833), Ask(gestaltPhysicalRAMSizeInMegabytes));
    EXPECT_EQ(Is(10), Ask(gestaltSysArchitecture));
    EXPECT_EQ(Is(0x69353836), Ask(gestaltNativeCPUtype));
    EXPECT_EQ(Is(0x69353836), Ask(gestaltNativeCPUfamily));
    EXPECT_EQ(Is(4), Ask(gestaltCountOfCPUs));
    EXPECT_EQ(Is(0xFFFFFFFF), Ask(gestaltProcClkSpeed));
    EXPECT_EQ(Is(4700), Ask(gestaltProcClkSpeedMHz));
    EXPECT_EQ(Is(0x2441), Ask(gestaltSystemVersion));
    EXPECT_EQ(Is(24), Ask(gestaltSystemVersionMajor));
    EXPECT_EQ(Is(4), Ask(gestaltSystemVersionMinor));
    EXPECT_EQ(Is(1), Ask(gestaltSystemVersionBugFix));
    EXPECT_EQ(Is(0x0190), Ask(gestaltROMVersion));
    EXPECT_EQ("Example Book 14", NameOfMachine());
}

TEST(Gestalt, OfTheServer) {
    RecordedMachine const machine("server");
    EXPECT_EQ(Is(0xFFFFFFFF), Ask(gestaltPhysicalRAMSize));
    EXPECT_EQ(Is(128834), Ask(gestaltPhysicalRAMSizeInMegabytes));
    EXPECT_EQ(Is(16), Ask(gestaltCountOfCPUs));
    EXPECT_EQ(Is(2400000000), Ask(gestaltProcClkSpeed));
    EXPECT_EQ(Is(2400), Ask(gestaltProcClkSpeedMHz));
    EXPECT_EQ(Is(0x1040), Ask(gestaltSystemVersion));
    EXPECT_EQ(Is(0x0290), Ask(gestaltROMVersion));
    EXPECT_EQ("Example Server 720", NameOfMachine());
    EXPECT_EQ(Is(0), Ask(gestaltUSBAttr));
}

TEST(Gestalt, OfTheVirtualMachine) {
    RecordedMachine const machine("vm");
    EXPECT_EQ(Is(0x80000000), Ask(gestaltPhysicalRAMSize));
    EXPECT_EQ(Is(2048), Ask(gestaltPhysicalRAMSizeInMegabytes));
    EXPECT_EQ(Is(101), Ask(gestaltSysArchitecture));
    EXPECT_EQ(Is(1), Ask(gestaltCountOfCPUs));
    EXPECT_EQ("build-7", NameOfMachine());
    for (OSType const selector : {gestaltNativeCPUtype, gestaltProcClkSpeed, gestaltX86Features,
                                  gestaltSystemVersion, gestaltROMVersion, gestaltUSBVersion})
        EXPECT_EQ(kUnknown, Ask(selector)) << selector;
}

TEST(Gestalt, OfARecordedMachineMayStartAtTheWorkingDirectory) {
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(ZELQ_MACHINES);
    for (char const* const root : {"vm", "./vm/", "../machines/vm"}) {
        Variable const machine("ZELQ_MACHINE_ROOT", root);
        EXPECT_EQ("build-7", NameOfMachine()) << root;
        EXPECT_EQ(kUnknown, Ask(gestaltLogicalPageSize)) << root;
    }
    std::filesystem::current_path(before);
    Variable const machine("ZELQ_MACHINE_ROOT", "no-such-machine");
    EXPECT_EQ(kUnknown, Ask(gestaltPhysicalRAMSize));
}

// ---- Memory

TEST(GestaltMemory, IsTheLargestNumberWhereThereIsMore) {
    Machine const machine;
    machine.Write("proc/meminfo", "MemTotal:        4194303 kB\n");
    EXPECT_EQ(Is(0xFFFFFC00), Ask(gestaltPhysicalRAMSize));
    machine.Write("proc/meminfo", "MemTotal:        4194304 kB\n");
    EXPECT_EQ(Is(0xFFFFFFFF), Ask(gestaltPhysicalRAMSize));
    EXPECT_EQ(Is(4096), Ask(gestaltPhysicalRAMSizeInMegabytes));
    machine.Write("proc/meminfo", "MemTotal: 18446744073709551615 kB\n");
    EXPECT_EQ(Is(0xFFFFFFFF), Ask(gestaltLogicalRAMSize));
    EXPECT_EQ(Is(0xFFFFFFFF), Ask(gestaltPhysicalRAMSizeInMegabytes));
}

TEST(GestaltMemory, ThatMakesNoSenseIsAFailureThatIsNamed) {
    Machine const machine;
    for (char const* const text :
         {"", "MemFree: 1 kB\n", "MemTotal: many kB\n", "MemTotal: 5\n", "MemTotal: 5 MB\n",
          "MemTotal: -5 kB\n", "MemTotal: 99999999999999999999 kB\n"}) {
        std::string const file = machine.Write("proc/meminfo", text);
        EXPECT_EQ(kSenseless, Ask(gestaltPhysicalRAMSize)) << text;
        EXPECT_EQ(file + ": its MemTotal is no number of kB", Why());
        EXPECT_EQ(kSenseless, Ask(gestaltPhysicalRAMSizeInMegabytes)) << text;
    }
}

TEST(GestaltMemory, ThatMayNotBeReadIsAFailureThatIsNamed) {
    Machine const machine;
    std::string const file = machine.Write("proc/meminfo", "MemTotal: 5 kB\n");
    chmod(file.c_str(), 0);
    chmod(machine.folder.Path().c_str(), 0755);
    Unprivileged const nobody;
    EXPECT_EQ(kSenseless, Ask(gestaltPhysicalRAMSize));
    EXPECT_EQ(file + ": it may not be read", Why());
    EXPECT_EQ(kUnknown, Ask(gestaltROMVersion));
    EXPECT_EQ(": ", Why()) << "an answer must not tell of the question before";
}

// Not what sysconf(3) says, which knows nothing of a container's own /proc.
TEST(GestaltMemory, OfThisMachineIsWhatItsProcSays) {
    Variable const none("ZELQ_MACHINE_ROOT", std::nullopt);
    std::ifstream file("/proc/meminfo");
    std::string name;
    UInt64 kilobytes = 0;
    file >> name >> kilobytes;
    ASSERT_EQ("MemTotal:", name);
    EXPECT_EQ(Is(static_cast<UInt32>(kilobytes / 1024)), Ask(gestaltPhysicalRAMSizeInMegabytes));
    EXPECT_EQ(Is(static_cast<UInt32>(sysconf(_SC_PAGESIZE))), Ask(gestaltLogicalPageSize));
}

// ---- Processors

TEST(GestaltProcessors, HaveAnArchitecture) {
    Machine const machine;
    struct Case {
        char const* machine;
        Told expected;
    };
    for (Case const& test : std::initializer_list<Case>{{"ppc\n", Is(2)},
                                                        {"ppc64\n", Is(2)},
                                                        {"ppc64le\n", Is(2)},
                                                        {"x86_64\n", Is(10)},
                                                        {"i386\n", Is(10)},
                                                        {"i686\n", Is(10)},
                                                        {"arm\n", Is(100)},
                                                        {"armv7l\n", Is(100)},
                                                        {"armv8l\n", Is(100)},
                                                        {"aarch64\n", Is(101)},
                                                        {"aarch64_be", Is(101)},
                                                        {"riscv64\n", kUnknown},
                                                        {"s390x\n", kUnknown},
                                                        {"x86\n", kUnknown},
                                                        {"i8086\n", kUnknown},
                                                        {"\n", kUnknown}}) {
        machine.Write("proc/sys/kernel/arch", test.machine);
        EXPECT_EQ(test.expected, Ask(gestaltSysArchitecture)) << test.machine;
    }
}

TEST(GestaltProcessors, OfThisMachineHaveTheArchitectureThatWeAreBuiltFor) {
    Variable const none("ZELQ_MACHINE_ROOT", std::nullopt);
#if defined(__x86_64__) || defined(__i386__)
    EXPECT_EQ(Is(10), Ask(gestaltSysArchitecture));
#elif defined(__aarch64__)
    EXPECT_EQ(Is(101), Ask(gestaltSysArchitecture));
#endif
}

TEST(GestaltProcessors, OfPowerPCsHaveTypes) {
    Machine const machine;
    machine.Write("proc/sys/kernel/arch", "ppc\n");
    struct Case {
        char const* name;
        Told expected;
    };
    for (Case const& test : std::initializer_list<Case>{{"601", Is(0x0101)},
                                                        {"603ev", Is(0x0103)},
                                                        {"604r", Is(0x0104)},
                                                        {"740/750", Is(0x0108)},
                                                        {"750CXe", Is(0x0108)},
                                                        {"750FX", Is(0x0120)},
                                                        {"7400", Is(0x010C)},
                                                        {"7450, altivec supported", Is(0x0110)},
                                                        {"7455, altivec supported", Is(0x0111)},
                                                        {"7447A, altivec supported", Is(0x0112)},
                                                        {"PPC970, altivec supported", Is(0x0139)},
                                                        {"PPC970FX, altivec supported", Is(0x013C)},
                                                        {"PPC970MP, altivec supported", Is(0x0144)},
                                                        {"POWER9, altivec supported", kUnknown},
                                                        {"", kUnknown}}) {
        machine.Write("proc/cpuinfo", std::string("processor\t: 0\ncpu\t\t: ") + test.name + "\n");
        EXPECT_EQ(test.expected, Ask(gestaltNativeCPUtype)) << test.name;
        EXPECT_EQ(test.expected, Ask(gestaltNativeCPUfamily)) << test.name;
        EXPECT_EQ(kUnknown, Ask(gestaltX86Features));
    }
}

TEST(GestaltProcessors, AreCounted) {
    Machine const machine;
    struct Case {
        char const* list;
        Told expected;
    };
    for (Case const& test : std::initializer_list<Case>{{"0\n", Is(1)},
                                                        {"0-3\n", Is(4)},
                                                        {"0,2,4\n", Is(3)},
                                                        {"0-3,8-11,64", Is(9)},
                                                        {"0-4294967295\n", Is(0xFFFFFFFF)},
                                                        {"\n", kSenseless},
                                                        {"3-0\n", kSenseless},
                                                        {"0-\n", kSenseless},
                                                        {"0,\n", kSenseless},
                                                        {"0;1\n", kSenseless},
                                                        {"all\n", kSenseless}}) {
        std::string const file = machine.Write("sys/devices/system/cpu/online", test.list);
        EXPECT_EQ(test.expected, Ask(gestaltCountOfCPUs)) << test.list;
        if (test.expected == kSenseless) {
            EXPECT_EQ(file + ": it is no list of numbers", Why());
        }
    }
}

TEST(GestaltProcessors, HaveTheHighestClockThatADriverTells) {
    Machine const machine;
    machine.Write("proc/cpuinfo", "cpu MHz\t\t: 9000.000\n");
    machine.Write("sys/devices/system/cpu/cpufreq/policy0/cpuinfo_max_freq", "1800000\n");
    machine.Write("sys/devices/system/cpu/cpufreq/policy4/cpuinfo_max_freq", "2400001\n");
    machine.Write("sys/devices/system/cpu/cpufreq/policy8/cpuinfo_max_freq", "none\n");
    machine.Write("sys/devices/system/cpu/cpufreq/ondemand/cpuinfo_max_freq", "9000000\n");
    EXPECT_EQ(Is(2400001000), Ask(gestaltProcClkSpeed));
    EXPECT_EQ(Is(2400), Ask(gestaltProcClkSpeedMHz));
}

TEST(GestaltProcessors, HaveAClockWithoutDrivers) {
    Machine const machine;
    machine.Write("proc/cpuinfo",
                  "processor : 0\ncpu MHz\t\t: 999.5\n\nprocessor : 1\ncpu MHz\t\t: 1000.017\n");
    EXPECT_EQ(Is(1000017000), Ask(gestaltProcClkSpeed));
    EXPECT_EQ(Is(1000), Ask(gestaltProcClkSpeedMHz));
    machine.Write("proc/cpuinfo",
                  "processor : 0\ncpu : 7447A\nclock\t\t: 1333.333000MHz\ntimebase : 18432000\n");
    EXPECT_EQ(Is(1333333000), Ask(gestaltProcClkSpeed));
}

TEST(GestaltProcessors, WithAClockBeyondThirtyTwoBitsHaveTheLargest) {
    Machine const machine;
    machine.Write("proc/cpuinfo", "cpu MHz : 4294.967295\n");
    EXPECT_EQ(Is(0xFFFFFFFF), Ask(gestaltProcClkSpeed));
    machine.Write("proc/cpuinfo", "cpu MHz : 4294.967294\n");
    EXPECT_EQ(Is(0xFFFFFFFE), Ask(gestaltProcClkSpeed));
    machine.Write("proc/cpuinfo", "cpu MHz : 5700.000\n");
    EXPECT_EQ(Is(0xFFFFFFFF), Ask(gestaltProcClkSpeed));
    EXPECT_EQ(Is(5700), Ask(gestaltProcClkSpeedMHz));
}

TEST(GestaltProcessors, WithAClockThatMakesNoSenseHaveNone) {
    Machine const machine;
    for (char const* const text :
         {"", "cpu MHz :\n", "cpu MHz : unknown\n", "cpu MHz : -5\n", "cpu MHz : nan\n", "cpu MHz : inf\n",
          "cpu MHz : 1e300\n", "cpu MHz : 5 GHz\n", "cpu MHz 5\n"}) {
        machine.Write("proc/cpuinfo", text);
        EXPECT_EQ(kUnknown, Ask(gestaltProcClkSpeed)) << text;
    }
}

TEST(GestaltProcessors, OfIntelHaveFeatures) {
    Machine const machine;
    machine.Write("proc/sys/kernel/arch", "x86_64\n");
    machine.Write("proc/cpuinfo", "flags : fpu  tsc sse sse2 ht lm pbe avx\nflags : vme\n");
    EXPECT_EQ(Is(1u << 0 | 1u << 4 | 1u << 25 | 1u << 26 | 1u << 28 | 1u << 31), Ask(gestaltX86Features));
    machine.Write("proc/cpuinfo", "flags :\n");
    EXPECT_EQ(kUnknown, Ask(gestaltX86Features));
}

// ---- Versions

TEST(GestaltVersions, OfTheSystemHaveTwoDigitsAndTwoSingleOnes) {
    Machine const machine;
    struct Case {
        char const* version;
        Told expected;
    };
    for (Case const& test : std::initializer_list<Case>{{"12", Is(0x1200)},
                                                        {"\"12\"", Is(0x1200)},
                                                        {"'10.4.11'", Is(0x1049)},
                                                        {"9.2.2", Is(0x0922)},
                                                        {"10.3.0", Is(0x1030)},
                                                        {"24.04", Is(0x2440)},
                                                        {"24.10", Is(0x2490)},
                                                        {"1.2.3.4", Is(0x0123)},
                                                        {"99.9.9", Is(0x9999)},
                                                        {"100", Is(0x9900)},
                                                        {"20261122", Is(0x9900)},
                                                        {"99999999999999999999.1", Is(0x9910)},
                                                        {"rolling", kUnknown},
                                                        {"12.", kUnknown},
                                                        {".5", kUnknown},
                                                        {"12-beta", kUnknown},
                                                        {"-1", kUnknown},
                                                        {"\"\"", kUnknown}})
        EXPECT_EQ(test.expected, SystemOf(machine, test.version)) << test.version;
}

TEST(GestaltVersions, OfTheSystemHavePartsThatAreNotCutOff) {
    Machine const machine;
    SystemOf(machine, "20261122.11.345");
    EXPECT_EQ(Is(20261122), Ask(gestaltSystemVersionMajor));
    EXPECT_EQ(Is(11), Ask(gestaltSystemVersionMinor));
    EXPECT_EQ(Is(345), Ask(gestaltSystemVersionBugFix));
    SystemOf(machine, "99999999999.0");
    EXPECT_EQ(Is(0xFFFFFFFF), Ask(gestaltSystemVersionMajor));
}

TEST(GestaltVersions, OfTheSystemAreTheVendorsWhereTheAdministratorHasNone) {
    Machine const machine;
    machine.Write("usr/lib/os-release", "VERSION_ID=8\n");
    EXPECT_EQ(Is(0x0800), Ask(gestaltSystemVersion));
    EXPECT_EQ(Is(0x0910), SystemOf(machine, "9.1"));
    machine.Write(kOsRelease, "ID=rolling\n");
    EXPECT_EQ(kUnknown, Ask(gestaltSystemVersion));
}

TEST(GestaltVersions, OfTheFirmware) {
    Machine const machine;
    machine.Write(kFirmware, "5.3\n");
    EXPECT_EQ(Is(0x0530), Ask(gestaltROMVersion));
    machine.Write(kFirmware, "0.0\n");
    EXPECT_EQ(Is(0), Ask(gestaltROMVersion));
    std::string const file = machine.Write(kFirmware, "new\n");
    EXPECT_EQ(kSenseless, Ask(gestaltROMVersion));
    EXPECT_EQ(file + ": it is no version", Why());
}

// ---- Names

TEST(GestaltMachineName, IsThatOfTheModelElseOfTheHost) {
    Machine const machine;
    machine.Write("proc/sys/kernel/hostname", "archive\n");
    EXPECT_EQ("archive", NameOfMachine());
    using namespace std::string_view_literals;
    machine.Write("proc/device-tree/model", "Example Board 4\0"sv);
    EXPECT_EQ("Example Board 4", NameOfMachine());
    machine.Write("sys/class/dmi/id/product_name", "  Example Book \n");
    EXPECT_EQ("Example Book", NameOfMachine());
    machine.Write("sys/class/dmi/id/product_name", " \n");
    EXPECT_EQ("Example Board 4", NameOfMachine());
}

TEST(GestaltMachineName, IsCutAtTheEndOfACharacter) {
    Machine const machine;
    std::string const long255(255, 'a'), long254(254, 'a');
    machine.Write("proc/sys/kernel/hostname", long255 + "b");
    EXPECT_EQ(long255, NameOfMachine());
    machine.Write("proc/sys/kernel/hostname", long254 + "\u00e9");
    EXPECT_EQ(long254, NameOfMachine());
}

TEST(GestaltMachineName, IsWhereAResponseCanPointAtIt) {
    Machine const machine;
    machine.Write("proc/sys/kernel/hostname", "one");
    Told const told = Ask(gestaltUserVisibleMachineName);
    ASSERT_EQ(noErr, told.error);
    EXPECT_EQ("one", Text(told.number));
    EXPECT_EQ(told, Ask(gestaltUserVisibleMachineName)) << "one name needs one place";
}

TEST(GestaltMachineName, StaysForFifteenOthersAndTakesNoMoreRoomThanSixteen) {
    Machine const machine;
    std::vector<Told> places;
    for (int number = 0; number < 16; ++number) {
        machine.Write("proc/sys/kernel/hostname", "host" + std::to_string(number));
        places.push_back(Ask(gestaltUserVisibleMachineName));
        for (int former = 0; former <= number; ++former)
            EXPECT_EQ("host" + std::to_string(former), Text(places[static_cast<std::size_t>(former)].number));
    }
    for (int number = 16; number < 1000; ++number) {
        machine.Write("proc/sys/kernel/hostname", "host" + std::to_string(number));
        EXPECT_THAT(places, testing::Contains(Ask(gestaltUserVisibleMachineName)));
    }
}

// ---- Facts that may not be read

TEST(Gestalt, OfFactsThatMayNotBeReadIsAFailureThatIsNamed) {
    Machine const machine;
    machine.Write("proc/sys/kernel/hostname", "archive\n");
    machine.Write("sys/bus/usb/devices/usb1/version", " 2.00\n");
    machine.Write("sys/devices/system/cpu/cpufreq/policy0/cpuinfo_max_freq", "5\n");
    machine.Write("proc/cpuinfo", "cpu MHz : 5\n");
    std::string const name = machine.Write("sys/class/dmi/id/product_name", "Example\n");
    chmod(machine.folder.Path().c_str(), 0755);
    struct Case {
        OSType selector;
        char const* fact;
    };
    for (Case const& test : std::initializer_list<Case>{
             {gestaltUserVisibleMachineName, "sys/class/dmi/id/product_name"},
             {gestaltUSBAttr, "sys/bus/usb/devices"},
             {gestaltUSBVersion, "sys/bus/usb/devices"},
             {gestaltUSBVersion, "sys/bus/usb/devices/usb1/version"},
             {gestaltProcClkSpeed, "sys/devices/system/cpu/cpufreq"},
             {gestaltProcClkSpeed, "sys/devices/system/cpu/cpufreq/policy0/cpuinfo_max_freq"}}) {
        std::string const path = machine.folder.Path(test.fact);
        EXPECT_EQ(noErr, Ask(test.selector).error) << test.fact;
        chmod(path.c_str(), 0);
        {
            Unprivileged const nobody;
            EXPECT_EQ(kSenseless, Ask(test.selector)) << test.fact;
            EXPECT_EQ(path + ": it may not be read", Why());
        }
        chmod(path.c_str(), 0755);
    }
}

// ---- Files that are none

TEST(Gestalt, OfFactsThatAreNoFilesIsAFailureAtOnce) {
    Machine const machine;
    machine.folder.MakeFolder("proc/meminfo");
    EXPECT_EQ(kSenseless, Ask(gestaltPhysicalRAMSize));
    EXPECT_EQ(machine.folder.Path("proc/meminfo") + ": it is no file", Why());
    machine.folder.MakeFolder("etc");
    ASSERT_EQ(0, mkfifo(machine.folder.Path(kOsRelease).c_str(), 0644));
    EXPECT_EQ(kUnknown, Ask(gestaltSystemVersion)) << "a pipe without writers is empty";
}
