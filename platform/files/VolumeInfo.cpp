#include "files/VolumeInfo.h"

#include <sys/sysmacros.h>

#include <algorithm>
#include <fstream>
#include <limits>

#include "files/Dates.h"

namespace Platform {

namespace {

UInt32 Saturated(std::uint64_t number) {
    return static_cast<UInt32>(std::min<std::uint64_t>(number, std::numeric_limits<UInt32>::max()));
}

UTCDateTime LocalTime(struct statx_timestamp time, std::int64_t offset) {
    time.tv_sec += offset;
    return CarbonTime(time);
}

UInt16 Flags(VolumeFacts const& facts) {
    UInt16 flags = 0;
    if (facts.isRoot) flags |= kFSVolFlagDefaultVolumeMask;
    if (facts.isDeviceWriteProtected) flags |= kFSVolFlagHardwareLockedMask;
    if ((facts.space.f_flag & ST_RDONLY) != 0) flags |= kFSVolFlagSoftwareLockedMask;
    return flags;
}

}  // namespace

FSVolumeInfo VolumeInfoOf(VolumeFacts const& facts, FSVolumeInfoBitmap whichInfo) {
    auto const& [root, space, isDeviceWriteProtected, isRoot, localOffset] = facts;
    auto const wants = [=](FSVolumeInfoBitmap field) { return (whichInfo & field) != 0; };
    FSVolumeInfo info{};
    if (wants(kFSVolInfoCreateDate) && (root.stx_mask & STATX_BTIME) != 0)
        info.createDate = LocalTime(root.stx_btime, localOffset);
    if (wants(kFSVolInfoModDate)) info.modifyDate = LocalTime(root.stx_mtime, localOffset);
    if (wants(kFSVolInfoFileCount) && space.f_files > space.f_ffree)
        info.fileCount = Saturated(space.f_files - space.f_ffree);
    if (wants(kFSVolInfoSizes)) {
        info.totalBytes = UInt64{space.f_blocks} * space.f_frsize;
        info.freeBytes = UInt64{space.f_bavail} * space.f_frsize;
    }
    if (wants(kFSVolInfoBlocks)) {
        info.blockSize = Saturated(space.f_frsize);
        info.totalBlocks = Saturated(space.f_blocks);
        info.freeBlocks = Saturated(space.f_bavail);
    }
    if (wants(kFSVolInfoFlags)) info.flags = Flags(facts);
    return info;
}

bool IsWriteProtected(std::string const& blockDevices, dev_t device) {
    std::ifstream file(blockDevices + "/" + std::to_string(major(device)) + ":" +
                       std::to_string(minor(device)) + "/ro");
    int readOnly = 0;
    return file >> readOnly && readOnly != 0;
}

}  // namespace Platform
