#pragma once

// The mounted file systems and their volume reference numbers.
//
// Listed are the file systems that have bytes, each once: the root first, the others in the order in which
// they were mounted. The numbers go from -100 down and stay while the file system is mounted. The table is
// read when it is first needed and when the kernel says that it has changed.
//
// Reading it asks nothing of file systems whose servers may not answer, nor anything that lies below them.

#include <CoreFoundation/CFBase.h>

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// One line of the kernel's table, and what the system says of it.
struct Mount {
    std::uint64_t id = 0;
    std::uint64_t parent = 0;  // the id of the mount that it is mounted on
    std::string target;        // where it is mounted
    std::string source;        // what is mounted: a device, a server's path, or a mere word
    dev_t device = 0;          // as stat(2) says of files on it
    std::string root;          // the part of the file system that is mounted; empty where `device` tells all
    bool hasBytes = false;
    bool hidden = false;      // another is mounted over it
    bool mayHang = false;     // its server may not answer; what was not asked of it is left at its default
    std::uint64_t fsid = 0;   // what statvfs(3) tells file systems apart by; 0 where it does not
    bool makesFiles = false;  // see MakesFilesWhenRead
};

/// For each mount the index of the one that is listed for its file system; empty when none is.
std::vector<std::optional<std::size_t>> ListedMounts(std::vector<Mount> const& mounts);

/// Whether the server of a file system of this type may not answer: a network, a cluster, another machine, or
/// a program.
bool MayHang(std::string const& type);

/// Whether files on a file system of this type are made when they are read, and their sizes say nothing, of
/// those types that statfs(2) does not tell apart: what containers see of /proc.
bool MakesFilesWhenRead(std::string const& type);

/// Marks the mounts below one that may hang: the way there leads through it. The root counts for itself only.
/// Of all those it tells which are hidden, as far as the table says.
void MarkSlowMounts(std::vector<Mount>& mounts);

/// The indexes of the listed mounts in the order of the volumes: the root first.
std::vector<std::size_t> VolumeOrder(std::vector<Mount> const& mounts,
                                     std::vector<std::optional<std::size_t>> const& listed);

/// A listed file system.
struct Volume {
    SInt16 number = 0;
    std::string mountPoint;
    std::string source;
    std::uint64_t mount = 0;  // the id of the mount
    std::uint64_t fsid = 0;   // as that of a Mount
    bool mayHang = false;
};

/// A mount whose server may not answer. The id tells it from another that takes its place.
struct SlowMount {
    std::uint64_t id = 0;
    std::string mountPoint;
    bool makesFiles = false;  // see MakesFilesWhenRead
};

/// Where a table of mounts comes from.
class MountSource {
  public:
    virtual ~MountSource() = default;
    /// All mounts, in the order in which they were mounted.
    virtual std::vector<Mount> Read() = 0;
    /// Whether they have changed since the last Read, or since it was asked last.
    virtual bool HasChanged() = 0;
    /// The name of a volume as its device, or else its mount point, has it.
    virtual std::string ReadName(Volume const& volume) = 0;
};

/// The volumes of a source and their numbers. Safe from any thread.
class MountTable {
  public:
    explicit MountTable(std::unique_ptr<MountSource> from) : source(std::move(from)) {}
    /// The table of the process's mounts, as the kernel has them.
    static MountTable& Shared();

    /// The number of the volume that an item is on, by the mount that statx(2) says it is on; 0 when it is
    /// not listed. A mount that has taken the id of one that was unmounted may pass for that one for 10 ms.
    SInt16 NumberOf(std::uint64_t mountId);
    /// Whether items on a mount may have extended attributes: what `probe` answered for it last, which is
    /// asked once for each mount as long as the mounts do not change.
    bool HasAttributes(std::uint64_t mountId, std::function<bool()> const& probe);
    /// The volumes now, in their order.
    std::vector<Volume> Volumes();
    /// The name of one of them. It is read once and kept for as long as the volume is listed.
    std::string NameOf(Volume const& volume);
    /// Takes a volume that was found not to be at its mount point any more off the list, until the mounts
    /// change.
    void Drop(Volume const& volume);
    /// The mount whose server may not answer and on which a path lies, by its text; empty when it lies on
    /// none. Cheap where there is no such mount at all. It may tell of the mounts as they were 10 ms ago.
    std::optional<SlowMount> SlowMountOf(std::string_view path);
    /// Whether there is a mount whose server may not answer, as of 10 ms ago. Cheap.
    bool HasSlowMounts();
    /// The names of items of the folder at a path that are mount points of such mounts, by their texts.
    std::vector<std::string> SlowMountPointsIn(std::string_view folder);

  private:
    using Clock = std::chrono::steady_clock;

    void RefreshIfChanged();
    bool WasJustChecked() const;
    void Refresh();
    SInt16 NumberFor(Volume const& volume, std::vector<Volume> const& before);

    std::mutex mutex;
    std::unique_ptr<MountSource> source;
    std::optional<Clock::time_point> lastCheck;  // when the source was asked for changes; empty before Read
    std::vector<Volume> volumes;
    std::map<std::uint64_t, SInt16> numbersOfMounts;
    std::map<std::uint64_t, bool> attributesOfMounts;  // of mounts that were asked for theirs
    std::map<SInt16, std::string> names;               // of volumes that were asked for theirs
    std::vector<Mount> visible;                        // mounts that are not hidden; none where none may hang
    SInt16 lastNumber = -99;
};

/// The name of a volume, read anew: its label; else the last component of its mount point; else "root".
std::string ReadNameOfVolume(Volume const& volume);
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
