#include "files/Catalog.h"

#include <Carbon/MacErrors.h>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "files/CheckIn.h"
#include "files/Dates.h"
#include "files/Errors.h"
#include "files/Locations.h"
#include "files/MountTable.h"
#include "foundation/PathStyles.h"

namespace Platform {

namespace {

int Look(char const* path, int flags, struct statx& status) {
    constexpr unsigned wanted = STATX_BASIC_STATS | STATX_BTIME | STATX_MNT_ID;
    return statx(AT_FDCWD, path, flags, wanted, &status) == 0 ? 0 : errno;
}

// Describes a link by its target where the rule says so.
void FollowLink(char const* path, LinkRule rule, Item& item) {
    struct statx target;
    bool const reached = rule != LinkRule::Itself && Look(path, 0, target) == 0;
    item.isLinkItself = !reached || (rule == LinkRule::Listed && S_ISDIR(target.stx_mode));
    if (!item.isLinkItself) item.status = target;
}

// What is needed to fill in one item's information.
class Filler {
  public:
    Filler(Location const& itemLocation, Item const& inspected, FSCatalogInfoBitmap which,
           FSCatalogInfo& result)
        : location(itemLocation), item(inspected), status(inspected.status), wanted(which), info(result) {}

    void Fill(CatalogOptions options) {
        if (!item.isLinkItself && NeedsMetadata()) ReadMetadata(options.companions);
        FillNode();
        FillDates();
        FillPermissions();
        if (Wants(kFSCatInfoFinderInfo)) FillFinderInfo();
        if (Wants(kFSCatInfoFinderXInfo)) FillExtendedFinderInfo();
        FillSizes();
        if (Wants(kFSCatInfoValence) && item.IsFolder()) info.valence = CountEntries();
        if (Wants(kFSCatInfoTextEncoding)) info.textEncodingHint = 126;  // Unicode
    }

  private:
    bool Wants(FSCatalogInfoBitmap field) const { return (wanted & field) != 0; }
    bool HasBirthTime() const { return (status.stx_mask & STATX_BTIME) != 0; }

    bool NeedsMetadata() const {
        FSCatalogInfoBitmap fields = kFSCatInfoNodeFlags | kFSCatInfoBackupDate | kFSCatInfoFinderInfo |
                                     kFSCatInfoFinderXInfo | kFSCatInfoRsrcSizes;
        if (!HasBirthTime()) fields |= kFSCatInfoCreateDate;
        return Wants(fields);
    }

    // Metadata belong to the target of a link, and its companions lie beside the target.
    void ReadMetadata(Companions companions) {
        if (!item.isLink) {
            metadata = ReadMacMetadata(location.path, item.IsFolder(), companions);
            return;
        }
        std::string target;
        if (PathWithoutLinks(location.path, target) != 0) return;
        metadata = ReadMacMetadata(target, item.IsFolder(), Companions::LookFor);
    }

