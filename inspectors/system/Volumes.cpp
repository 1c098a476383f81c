#include "system/Volumes.h"

#include <Carbon/MacErrors.h>

#include <array>
#include <cstddef>
#include <limits>
#include <optional>

#include "Evaluator/Text.h"
#include "Evaluator/Time.h"

using MacintoshPlatform::ExactFileName;
using MacintoshPlatform::FileItem;
using MacintoshPlatform::FileLocation;
using MacintoshPlatform::MakeUTF8String;

namespace {

constexpr short kLastIndex = std::numeric_limits<short>::max();

// Throws for a result that is a failure.
void Check(OSErr result) {
    if (result == nsvErr) throw NoSuchObject();
    if (result != noErr) ThrowRealOSError(result);
}

// The name of the volume at a place, for which the volume itself is not asked.
HFSUniStr255 NameAt(short index) {
    HFSUniStr255 name;
    Check(FSGetVolumeInfo(kFSInvalidVolumeRefNum, static_cast<ItemCount>(index), nullptr, kFSVolInfoNone,
                          nullptr, &name, nullptr));
    return name;
}

// The volumes of items. The look-ups read it, and nothing is ever stored: an answer is always fresh.
struct VolumeCache {
    std::array<std::optional<VolumeLink>, 8> slots;
    std::size_t full = 0;
    std::size_t next = 0;
};
VolumeCache sVolumeCache;

VolumeLink VolumeOf(FileItem const& item) {
    for (std::size_t i = 0; i < sVolumeCache.full; ++i) {
        VolumeLink const& known = *sVolumeCache.slots[i];
        if (known.volume.actualVolume == item.Info().catalog.volume) return known;
    }
    return VolumeLink(ByRefNum(), item.Info().catalog.volume);
}

integer Number(UInt64 number) { return static_cast<long long>(number); }

integer Percentage(UInt64 part, UInt64 whole) {
    if (whole == 0) throw NoSuchObject();
    return Number(part * 100 / whole);
}

moment LocalTime(UTCDateTime const& date) {
    if (date.highSeconds != 0) throw NoSuchObject();
    return january_1_1904_Local() + integer(date.lowSeconds) * second_of();
}

}  // namespace

// Making one

void VolInfo::GetVolInfo(FSVolumeRefNum volume, short index) {
    Check(FSGetVolumeInfo(volume, static_cast<ItemCount>(index), &actualVolume, kFSVolInfoGettableInfo, &info,
                          &volumeName, &rootDirectory));
}

VolumeLink::VolumeLink(VolInfo const& info) : root(FileLocation(info.RootDirectory())), volume(info) {
    root.Info();
}

// Reaching one

VolumeLink VolumeIterator::First() {
    index = 0;
    return Next();
}

VolumeLink VolumeIterator::Next() {
    if (index == kLastIndex) throw NoSuchObject();
    return {ByIndex(), ++index};
}

VolumeLink VolumeIterator::First(unsigned char const* name, unsigned long length) {
    index = 0;
    return Next(name, length);
}

// The name is compared again once the volume was asked: another may have come to its place.
VolumeLink VolumeIterator::Next(unsigned char const* name, unsigned long length) {
    while (index != kLastIndex) {
        HFSUniStr255 const found = NameAt(++index);
        HFSUniStr255 const wanted = ExactFileName({name, length}, kCFStringEncodingUTF8);
        if (!(found == wanted)) continue;
        VolInfo const volume(ByIndex(), index);
        if (volume.volumeName == wanted) return VolumeLink(volume);
    }
    throw NoSuchObject();
}

VolumeLink volume_of_index(unsigned long long index) {
    if (index > kLastIndex) throw NoSuchObject();
    return {ByIndex(), static_cast<short>(index)};
}

VolumeLink volume_of_file(file const& object) { return VolumeOf(object); }
VolumeLink volume_of_folder(folder const& object) { return VolumeOf(object); }

boolean operator==(VolumeLink const& left, VolumeLink const& right) {
    return left.volume.actualVolume == right.volume.actualVolume;
}

void ClearVolCache(void*) { sVolumeCache.full = sVolumeCache.next = 0; }

// What is known of one

inspector_string name_of(VolumeLink const& volume) {
    std::string const name = MakeUTF8String(volume.volume.volumeName);
    return MakeString(ConstData(reinterpret_cast<unsigned char const*>(name.data()), name.size()));
}

integer total_space_of(VolumeLink const& volume) { return Number(volume.volume.info.totalBytes); }
integer free_space_of(VolumeLink const& volume) { return Number(volume.volume.info.freeBytes); }
integer used_space_of(VolumeLink const& volume) {
    return Number(volume.volume.info.totalBytes - volume.volume.info.freeBytes);
}
integer percent_free_of(VolumeLink const& volume) {
    return Percentage(volume.volume.info.freeBytes, volume.volume.info.totalBytes);
}
integer percent_used_of(VolumeLink const& volume) {
    return Percentage(volume.volume.info.totalBytes - volume.volume.info.freeBytes,
                      volume.volume.info.totalBytes);
}

integer files_of(VolumeLink const& volume) { return Number(volume.volume.info.fileCount); }
integer directories_of(VolumeLink const& volume) { return Number(volume.volume.info.folderCount); }
integer alloc_of(VolumeLink const& volume) { return Number(volume.volume.info.fileCount); }
integer flags_of(VolumeLink const& volume) { return Number(volume.volume.info.flags); }

moment init_date_of(VolumeLink const& volume) { return LocalTime(volume.volume.info.createDate); }
moment modification_time_of(VolumeLink const& volume) { return LocalTime(volume.volume.info.modifyDate); }
