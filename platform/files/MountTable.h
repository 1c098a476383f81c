#pragma once

// The mounted file systems and their volume reference numbers.
//
// Listed are the file systems that have bytes, each once: the root first, the others in the order in which
// they were mounted. The numbers go from -100 down and stay while the file system is mounted. The table is
// read from /proc/self/mountinfo when it is first needed and when the kernel says that it has changed.

#include <CoreFoundation/CFBase.h>

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Platform {

/// One line of the kernel's table, and what the system says of it.
struct Mount {
    std::uint64_t id = 0;
    std::string target;  // where it is mounted
    std::string source;  // what is mounted: a device, a server's path, or a mere word
    dev_t device = 0;    // as stat(2) says of files on it
    std::string root;    // the part of the file system that is mounted; empty where `device` tells all
    bool hasBytes = false;
    bool hidden = false;  // another is mounted over it
};

/// For each mount the index of the one that is listed for its file system; empty when none is.
std::vector<std::optional<std::size_t>> ListedMounts(std::vector<Mount> const& mounts);

/// The indexes of the listed mounts in the order of the volumes: the root first.
std::vector<std::size_t> VolumeOrder(std::vector<Mount> const& mounts,
                                     std::vector<std::optional<std::size_t>> const& listed);

/// A listed file system.
struct Volume {
    SInt16 number = 0;
    std::string mountPoint;
    std::string source;
};

/// The process's table. Safe from any thread.
class MountTable {
  public:
    static MountTable& Shared();

    /// The number of the volume that an item is on, by what statx(2) says of the item; 0 when it is not
    /// listed.
    SInt16 NumberOf(std::uint64_t mountId, dev_t device);
    /// The volumes now, in their order.
    std::vector<Volume> Volumes();

  private:
    void RefreshIfChanged();
    void Refresh();
    SInt16 NumberFor(Volume const& volume, std::vector<Volume> const& before);
    bool HasChanged();

    std::mutex mutex;
    int watched = -1;  // the kernel's table, open to be told of changes
    std::vector<Volume> volumes;
    std::map<std::uint64_t, SInt16> numbersOfMounts;
    std::map<std::pair<std::uint64_t, dev_t>, SInt16>
        answers;  // as NumberOf gave them since the last reading
    SInt16 lastNumber = -99;
};

/// The name of a volume: its label; else the last component of its mount point; else "root".
std::string NameOfVolume(Volume const& volume);
/// The mount point of the first volume with a name; empty when there is none.
std::optional<std::string> MountPointOfVolume(std::string_view name);

/// A volume's name, and the rest of a path behind its mount point.
struct PlaceOnVolume {
    std::string volume;
    std::string rest;
};
/// The volume on whose mount point an absolute path goes on. Empty when none is listed.
std::optional<PlaceOnVolume> VolumeOfPath(std::string_view path);

}  // namespace Platform
