// The File Manager's function on volumes.

#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <memory>
#include <optional>

#include "files/Errors.h"
#include "files/Lookup.h"
#include "files/MountTable.h"
#include "files/Patience.h"
#include "files/VolumeInfo.h"
#include "foundation/Object.h"

using namespace Platform;

namespace {

// What to learn of a volume where it is mounted.
struct Wanted {
    FSVolumeInfoBitmap info = kFSVolInfoNone;
    bool root = false;

    bool IsNothing() const { return info == kFSVolInfoNone && !root; }
};
struct Learned {
    FSVolumeInfo info{};
    FSRef root{};
};

std::int64_t PresentLocalOffset() {
    tzset();
    std::time_t const now = std::time(nullptr);
    std::tm local{};
    return localtime_r(&now, &local) != nullptr ? local.tm_gmtoff : 0;
}

// A folder, held open so that all that is asked is asked of the same one.
class HeldFolder {
  public:
    explicit HeldFolder(std::string const& path)
        : descriptor(open(path.c_str(), O_PATH | O_CLOEXEC)), error(descriptor >= 0 ? 0 : errno) {}
    HeldFolder(HeldFolder const&) = delete;
    HeldFolder& operator=(HeldFolder const&) = delete;
    ~HeldFolder() {
        if (descriptor >= 0) close(descriptor);
    }

    /// Both answer 0 or a value of errno: why it could not be opened, and why it does not answer.
    int Error() const { return error; }
    int Ask(VolumeFacts& facts) const {
        constexpr unsigned wanted = STATX_BASIC_STATS | STATX_BTIME | STATX_MNT_ID;
        bool const asked = statx(descriptor, "", AT_EMPTY_PATH, wanted, &facts.root) == 0 &&
                           fstatvfs(descriptor, &facts.space) == 0;
        return asked ? 0 : errno;
    }

  private:
    int descriptor;
    int error;
};

// Whether it is the volume that answered, and not one that has taken its place or covers it.
bool IsOf(VolumeFacts const& facts, Volume const& volume) {
    bool const sameMount = (facts.root.stx_mask & STATX_MNT_ID) == 0 || facts.root.stx_mnt_id == volume.mount;
    return sameMount && (volume.fsid == 0 || facts.space.f_fsid == volume.fsid);
}

// The device that the volume is on; else the file system's own number, which is that of no device.
dev_t DeviceOf(Volume const& volume, struct statx const& root) {
    struct stat source;
    bool const isDevice = volume.source.starts_with("/dev/") && stat(volume.source.c_str(), &source) == 0 &&
                          S_ISBLK(source.st_mode);
    return isDevice ? source.st_rdev : makedev(root.stx_dev_major, root.stx_dev_minor);
}

// nsvErr when there is another mount at the volume's place now, or nothing.
OSErr MakeRootReference(Volume const& volume, FSRef& root) {
    auto const* const path = reinterpret_cast<UInt8 const*>(volume.mountPoint.c_str());
    FSCatalogInfo catalog{};
    auto error = static_cast<OSErr>(FSPathMakeRef(path, &root, nullptr));
    if (error == noErr)
        error = FSGetCatalogInfo(&root, kFSCatInfoVolume, &catalog, nullptr, nullptr, nullptr);
    bool const isGone = error == fnfErr || error == dirNFErr;
    if (error != noErr) return isGone ? OSErr{nsvErr} : error;
    return catalog.volume == volume.number ? OSErr{noErr} : OSErr{nsvErr};
}

// nsvErr tells that the volume is not there any more, and nothing else.
OSErr Learn(Volume const& volume, Wanted wanted, Learned& learned) {
    HeldFolder const root(volume.mountPoint);
    int const missing = root.Error();
    if (missing == ENOENT || missing == ENOTDIR) return nsvErr;
    VolumeFacts facts;
    int const error = missing != 0 ? missing : root.Ask(facts);
    if (error == ESTALE || error == ENODEV) return volOffLinErr;  // the server has forgotten it
    if (error != 0) return ErrorOfErrno(error);
    if (!IsOf(facts, volume)) return nsvErr;
    facts.isDeviceWriteProtected = (wanted.info & kFSVolInfoFlags) != 0 &&
                                   IsWriteProtected("/sys/dev/block", DeviceOf(volume, facts.root));
    facts.isRoot = volume.mountPoint == "/";
    facts.localOffset = PresentLocalOffset();
    learned.info = VolumeInfoOf(facts, wanted.info);
    return wanted.root ? MakeRootReference(volume, learned.root) : OSErr{noErr};
}

// What is learned is shared with the work, which may outlive this call.
OSErr LearnPatiently(Volume const& volume, Wanted wanted, Learned& learned) {
    auto const shared = std::make_shared<Learned>();
    OSErr const error = CallPatiently({volume.mount, volume.mountPoint}, VolumePatience(),
                                      [=] { return Learn(volume, wanted, *shared); });
    if (error == noErr) learned = *shared;
    return error;
}

std::optional<Volume> FindVolume(FSVolumeRefNum number, ItemCount index) {
    auto const volumes = MountTable::Shared().Volumes();
    if (index != 0) return index <= volumes.size() ? std::optional(volumes[index - 1]) : std::nullopt;
    for (Volume const& volume : volumes) {
        if (volume.number == number) return volume;
    }
    return std::nullopt;
}

// Finds a volume and learns of it. One that turns out to have gone is looked for again: a reference number
// then finds none, and an index the one that has its place now.
OSErr FindAndLearn(FSVolumeRefNum number, ItemCount index, Wanted wanted, Volume& found, Learned& learned) {
    for (;;) {
        auto const volume = FindVolume(number, index);
        if (!volume) return nsvErr;
        found = *volume;
        if (wanted.IsNothing()) return noErr;
        OSErr const error = (found.mayHang ? LearnPatiently : Learn)(found, wanted, learned);
        if (error != nsvErr) return error;
        MountTable::Shared().Drop(found);
    }
}

}  // namespace

OSErr FSGetVolumeInfo(FSVolumeRefNum volume, ItemCount volumeIndex, FSVolumeRefNum* actualVolume,
                      FSVolumeInfoBitmap whichInfo, FSVolumeInfo* info, HFSUniStr255* volumeName,
                      FSRef* rootDirectory) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (static_cast<SInt32>(volumeIndex) < 0) return paramErr;
        if ((whichInfo & ~FSVolumeInfoBitmap{kFSVolInfoGettableInfo}) != 0) return errFSBadInfoBitmap;
        Wanted const wanted{info != nullptr ? whichInfo : FSVolumeInfoBitmap{kFSVolInfoNone},
                            rootDirectory != nullptr};
        Volume found;
        Learned learned;
        if (OSErr const error = FindAndLearn(volume, volumeIndex, wanted, found, learned); error != noErr)
            return error;
        if (actualVolume != nullptr) *actualVolume = found.number;
        if (info != nullptr) *info = learned.info;
        if (volumeName != nullptr) *volumeName = CarbonName(MountTable::Shared().NameOf(found));
        if (rootDirectory != nullptr) *rootDirectory = learned.root;
        return noErr;
    });
}
