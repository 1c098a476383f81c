#pragma once

#include "frame/Adapters.h"
#include "system/Volumes.h"

/// Mounted volumes by number and by what is on them, and what is known of them. "filesystem" and "drive" are
/// other words for "volume", and "size" for "total space".
class VolumesModule {
    using Numbered = NumberedGlobalProperty<VolumeLink>;
    using OfFile = Property<file, VolumeLink>;
    using OfFolder = Property<folder, VolumeLink>;
    using Number = Property<VolumeLink, integer>;
    using Time = Property<VolumeLink, moment>;

    TypeRecord<VolumeLink> type{"volume"};
    RelationEqual<VolumeLink, VolumeLink> equal{"volume", "volume"};
    Numbered filesystem{"filesystem", "filesystems", "volume", volume_of_index};
    Numbered drive{"drive", "drives", "volume", volume_of_index};
    Numbered volume{"volume", "volumes", "volume", volume_of_index};
    OfFile filesystemOfFile{"filesystem", "filesystems", "file", "volume", volume_of_file};
    OfFile driveOfFile{"drive", "drives", "file", "volume", volume_of_file};
    OfFile volumeOfFile{"volume", "volumes", "file", "volume", volume_of_file};
    OfFolder filesystemOfFolder{"filesystem", "filesystems", "folder", "volume", volume_of_folder};
    OfFolder driveOfFolder{"drive", "drives", "folder", "volume", volume_of_folder};
    OfFolder volumeOfFolder{"volume", "volumes", "folder", "volume", volume_of_folder};
    Property<VolumeLink, inspector_string> name{"name", "names", "volume", "string", name_of};
    Number size{"size", "sizes", "volume", "integer", total_space_of};
    Number totalSpace{"total space", "total spaces", "volume", "integer", total_space_of};
    Number freeSpace{"free space", "free spaces", "volume", "integer", free_space_of};
    Number usedSpace{"used space", "used spaces", "volume", "integer", used_space_of};
    Number freePercent{"free percent", "free percents", "volume", "integer", percent_free_of};
    Number usedPercent{"used percent", "used percents", "volume", "integer", percent_used_of};
    Number fileCount{"file count", "file counts", "volume", "integer", files_of};
    Number directoryCount{"directory count", "directory counts", "volume", "integer", directories_of};
    Number blockCount{"allocation block count", "allocation block counts", "volume", "integer", alloc_of};
    Time initDate{"init date", "init dates", "volume", "time", init_date_of};
    Time modificationTime{"modification time", "modification times", "volume", "time", modification_time_of};
    Number flag{"flag", "flags", "volume", "integer", flags_of};
    CacheRecord cache{ClearVolCache};
};