    void FillNode() {
        bool const immutable = (status.stx_attributes & STATX_ATTR_IMMUTABLE) != 0;
        bool const volumeRoot = (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0 && item.IsFolder();
        if (Wants(kFSCatInfoNodeFlags)) {
            if (item.IsFolder()) info.nodeFlags |= kFSNodeIsDirectoryMask;
            if (immutable || metadata.locked) info.nodeFlags |= kFSNodeLockedMask;
        }
        if (Wants(kFSCatInfoVolume)) info.volume = VolumeOf(item);
        if (Wants(kFSCatInfoParentDirID)) info.parentDirID = ParentNumber(location.path);
        if (Wants(kFSCatInfoNodeID))
            info.nodeID = volumeRoot ? UInt32{fsRtDirID} : static_cast<UInt32>(status.stx_ino);
    }

    UTCDateTime CreationTime() const {
        if (HasBirthTime()) return CarbonTime(status.stx_btime);
        if (metadata.created) return CarbonTimeOfAppleDouble(*metadata.created);
        return CarbonTime(Older(Older(status.stx_mtime, status.stx_ctime), status.stx_atime));
    }

    void FillDates() {
        if (Wants(kFSCatInfoCreateDate)) info.createDate = CreationTime();
        if (Wants(kFSCatInfoContentMod)) info.contentModDate = CarbonTime(status.stx_mtime);
        if (Wants(kFSCatInfoAttrMod)) info.attributeModDate = CarbonTime(status.stx_ctime);
        if (Wants(kFSCatInfoAccessDate)) info.accessDate = CarbonTime(status.stx_atime);
        if (Wants(kFSCatInfoBackupDate) && metadata.backedUp)
            info.backupDate = CarbonTimeOfAppleDouble(*metadata.backedUp);
    }

    void FillPermissions() {
        if (Wants(kFSCatInfoPermissions)) {
            info.permissions.userID = status.stx_uid;
            info.permissions.groupID = status.stx_gid;
            info.permissions.mode = status.stx_mode;
        }
        if (Wants(kFSCatInfoUserAccess)) info.permissions.userAccess = UserAccess();
    }

    UInt8 UserAccess() const {
        constexpr struct {
            int mode;
            UInt8 bit;
        } rights[] = {{W_OK, 1}, {R_OK, 2}, {X_OK, 4}};
        SystemPath const path(location.path);
        int const flags = AT_EACCESS | (item.isLinkItself ? AT_SYMLINK_NOFOLLOW : 0);
        UInt8 result = 0;
        for (auto const& right : rights) {
            if (faccessat(AT_FDCWD, path.Get(), right.mode, flags) == 0) result |= right.bit;
        }
        return result;
    }

    UInt16 FinderFlags(FinderBytes const& bytes) const {
        UInt16 flags = BigEndian16(bytes.data() + 8);
        if (item.isLink) flags |= kIsAlias;
        if (LastComponent(location.path).starts_with('.')) flags |= kIsInvisible;
        return flags;
    }

    void FillFinderInfo() {
        FinderBytes const bytes = metadata.finderInfo.value_or(FinderBytes{});
        unsigned char const* const from = bytes.data();
        if (item.IsFolder()) {
            FolderInfo const folder{
                {Signed16(from), Signed16(from + 2), Signed16(from + 4), Signed16(from + 6)},
                FinderFlags(bytes),
                {Signed16(from + 10), Signed16(from + 12)},
                BigEndian16(from + 14)};
            std::memcpy(info.finderInfo, &folder, sizeof folder);
            return;
        }
        FileInfo file{BigEndian32(from),
                      BigEndian32(from + 4),
                      FinderFlags(bytes),
                      {Signed16(from + 10), Signed16(from + 12)},
                      BigEndian16(from + 14)};
        if (item.isLinkItself) {
            file.fileType = kSymLinkFileType;
            file.fileCreator = kSymLinkCreator;
        }
        std::memcpy(info.finderInfo, &file, sizeof file);
    }

    void FillExtendedFinderInfo() {
        FinderBytes const bytes = metadata.finderInfo.value_or(FinderBytes{});
        unsigned char const* const from = bytes.data() + 16;
        auto const putAway = static_cast<SInt32>(BigEndian32(from + 12));
        if (item.IsFolder()) {
            ExtendedFolderInfo const folder{{Signed16(from), Signed16(from + 2)},
                                            static_cast<SInt32>(BigEndian32(from + 4)),
                                            BigEndian16(from + 8),
                                            Signed16(from + 10),
                                            putAway};
            std::memcpy(info.extFinderInfo, &folder, sizeof folder);
            return;
        }
        ExtendedFileInfo const file{
            {Signed16(from), Signed16(from + 2), Signed16(from + 4), Signed16(from + 6)},
            BigEndian16(from + 8),
            Signed16(from + 10),
            putAway};
        std::memcpy(info.extFinderInfo, &file, sizeof file);
    }

    static SInt16 Signed16(unsigned char const* bytes) { return static_cast<SInt16>(BigEndian16(bytes)); }

    void FillSizes() {
        constexpr UInt64 blockUnit = 512;  // of stx_blocks, whatever the file system's blocks are
        if (Wants(kFSCatInfoDataSizes) && !item.IsFolder()) {
            info.dataLogicalSize = status.stx_size;
            info.dataPhysicalSize = status.stx_blocks * blockUnit;
        }
        if (Wants(kFSCatInfoRsrcSizes)) {
            UInt64 const length = metadata.resourceFork.length;
            UInt64 const block = std::max<UInt64>(status.stx_blksize, 1);
            info.rsrcLogicalSize = length;
            info.rsrcPhysicalSize = (length + block - 1) / block * block;
        }
    }

    UInt32 CountEntries() const {
        SystemPath const path(location.path);
        std::unique_ptr<DIR, int (*)(DIR*)> const folder(opendir(path.Get()), closedir);
        UInt32 count = 0;
        if (!folder) return count;
        while (dirent const* entry = readdir(folder.get())) {
            if (!IsDots(entry->d_name)) ++count;
        }
        return count;
    }

    Location const& location;
    Item const& item;
    struct statx const& status;
    FSCatalogInfoBitmap wanted;
    FSCatalogInfo& info;
    MacMetadata metadata;
};

}  // namespace

OSErr Inspect(Location const& location, Item& item) {
    if (!MayGoOn(1)) return userCanceledErr;
    SystemPath const path(location.path);
    if (path.Error() != 0) return ErrorOfErrno(path.Error());
    if (int const error = Look(path.Get(), AT_SYMLINK_NOFOLLOW, item.status); error != 0)
        return ErrorOfErrno(error);
    item.isLink = S_ISLNK(item.status.stx_mode);
    item.isLinkItself = false;
    if (item.isLink) FollowLink(path.Get(), location.rule, item);
    return noErr;
}

OSErr FillCatalogInfo(Location const& location, Item const& item, FSCatalogInfoBitmap whichInfo,
                      CatalogOptions options, FSCatalogInfo& info) {
    constexpr FSCatalogInfoBitmap known = kFSCatInfoGettableInfo | kFSCatInfoUserAccess;
    info = FSCatalogInfo{};
    if ((whichInfo & ~known) != 0) return errFSBadInfoBitmap;
    Filler(location, item, whichInfo, info).Fill(options);
    return noErr;
}

UInt32 ParentNumber(std::string const& path) {
    std::string const parent = ParentPath(path);
    if (parent.empty()) return fsRtParID;
    SystemPath const form(parent);
    struct statx status;
    if (form.Error() != 0 || Look(form.Get(), 0, status) != 0) return 0;
    return static_cast<UInt32>(status.stx_ino);
}

FSVolumeRefNum VolumeOf(Item const& item) {
    bool const known = (item.status.stx_mask & STATX_MNT_ID) != 0;
    return known ? MountTable::Shared().NumberOf(item.status.stx_mnt_id) : FSVolumeRefNum{0};
}

}  // namespace Platform
