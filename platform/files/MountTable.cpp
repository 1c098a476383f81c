#include "files/MountTable.h"

#include <blkid/blkid.h>
#include <fcntl.h>
#include <libmount/libmount.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iterator>
#include <memory>
#include <tuple>
#include <utility>

#include "foundation/PathStyles.h"
#include "foundation/Threads.h"

namespace Platform {

namespace {

constexpr char const* kKernelTable = "/proc/self/mountinfo";
constexpr SInt16 kFirstNumber = -100;
constexpr SInt16 kLowestNumber = -32000;  // then the numbers begin anew, with those that are free
constexpr std::size_t kMostVolumes =
    10000;  // so that a free number is always found; the others are not listed

std::string Text(char const* text) { return text != nullptr ? text : ""; }

// Asks the mounted file system itself.
void Inspect(Mount& mount) {
    mount.hasBytes = false;
    struct statx status;
    struct statvfs space;
    unsigned const wanted = STATX_BASIC_STATS | STATX_MNT_ID;
    if (statx(AT_FDCWD, mount.target.c_str(), AT_NO_AUTOMOUNT, wanted, &status) != 0) return;
    mount.hidden = (status.stx_mask & STATX_MNT_ID) != 0 && status.stx_mnt_id != mount.id;
    if (mount.hidden || statvfs(mount.target.c_str(), &space) != 0) return;
    mount.device = makedev(status.stx_dev_major, status.stx_dev_minor);
    mount.root.clear();
    mount.hasBytes = space.f_blocks != 0;
    mount.fsid = space.f_fsid;
}

Mount ReadMount(libmnt_fs* entry) {
    Mount mount;
    mount.id = static_cast<std::uint64_t>(mnt_fs_get_id(entry));
    mount.parent = static_cast<std::uint64_t>(mnt_fs_get_parent_id(entry));
    mount.target = Text(mnt_fs_get_target(entry));
    mount.source = Text(mnt_fs_get_srcpath(entry));
    mount.device = mnt_fs_get_devno(entry);
    mount.root = Text(mnt_fs_get_root(entry));
    mount.mayHang = MayHang(Text(mnt_fs_get_fstype(entry)));
    mount.makesFiles = MakesFilesWhenRead(Text(mnt_fs_get_fstype(entry)));
    mount.hasBytes = mnt_fs_is_pseudofs(entry) == 0 && Text(mnt_fs_get_fstype(entry)) != "fuse.portal";
    return mount;
}

std::vector<Mount> ReadMounts() {
    std::vector<Mount> mounts;
    std::unique_ptr<libmnt_table, void (*)(libmnt_table*)> const table(mnt_new_table_from_file(kKernelTable),
                                                                       mnt_unref_table);
    std::unique_ptr<libmnt_iter, void (*)(libmnt_iter*)> const iterator(mnt_new_iter(MNT_ITER_FORWARD),
                                                                        mnt_free_iter);
    if (!table || !iterator) return mounts;
    libmnt_fs* entry = nullptr;
    while (mnt_table_next_fs(table.get(), iterator.get(), &entry) == 0) mounts.push_back(ReadMount(entry));
    MarkSlowMounts(mounts);
    for (Mount& mount : mounts) {
        if (!mount.mayHang) Inspect(mount);
    }
    return mounts;
}

// The mounts that the process sees.
class KernelMounts final : public MountSource {
  public:
    KernelMounts() = default;
    KernelMounts(KernelMounts const&) = delete;
    KernelMounts& operator=(KernelMounts const&) = delete;
    ~KernelMounts() override {
        if (watched >= 0) close(watched);
    }

    std::vector<Mount> Read() override {
        if (watched < 0) watched = open(kKernelTable, O_RDONLY | O_CLOEXEC);
        return ReadMounts();
    }
    // A table that cannot be watched counts as changed.
    bool HasChanged() override {
        if (watched < 0) return true;
        pollfd request{watched, POLLPRI, 0};
        return poll(&request, 1, 0) > 0 && (request.revents & (POLLPRI | POLLERR)) != 0;
    }
    std::string ReadName(Volume const& volume) override { return ReadNameOfVolume(volume); }

