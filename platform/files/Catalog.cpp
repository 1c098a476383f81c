#include "files/Catalog.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "files/CheckIn.h"
#include "files/Dates.h"
#include "files/Errors.h"
#include "files/ExtendedAttributes.h"
#include "files/FolderEntries.h"
#include "files/MacMetadata.h"
#include "files/MountTable.h"

namespace Platform {

namespace {

int Look(Place place, int flags, struct statx& status) {
    constexpr unsigned wanted = STATX_BASIC_STATS | STATX_BTIME | STATX_MNT_ID;
    return statx(place.folder, place.path, flags, wanted, &status) == 0 ? 0 : errno;
}

// Describes a link by its target where the rule says so.
void FollowLink(Place place, LinkRule rule, int flags, Item& item) {
    struct statx target;
    bool const reached = rule != LinkRule::Itself && Look(place, flags, target) == 0;
    item.isLinkItself = !reached || (rule == LinkRule::Listed && S_ISDIR(target.stx_mode));
    if (!item.isLinkItself) item.status = target;
}

OSErr InspectAt(Place place, LinkRule rule, int flags, Item& item) {
    if (int const error = Look(place, AT_SYMLINK_NOFOLLOW | flags, item.status); error != 0)
        return ErrorOfErrno(error);
    item.isLink = S_ISLNK(item.status.stx_mode);
    item.isLinkItself = false;
    if (item.isLink) FollowLink(place, rule, flags, item);
    return noErr;
}

// What is needed to fill in one item's information.
class Filler {
  public:
    Filler(FoundItem const& found, Place itemPlace, FSCatalogInfoBitmap which, Listing& shown,
           FSCatalogInfo& result)
        : path(found.location.path),
          place(itemPlace),
          item(found.item),
          status(item.status),
          wanted(which),
          listing(shown),
          info(result) {}

    void Fill() {
        if (!item.isLinkItself && NeedsMetadata()) ReadMetadata();
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
    void ReadMetadata() {
        if (item.isLink) {
            std::string target;
            if (PathWithoutLinks(path.Text(), target) != 0) return;
            ReadMacMetadata({AT_FDCWD, target.c_str()}, item.IsFolder(), {}, metadata);
            return;
        }
        ReadMacMetadata(place, item.IsFolder(), {MayHaveAttributes(), listing.companions, MayHoldFolders()},
                        metadata);
    }

    // Goes over to the item's mount.
    void KnowMount() {
        if (listing.mountId == status.stx_mnt_id) return;
        listing.mountId = status.stx_mnt_id;
        listing.volume = VolumeOf(item);
        listing.attributes = true;
        listing.wasProbed = false;
    }

    // Not on file systems that have none, as files tell: asking each item would cost as much as looking at
    // it.
    bool MayHaveAttributes() {
        KnowMount();
        if (!listing.wasProbed && S_ISREG(status.stx_mode)) {
            listing.wasProbed = true;
            listing.attributes = MountTable::Shared().HasAttributes(
                listing.mountId, [&] { return ExtendedAttributes::MayExist(place); });
        }
        return listing.attributes;
    }

    // A folder with two links, its name and its own ".", holds none; other numbers do not tell.
    bool MayHoldFolders() const { return item.IsFolder() && status.stx_nlink != 2; }

    FSVolumeRefNum Volume() {
        KnowMount();
        return listing.volume;
    }

    void FillNode() {
        bool const immutable = (status.stx_attributes & STATX_ATTR_IMMUTABLE) != 0;
        bool const volumeRoot = (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0 && item.IsFolder();
        if (Wants(kFSCatInfoNodeFlags)) {
            if (item.IsFolder()) info.nodeFlags |= kFSNodeIsDirectoryMask;
            if (immutable || metadata.locked) info.nodeFlags |= kFSNodeLockedMask;
        }
        if (Wants(kFSCatInfoVolume)) info.volume = Volume();
        if (Wants(kFSCatInfoParentDirID)) info.parentDirID = ParentNumber(path);
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
        int const flags = AT_EACCESS | (item.isLinkItself ? AT_SYMLINK_NOFOLLOW : 0);
        UInt8 result = 0;
        for (auto const& right : rights) {
            if (faccessat(place.folder, place.path, right.mode, flags) == 0) result |= right.bit;
        }
        return result;
    }

    UInt16 FinderFlags(FinderBytes const& bytes) const {
        UInt16 flags = BigEndian16(bytes.data() + 8);
        if (item.isLink) flags |= kIsAlias;
        if (path.Name().starts_with('.')) flags |= kIsInvisible;
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
        UInt64 const length = metadata.resourceFork.length;
        if (Wants(kFSCatInfoRsrcSizes) && length != 0) {
            UInt64 const block = std::max<UInt64>(status.stx_blksize, 1);
            info.rsrcLogicalSize = length;
            info.rsrcPhysicalSize = (length + block - 1) / block * block;
        }
    }

    UInt32 CountEntries() const {
        UInt32 count = 0;
        ForEachEntry(place, [&](FolderEntry const&) { ++count; });
        return count;
    }

    Path const& path;
    Place const place;
    Item const& item;
    struct statx const& status;
    FSCatalogInfoBitmap const wanted;
    Listing& listing;
    FSCatalogInfo& info;
    MacMetadata metadata;
};

}  // namespace

OSErr Inspect(Location const& location, Item& item) {
    if (!MayGoOn(1)) return userCanceledErr;
    SystemPath const path(location);
    return path.Error() != 0 ? ErrorOfErrno(path.Error()) : InspectAt(path.Get(), location.rule, 0, item);
}

OSErr InspectListed(Place place, LinkRule rule, Item& item) {
    return InspectAt(place, rule, AT_NO_AUTOMOUNT, item);
}

bool IsCatalogInfo(FSCatalogInfoBitmap whichInfo) {
    constexpr FSCatalogInfoBitmap known = kFSCatInfoGettableInfo | kFSCatInfoUserAccess;
    return (whichInfo & ~known) == 0;
}

OSErr FillCatalogInfo(FoundItem const& found, FSCatalogInfoBitmap whichInfo, FSCatalogInfo& info) {
    SystemPath const path(found.location);
    Listing nothingKnown;
    return FillCatalogInfo(found, path.Get(), whichInfo, nothingKnown, info);
}

OSErr FillCatalogInfo(FoundItem const& found, Place place, FSCatalogInfoBitmap whichInfo, Listing& listing,
                      FSCatalogInfo& info) {
    info = FSCatalogInfo{};
    if (!IsCatalogInfo(whichInfo)) return errFSBadInfoBitmap;
    Filler(found, place, whichInfo, listing, info).Fill();
    return noErr;
}

UInt32 ParentNumber(Path const& path) {
    Path const parent = path.Folder();
    if (parent.IsNone()) return fsRtParID;
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
