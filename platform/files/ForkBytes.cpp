#include "files/ForkBytes.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <string>
#include <utility>

#include "files/CheckIn.h"
#include "files/Errors.h"
#include "files/ExtendedAttributes.h"
#include "files/Locations.h"
#include "files/Lookup.h"
#include "files/MacMetadata.h"

namespace Platform {

namespace {

// More than any such file of use has, and little enough to keep.
constexpr std::size_t kMostReadWhenOpened = std::size_t{16} << 20;
constexpr std::size_t kReadAtOnce = std::size_t{8} << 20;

// File systems whose files are made when they are read: their sizes say nothing.
bool MakesFiles(decltype(statfs::f_type) type) {
    switch (static_cast<unsigned long>(type)) {
        case BINFMTFS_MAGIC:
        case BPF_FS_MAGIC:
        case CGROUP_SUPER_MAGIC:
        case CGROUP2_SUPER_MAGIC:
        case DEBUGFS_MAGIC:
        case EFIVARFS_MAGIC:
        case NSFS_MAGIC:
        case PROC_SUPER_MAGIC:
        case PSTOREFS_MAGIC:
        case RDTGROUP_SUPER_MAGIC:
        case SECURITYFS_MAGIC:
        case SELINUX_MAGIC:
        case SMACK_MAGIC:
        case SYSFS_MAGIC:
        case TRACEFS_MAGIC:
        case XENFS_SUPER_MAGIC:
        case 0x62656570:  // configfs
        case 0x6E667364:  // control files of the NFS server
        case 0x65735543:  // control files of FUSE
        case 0x19800202:  // POSIX message queues
            return true;
        default:
            return false;
    }
}

// The next bytes of a file that is open without blocking; none when it has no more to say, for now or at all.
OSErr ReadNext(int file, std::span<UInt8> to, std::size_t& actual) {
    if (!MayGoOn(0)) return userCanceledErr;
    ssize_t count;
    do count = read(file, to.data(), to.size());
    while (count < 0 && errno == EINTR);
    if (count < 0 && errno != EAGAIN) return ErrorOfErrno(errno);
    actual = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    return noErr;
}

OSErr ReadWhole(int file, ForkBytes& bytes) {
    constexpr std::size_t piece = 65536;
    auto const whole = std::make_shared<std::vector<UInt8>>();
    for (std::size_t size = 0, actual = 0;; size += actual) {
        if (size > kMostReadWhenOpened) return ioErr;
        whole->resize(size + piece);
        OSErr const error = ReadNext(file, {whole->data() + size, piece}, actual);
        if (error != noErr) return error;
        if (actual == 0) {
            whole->resize(size);
            break;
        }
    }
    bytes.memory = whole;
    return noErr;
}

// The kind of the file that is to be opened. A link that was described by itself is opened all the same: it
// may have come to lead somewhere, and to say why it does not is the file system's business.
OSErr ModeOf(Place place, Item const& item, mode_t& mode) {
    mode = item.status.stx_mode;
    if (!item.isLinkItself) return noErr;
    struct stat target;
    if (fstatat(place.folder, place.path, &target, 0) != 0) return ErrorOfErrno(errno);
    mode = target.st_mode;
    return noErr;
}

OSErr OpenRegular(Place place, Item const& item, bool isMadeWhenRead, ForkBytes& bytes) {
    int const descriptor = openat(place.folder, place.path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) return ErrorOfErrno(errno);
    auto const file = std::make_shared<Descriptor const>(descriptor);
    struct stat status;
    if (fstat(descriptor, &status) != 0) return ErrorOfErrno(errno);
    bool const isTheItem = status.st_ino == item.status.stx_ino && status.st_dev == item.Device();
    if (!S_ISREG(status.st_mode) || !(isTheItem || item.isLinkItself)) return fnfErr;  // replaced just now
    struct statfs system;
    isMadeWhenRead |= fstatfs(descriptor, &system) == 0 && MakesFiles(system.f_type);
    if (isMadeWhenRead) return ReadWhole(descriptor, bytes);
    bytes.file = file;
    return noErr;
}

// Opens the part of a file that holds the fork.
OSErr OpenPart(Place place, ByteRange part, ForkBytes& bytes) {
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    int const descriptor = openat(place.folder, place.path, flags);
    if (descriptor < 0) return ErrorOfErrno(errno);
    auto const file = std::make_shared<Descriptor const>(descriptor);
    struct stat status;
    if (fstat(descriptor, &status) != 0) return ErrorOfErrno(errno);
    if (!S_ISREG(status.st_mode)) return eofErr;  // replaced just now
    bytes.file = file;
    bytes.part = part;
    return noErr;
}

// The value of an attribute, but for what may stand behind the fork.
OSErr ReadAttribute(Place item, std::string const& name, std::size_t length, ForkBytes& bytes) {
    constexpr std::size_t most = 65536;  // that an attribute can have
    auto value = ExtendedAttributes(item).Value(name, most);
    if (value.empty()) return eofErr;
    value.resize(std::min(value.size(), length));
    bytes.memory = std::make_shared<std::vector<UInt8> const>(std::move(value));
    return noErr;
}

OSErr OpenForkInMetadata(Place item, ForkBytes& bytes) {
    MacMetadata metadata;
    ReadMacMetadata(item, false, {}, metadata);
    auto const& [store, name, offset, length] = metadata.resourceFork;
    if (length == 0 || store == ResourceForkPlace::Store::None) return eofErr;
    if (store == ResourceForkPlace::Store::Attribute) return ReadAttribute(item, name, length, bytes);
    return OpenPart({item.folder, Beside(item, name).c_str()}, {offset, length}, bytes);
}

OSErr ReadFile(int file, SInt64 from, std::span<UInt8> to, std::size_t& actual) {
    constexpr SInt64 most = std::numeric_limits<SInt64>::max();
    to = to.first(std::min<std::uint64_t>(to.size(), static_cast<std::uint64_t>(most - from)));
    while (actual < to.size()) {
        if (!MayGoOn(0)) return userCanceledErr;
        std::size_t const piece = std::min(to.size() - actual, kReadAtOnce);
        ssize_t const count =
            pread(file, to.data() + actual, piece, static_cast<off_t>(from) + static_cast<off_t>(actual));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return ErrorOfErrno(errno);
        if (count == 0) break;
        actual += static_cast<std::size_t>(count);
    }
    return noErr;
}

}  // namespace

OSErr OpenDataFork(FSRef const& reference, bool isMadeWhenRead, ForkBytes& bytes) {
    FoundItem found;
    if (OSErr const error = FindReferenced(reference, found); error != noErr) return error;
    SystemPath const place(found.location);
    if (place.Error() != 0) return ErrorOfErrno(place.Error());
    mode_t mode = 0;
    if (OSErr const error = ModeOf(place.Get(), found.item, mode); error != noErr) return error;
    if (S_ISDIR(mode)) return notAFileErr;
    return S_ISREG(mode) ? OpenRegular(place.Get(), found.item, isMadeWhenRead, bytes) : OSErr{noErr};
}

OSErr OpenResourceFork(FSRef const& reference, ForkBytes& bytes) {
    FoundItem found;
    if (OSErr const error = FindReferenced(reference, found); error != noErr) return error;
    SystemPath const path(found.location);
    if (path.Error() != 0) return ErrorOfErrno(path.Error());
    mode_t mode = 0;
    if (OSErr const error = ModeOf(path.Get(), found.item, mode); error != noErr) return error;
    if (S_ISDIR(mode)) return notAFileErr;
    if (!found.item.isLink) return OpenForkInMetadata(path.Get(), bytes);
    std::string target;  // which has the metadata, and its companions beside it
    int const error = PathWithoutLinks(found.location.path.Text(), target);
    return error != 0 ? ErrorOfErrno(error) : OpenForkInMetadata({AT_FDCWD, target.c_str()}, bytes);
}

OSErr CountBytes(ForkBytes const& bytes, SInt64& count) {
    count = bytes.memory ? static_cast<SInt64>(bytes.memory->size()) : 0;
    if (bytes.part) count = static_cast<SInt64>(bytes.part->length);
    if (!bytes.file || bytes.part) return noErr;
    struct stat status;
    if (fstat(bytes.file->Number(), &status) != 0) return ErrorOfErrno(errno);
    count = status.st_size;
    return noErr;
}

OSErr ReadBytes(ForkBytes const& bytes, SInt64 from, std::span<UInt8> to, std::size_t& actual) {
    actual = 0;
    if (bytes.part) {
        std::uint64_t const behind = bytes.part->length - std::min<std::uint64_t>(from, bytes.part->length);
        to = to.first(std::min<std::uint64_t>(to.size(), behind));
        from += static_cast<SInt64>(bytes.part->offset);
    }
    if (bytes.file) return ReadFile(bytes.file->Number(), from, to, actual);
    auto const size = bytes.memory ? static_cast<SInt64>(bytes.memory->size()) : 0;
    if (from >= size) return noErr;
    actual = std::min(to.size(), static_cast<std::size_t>(size - from));
    std::copy_n(bytes.memory->begin() + from, actual, to.begin());
    return noErr;
}

}  // namespace Platform
