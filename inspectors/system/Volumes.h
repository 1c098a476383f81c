#pragma once

// Mounted volumes: how they are reached, and what is known of them.
//
// A volume is a snapshot: its space, counts and dates are those read when it was made.

#include <Carbon/Files.h>

#include "filesystem/FileSystemObject.h"

/// How a volume is told: by its reference number, or by its place among the mounted ones, from 1 on.
struct ByRefNum {};
struct ByIndex {};

/// What the platform says of a volume.
class VolInfo {
  public:
    /// The first volume, the one with the number, and the one at the place. NoSuchObject when there is none;
    /// throw the host's platform error when it cannot be asked.
    VolInfo() : VolInfo(ByIndex(), 1) {}
    VolInfo(ByRefNum, short number) { GetVolInfo(number, 0); }
    VolInfo(ByIndex, short index) { GetVolInfo(kFSInvalidVolumeRefNum, index); }

    /// The location of the root folder.
    AutoCFURL RootDirectory() const { return MakeURL(rootDirectory); }

    HFSUniStr255 volumeName;
    FSVolumeInfo info;
    FSVolumeRefNum actualVolume;
    FSRef rootDirectory;

  private:
    void GetVolInfo(FSVolumeRefNum volume, short index);
};

/// A volume: its root folder as an item, and what the platform says of it.
struct VolumeLink {
    /// These throw FailedToGetFileItem when the root folder cannot be looked up, and what VolInfo throws.
    explicit VolumeLink(VolInfo const& info);
    VolumeLink(ByRefNum by, short number) : VolumeLink(VolInfo(by, number)) {}
    VolumeLink(ByIndex by, short index) : VolumeLink(VolInfo(by, index)) {}

    MacintoshPlatform::FileItem root;
    VolInfo volume;
};

/// The volumes in the order of their places; NoSuchObject ends them. Of those that are asked for by name the
/// others are not looked at, so that one that does not answer is in nobody's way.
class VolumeIterator {
  public:
    VolumeLink First();
    VolumeLink Next();
    /// Those of a name, byte for byte. Throw IllegalFileName and IllegalFileNameLength for what no volume can
    /// be called.
    VolumeLink First(unsigned char const* name, unsigned long length);
    VolumeLink Next(unsigned char const* name, unsigned long length);

  private:
    short index = 0;
};

/// The volume at a place; NoSuchObject when there is none.
VolumeLink volume_of_index(unsigned long long index);
/// The volume that an item is on; NoSuchObject when it is on none, as what is in /proc.
VolumeLink volume_of_file(file const& object);
VolumeLink volume_of_folder(folder const& object);

/// Whether they have the same reference number.
boolean operator==(VolumeLink const& left, VolumeLink const& right);

inspector_string name_of(VolumeLink const& volume);

/// Bytes; free ones are those that a user without privileges may fill.
integer total_space_of(VolumeLink const& volume);
integer free_space_of(VolumeLink const& volume);
integer used_space_of(VolumeLink const& volume);
/// Rounded down, so that they need not add up to 100. NoSuchObject for a volume without bytes.
integer percent_free_of(VolumeLink const& volume);
integer percent_used_of(VolumeLink const& volume);

integer files_of(VolumeLink const& volume);
integer directories_of(VolumeLink const& volume);
/// The number of files, whatever the phrase says: that is what it has always been.
integer alloc_of(VolumeLink const& volume);
/// FSVolumeInfo::flags.
integer flags_of(VolumeLink const& volume);

/// Dates are kept in local time since 1904. NoSuchObject for one that 32 bits of seconds do not hold.
moment init_date_of(VolumeLink const& volume);
moment modification_time_of(VolumeLink const& volume);

/// Forgets the volumes that were found for items.
void ClearVolCache(void*);