  private:
    int watched = -1;  // the kernel's table, open to be told of changes
};

// The file system's label as the device has it; empty when it has none, or may not be read.
std::string ProbedLabel(std::string const& device) {
    std::unique_ptr<blkid_struct_probe, void (*)(blkid_probe)> const probe(
        blkid_new_probe_from_filename(device.c_str()), blkid_free_probe);
    if (!probe) return {};
    blkid_probe_enable_superblocks(probe.get(), 1);
    blkid_probe_set_superblocks_flags(probe.get(), BLKID_SUBLKS_LABEL);
    char const* label = nullptr;
    if (blkid_do_safeprobe(probe.get()) != 0) return {};
    blkid_probe_lookup_value(probe.get(), "LABEL", &label, nullptr);
    return Text(label);
}

// The name of a link in /dev/disk/by-label: other bytes than the common ones are written \xNN.
std::string DecodedLabel(std::string_view name) {
    std::string label;
    while (!name.empty()) {
        bool const escaped = name.size() >= 4 && name.starts_with("\\x");
        auto const isHex = [](unsigned char character) { return std::isxdigit(character) != 0; };
        if (escaped && isHex(name[2]) && isHex(name[3])) {
            label += static_cast<char>(std::stoi(std::string(name.substr(2, 2)), nullptr, 16));
            name.remove_prefix(4);
        } else {
            label += name.front();
            name.remove_prefix(1);
        }
    }
    return label;
}

// The label that the device manager has published, which anybody may read.
std::string PublishedLabel(std::filesystem::path const& device) {
    std::error_code error;
    std::filesystem::directory_iterator label("/dev/disk/by-label", error);
    for (; !error && label != std::filesystem::directory_iterator(); label.increment(error)) {
        std::error_code ignored;  // of a link to a device that has just gone
        if (std::filesystem::equivalent(label->path(), device, ignored))
            return DecodedLabel(label->path().filename().string());
    }
    return {};
}

std::string LabelOf(std::string const& source) {
    struct stat status;
    if (!source.starts_with("/dev/") || stat(source.c_str(), &status) != 0 || !S_ISBLK(status.st_mode))
        return {};
    std::string const label = PublishedLabel(source);
    return label.empty() ? ProbedLabel(source) : label;
}

bool IsFree(SInt16 number, std::vector<Volume> const& volumes) {
    return std::none_of(volumes.begin(), volumes.end(),
                        [=](Volume const& volume) { return volume.number == number; });
}

// Whether `path` is `folder` or lies below it.
bool LiesBelow(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) &&
           (path.size() == folder.size() || folder.ends_with('/') || path[folder.size()] == '/');
}

}  // namespace

// The mount library knows the common ones only. FUSE counts, as its servers are programs, and so does autofs:
// a look at one would mount what it stands for.
bool MayHang(std::string const& type) {
    constexpr std::string_view others[] = {"acfs",   "autofs", "beegfs", "ceph",     "coda",
                                           "gfs2",   "gpfs",   "lustre", "ocfs2",    "orangefs",
                                           "prl_fs", "pvfs2",  "vboxsf", "virtiofs", "vmhgfs"};
    return mnt_fstype_is_netfs(type.c_str()) != 0 || type.starts_with("fuse") ||
           std::find(std::begin(others), std::end(others), type) != std::end(others);
}

bool MakesFilesWhenRead(std::string const& type) { return type == "fuse.lxcfs"; }

std::vector<std::optional<std::size_t>> ListedMounts(std::vector<Mount> const& mounts) {
    std::map<std::pair<dev_t, std::string>, std::size_t> firsts;
    auto const key = [](Mount const& mount) { return std::pair(mount.device, mount.root); };
    auto const isRoot = [](Mount const& mount) { return mount.target == "/"; };
    for (std::size_t i = 0; i < mounts.size(); ++i) {
        if (!mounts[i].hasBytes || mounts[i].hidden) continue;
        auto const [place, isNew] = firsts.emplace(key(mounts[i]), i);
        if (!isNew && isRoot(mounts[i])) place->second = i;
    }
    std::vector<std::optional<std::size_t>> listed(mounts.size());
    for (std::size_t i = 0; i < mounts.size(); ++i) {
        if (auto const found = firsts.find(key(mounts[i])); found != firsts.end()) listed[i] = found->second;
    }
    return listed;
}

