#pragma once

// Information about a volume, made of what the system says of its root folder and its space. Pure, but for
// the device's write protection.

#include <Carbon/Files.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <cstdint>
#include <string>

namespace Platform {

/// What was learned of a volume where it is mounted.
struct VolumeFacts {
    struct statx root;
    struct statvfs space;
    bool isDeviceWriteProtected = false;
    bool isRoot = false;
    std::int64_t localOffset = 0;  // seconds that local time is ahead of universal time
};

/// The fields that are asked for; the others are zero.
FSVolumeInfo VolumeInfoOf(VolumeFacts const& facts, FSVolumeInfoBitmap whichInfo);

/// Whether a block device is write-protected, by the kernel's table of devices in the folder `blockDevices`,
/// such as /sys/dev/block. What is no block device is not.
bool IsWriteProtected(std::string const& blockDevices, dev_t device);

}  // namespace Platform
