#pragma once

// Gestalt: facts of the machine and its system, by four-character selectors.
//
// Facts are read below the folder of ZELQ_MACHINE_ROOT, or below the root, at each question. A number that 32
// bits do not hold is answered with the largest that they hold, 0xFFFFFFFF.
//
//   selector           answer                                  source
//   'ram ', 'lram'     bytes of memory                         MemTotal of /proc/meminfo
//   'ramm'             megabytes of memory                     the same
//   'sysa'             2 PowerPC, 10 Intel, 100 and 101        /proc/sys/kernel/arch; uname(2) where the
//                      for ARM of 32 and 64 bits               kernel has no such file
//   'cput', 'cpuf'     'i586' for Intel; for a PowerPC its     the same; /proc/cpuinfo
//                      type, such as 0x010C
//   'cpus'             number of processors that are on        /sys/devices/system/cpu/online
//   'pclk', 'mclk'     clock of the fastest processor, in Hz   cpufreq's cpuinfo_max_freq; /proc/cpuinfo
//                      and in MHz
//   'x86f'             feature bits of an Intel processor      flags of /proc/cpuinfo
//   'pgsz'             bytes of a page                         sysconf(3); AT_PAGESZ of /proc/self/auxv
//   'vm  '             1: there is virtual memory              every Linux has it
//   'sysv'             version word of the system              VERSION_ID of os-release
//   'sys1', 'sys2',    its parts, as they are                  the same
//   'sys3'
//   'romv'             version word of the firmware            /sys/class/dmi/id/bios_release
//   'mnam'             address of a Str255: the name of the    DMI's product_name, the model of the device
//                      machine, in UTF-8                       tree, the host's name
//   'usb '             3: USB, with isochronous transfers;     root hubs in /sys/bus/usb/devices
//                      0: none
//   'usbv'             the highest version of a root hub,      their `version`
//                      such as 0x02008000
//
// A version word has two decimal digits, and a digit each for the minor version and the bug fix: 0x1049 is
// 10.4.9. Parts that are too large are 99 and 9.

#include <Carbon/MacErrors.h>
#include <Carbon/MacTypes.h>

/// The selectors, by their names.
enum {
    gestaltPhysicalRAMSize = 0x72616D20,             // 'ram '
    gestaltPhysicalRAMSizeInMegabytes = 0x72616D6D,  // 'ramm'
    gestaltLogicalRAMSize = 0x6C72616D,              // 'lram'
    gestaltSysArchitecture = 0x73797361,             // 'sysa'
    gestaltNativeCPUtype = 0x63707574,               // 'cput'
    gestaltNativeCPUfamily = 0x63707566,             // 'cpuf'
    gestaltCountOfCPUs = 0x63707573,                 // 'cpus'
    gestaltProcClkSpeed = 0x70636C6B,                // 'pclk'
    gestaltProcClkSpeedMHz = 0x6D636C6B,             // 'mclk'
    gestaltX86Features = 0x78383666,                 // 'x86f'
    gestaltLogicalPageSize = 0x7067737A,             // 'pgsz'
    gestaltVMAttr = 0x766D2020,                      // 'vm  '
    gestaltSystemVersion = 0x73797376,               // 'sysv'
    gestaltSystemVersionMajor = 0x73797331,          // 'sys1'
    gestaltSystemVersionMinor = 0x73797332,          // 'sys2'
    gestaltSystemVersionBugFix = 0x73797333,         // 'sys3'
    gestaltROMVersion = 0x726F6D76,                  // 'romv'
    gestaltUserVisibleMachineName = 0x6D6E616D,      // 'mnam'
    gestaltUSBAttr = 0x75736220,                     // 'usb '
    gestaltUSBVersion = 0x75736276,                  // 'usbv'

    // These have no answer here.
    gestaltQuickdrawVersion = 0x71642020,    // 'qd  '
    gestaltMachineType = 0x6D616368,         // 'mach'
    gestaltKeyboardType = 0x6B626420,        // 'kbd '
    gestaltNuBusConnectors = 0x736C7463,     // 'sltc'
    gestaltNameRegistryVersion = 0x6E726567  // 'nreg'
};

/// Gets the answer for a selector. gestaltUndefSelectorErr for a selector that has no answer here;
/// gestaltUnknownErr when what holds the answer may not be read, or makes no sense: PlatformSettingsFailure
/// tells which file; paramErr without a response; memFullErr.
PLATFORM_API OSErr Gestalt(OSType selector, SInt32* response);