void MarkSlowMounts(std::vector<Mount>& mounts) {
    std::vector<std::string> slow;
    for (Mount const& mount : mounts) {
        if (mount.mayHang && mount.target != "/") slow.push_back(mount.target);
    }
    for (Mount& mount : mounts) {
        mount.mayHang |= std::any_of(slow.begin(), slow.end(), [&](std::string const& target) {
            return mount.target != target && LiesBelow(mount.target, target);
        });
        if (!mount.mayHang) continue;
        mount.hidden = std::any_of(mounts.begin(), mounts.end(), [&](Mount const& other) {
            return other.parent == mount.id && other.target == mount.target;
        });
    }
}

std::vector<std::size_t> VolumeOrder(std::vector<Mount> const& mounts,
                                     std::vector<std::optional<std::size_t>> const& listed) {
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < mounts.size(); ++i) {
        if (listed[i] == i) order.push_back(i);
    }
    std::stable_partition(order.begin(), order.end(), [&](std::size_t i) { return mounts[i].target == "/"; });
    return order;
}

MountTable& MountTable::Shared() {
    // It outlives every thread that may still ask at the end.
    static MountTable& table = *new MountTable(std::make_unique<KernelMounts>());
    return table;
}

void MountTable::RefreshIfChanged() {
    bool const isFirst = !lastCheck;
    lastCheck = Clock::now();
    if (isFirst || source->HasChanged()) Refresh();
}

// Whether the source was asked so recently that a look-up need not ask it again: that is a system call, and a
// listing wants the number of each item.
bool MountTable::WasJustChecked() const {
    return lastCheck && Clock::now() - *lastCheck < std::chrono::milliseconds(10);
}

// The number of a volume: the one that it had before, else the next that is free.
SInt16 MountTable::NumberFor(Volume const& volume, std::vector<Volume> const& before) {
    auto const known = std::find_if(before.begin(), before.end(), [&](Volume const& old) {
        return std::tie(old.mountPoint, old.source, old.fsid) ==
               std::tie(volume.mountPoint, volume.source, volume.fsid);
    });
    if (known != before.end() && IsFree(known->number, volumes)) return known->number;
    do {
        lastNumber = lastNumber <= kLowestNumber ? kFirstNumber : static_cast<SInt16>(lastNumber - 1);
    } while (!IsFree(lastNumber, before) || !IsFree(lastNumber, volumes));
    return lastNumber;
}

void MountTable::Refresh() {
    std::vector<Mount> const mounts = source->Read();
    auto const listed = ListedMounts(mounts);
    std::vector<Volume> const before = std::exchange(volumes, {});
    std::map<std::size_t, SInt16> numbers;
    for (std::size_t const index : VolumeOrder(mounts, listed)) {
        if (volumes.size() == kMostVolumes) break;
        Mount const& mount = mounts[index];
        Volume volume{0, mount.target, mount.source, mount.id, mount.fsid, mount.mayHang};
        volume.number = numbers[index] = NumberFor(volume, before);
        volumes.push_back(std::move(volume));
    }
    numbersOfMounts.clear();
    attributesOfMounts.clear();
    for (std::size_t i = 0; i < mounts.size(); ++i)
        numbersOfMounts[mounts[i].id] = listed[i] ? numbers[*listed[i]] : 0;
    std::erase_if(names, [&](auto const& name) { return IsFree(name.first, volumes); });
    visible.clear();
    auto const mayHang = [](Mount const& mount) { return mount.mayHang; };
    if (std::none_of(mounts.begin(), mounts.end(), mayHang)) return;
    std::copy_if(mounts.begin(), mounts.end(), std::back_inserter(visible),
                 [](Mount const& mount) { return !mount.hidden; });
}

