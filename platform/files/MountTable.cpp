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
#include <memory>
#include <tuple>
#include <utility>

#include "foundation/PathStyles.h"

namespace Platform {

namespace {

constexpr char const* kKernelTable = "/proc/self/mountinfo";
constexpr SInt16 kFirstNumber = -100;
constexpr SInt16 kLowestNumber = -32000;  // then the numbers begin anew, with those that are free
constexpr std::size_t kMostVolumes =
    10000;  // so that a free number is always found; the others are not listed

std::string Text(char const* text) { return text != nullptr ? text : ""; }

// A file system whose server may not answer: nothing is asked of it that was not asked for. FUSE counts, as
// its servers are programs.
bool MayHang(libmnt_fs* entry) {
    std::string const type = Text(mnt_fs_get_fstype(entry));
    return mnt_fs_is_netfs(entry) != 0 || type.starts_with("fuse");
}

// Asks the mounted file system itself.
void Inspect(Mount& mount) {
    struct statx status;
    struct statvfs space;
    unsigned const wanted = STATX_BASIC_STATS | STATX_MNT_ID;
    if (statx(AT_FDCWD, mount.target.c_str(), AT_NO_AUTOMOUNT, wanted, &status) != 0) return;
    mount.hidden = (status.stx_mask & STATX_MNT_ID) != 0 && status.stx_mnt_id != mount.id;
    if (mount.hidden || statvfs(mount.target.c_str(), &space) != 0) return;
    mount.device = makedev(status.stx_dev_major, status.stx_dev_minor);
    mount.root.clear();
    mount.hasBytes = space.f_blocks != 0;
}

Mount ReadMount(libmnt_fs* entry) {
    Mount mount;
    mount.id = static_cast<std::uint64_t>(mnt_fs_get_id(entry));
    mount.target = Text(mnt_fs_get_target(entry));
    mount.source = Text(mnt_fs_get_srcpath(entry));
    mount.device = mnt_fs_get_devno(entry);
    mount.root = Text(mnt_fs_get_root(entry));
    std::string const type = Text(mnt_fs_get_fstype(entry));
    if (MayHang(entry)) {
        mount.hasBytes = mnt_fs_is_pseudofs(entry) == 0 && type != "fuse.portal";
    } else if (type != "autofs") {  // a look at one would mount what it stands for
        Inspect(mount);
    }
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
        return std::tie(old.mountPoint, old.source) == std::tie(volume.mountPoint, volume.source);
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
        Volume volume{0, mounts[index].target, mounts[index].source};
        volume.number = numbers[index] = NumberFor(volume, before);
        volumes.push_back(std::move(volume));
    }
    numbersOfMounts.clear();
    for (std::size_t i = 0; i < mounts.size(); ++i)
        numbersOfMounts[mounts[i].id] = listed[i] ? numbers[*listed[i]] : 0;
}

SInt16 MountTable::NumberOf(std::uint64_t mountId) {
    std::lock_guard const lock(mutex);
    if (!WasJustChecked() || !numbersOfMounts.contains(mountId)) RefreshIfChanged();
    auto const number = numbersOfMounts.find(mountId);
    return number == numbersOfMounts.end() ? SInt16{0} : number->second;
}

std::vector<Volume> MountTable::Volumes() {
    std::lock_guard const lock(mutex);
    RefreshIfChanged();
    return volumes;
}

std::string NameOfVolume(Volume const& volume) {
    std::string label = LabelOf(volume.source);
    if (!label.empty()) return label;
    return volume.mountPoint == "/" ? "root" : std::string(LastComponent(volume.mountPoint));
}

std::optional<std::string> MountPointOfVolume(std::string_view name) {
    for (Volume const& volume : MountTable::Shared().Volumes()) {
        if (NameOfVolume(volume) == name) return volume.mountPoint;
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
    return PlaceOnVolume{NameOfVolume(*best), std::string(path.substr(best->mountPoint.size()))};
}

}  // namespace Platform