SInt16 MountTable::NumberOf(std::uint64_t mountId) {
    std::lock_guard const lock(mutex);
    if (!WasJustChecked() || !numbersOfMounts.contains(mountId)) RefreshIfChanged();
    auto const number = numbersOfMounts.find(mountId);
    return number == numbersOfMounts.end() ? SInt16{0} : number->second;
}

bool MountTable::HasAttributes(std::uint64_t mountId, std::function<bool()> const& probe) {
    std::unique_lock lock(mutex);
    if (auto const known = attributesOfMounts.find(mountId); known != attributesOfMounts.end())
        return known->second;
    bool const isMount = numbersOfMounts.contains(mountId);
    lock.unlock();
    bool const answer = probe();  // it may take its time
    lock.lock();
    if (isMount) attributesOfMounts[mountId] = answer;
    return answer;
}

std::vector<Volume> MountTable::Volumes() {
    std::lock_guard const lock(mutex);
    RefreshIfChanged();
    return volumes;
}

// Read without the lock: it may take a device's time, and is no harm to do twice.
std::string MountTable::NameOf(Volume const& volume) {
    {
        std::lock_guard const lock(mutex);
        if (auto const known = names.find(volume.number); known != names.end()) return known->second;
    }
    std::string const name = source->ReadName(volume);
    std::lock_guard const lock(mutex);
    if (!IsFree(volume.number, volumes)) names[volume.number] = name;
    return name;
}

void MountTable::Drop(Volume const& volume) {
    std::lock_guard const lock(mutex);
    std::erase_if(volumes, [&](Volume const& listed) {
        return listed.number == volume.number && listed.mount == volume.mount;
    });
}

std::optional<SlowMount> MountTable::SlowMountOf(std::string_view path) {
    std::lock_guard const lock(mutex);
    if (!WasJustChecked()) RefreshIfChanged();
    Mount const* best = nullptr;
    for (Mount const& mount : visible) {
        if (!LiesBelow(path, mount.target)) continue;
        if (best == nullptr || mount.target.size() >= best->target.size()) best = &mount;
    }
    if (best == nullptr || !best->mayHang) return std::nullopt;
    return SlowMount{best->id, best->target, best->makesFiles};
}

bool MountTable::HasSlowMounts() {
    QuickLock const lock(mutex);
    if (!WasJustChecked()) RefreshIfChanged();
    return !visible.empty();
}

std::vector<std::string> MountTable::SlowMountPointsIn(std::string_view folder) {
    std::lock_guard const lock(mutex);
    std::vector<std::string> names;
    for (Mount const& mount : visible) {
        if (!mount.mayHang || mount.target == "/") continue;
        std::string const name(LastComponent(mount.target));
        if (JoinPaths(folder, name) == mount.target) names.push_back(name);
    }
    return names;
}

std::string ReadNameOfVolume(Volume const& volume) {
    std::string label = LabelOf(volume.source);
    if (!label.empty()) return label;
    return volume.mountPoint == "/" ? "root" : std::string(LastComponent(volume.mountPoint));
}

std::optional<std::string> MountPointOfVolume(std::string_view name) {
    MountTable& table = MountTable::Shared();
    for (Volume const& volume : table.Volumes()) {
        if (table.NameOf(volume) == name) return volume.mountPoint;
    }
    return std::nullopt;
}

std::optional<PlaceOnVolume> VolumeOfPath(std::string_view path) {
    Volume const* best = nullptr;
    auto const volumes = MountTable::Shared().Volumes();
    for (Volume const& volume : volumes) {
        if (!LiesBelow(path, volume.mountPoint)) continue;
        if (best == nullptr || volume.mountPoint.size() > best->mountPoint.size()) best = &volume;
    }
    if (best == nullptr) return std::nullopt;
    return PlaceOnVolume{MountTable::Shared().NameOf(*best),
                         std::string(path.substr(best->mountPoint.size()))};
}

}  // namespace Platform
