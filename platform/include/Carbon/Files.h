#pragma once

// The File Manager: references to files and folders, what the catalog says of them, and volumes.
//
// A reference (FSRef) stands for a location and the item found there. The layer remembers the locations of
// the 1024 references made last; one that is older is stale and answers errFSBadFSRef, and so does one that
// was never made. Two references compare for as long as anyone keeps them. An item that has gone from its
// location, or that another has replaced there, is not found (fnfErr).
//
// Symbolic links. A look-up describes a link by what it leads to, also through several links; one that leads
// nowhere is described as a file by itself. Either way the item has the alias flag, and keeps the link's name
// and place.

#include <Carbon/MacTypes.h>
#include <stddef.h>

typedef SInt16 FSVolumeRefNum;
typedef UInt32 FSCatalogInfoBitmap;

#pragma pack(push, 2)

/// A reference to a file or folder. Its bytes mean nothing to anybody else and hold no pointer; compare
/// references with FSCompareFSRefs only.
typedef struct FSRef {
    UInt8 hidden[80];
} FSRef;

/// A folder and a name in it. `vRefNum` is the volume that the folder is on, also where another one is
/// mounted on the item or a link leads to another one. `parID` is the folder's inode number, its low 32 bits.
/// When no folder with that number is remembered, 1 is the parent of the volume's root and 2 the root itself.
/// Folders on file systems that are not listed share the volume 0: of two with one number the one named last
/// counts. `name` is at most 31 bytes; a name that is longer, or not Mac Roman, is written `<start>#<inode
/// number in hex><.ext>`. The root's is "/".
typedef struct FSSpec {
    FSVolumeRefNum vRefNum;
    SInt32 parID;
    Str63 name;
} FSSpec;

/// Who may do what. `userAccess` has the bits 1 (write), 2 (read) and 4 (execute or search) for the process,
/// and is 0 unless kFSCatInfoUserAccess was asked for; `mode` is that of stat(2).
typedef struct FSPermissionInfo {
    UInt32 userID;
    UInt32 groupID;
    UInt8 reserved1;
    UInt8 userAccess;
    UInt16 mode;
    UInt32 reserved2;
} FSPermissionInfo;

/// Finder information of a file.
typedef struct FileInfo {
    OSType fileType;
    OSType fileCreator;
    UInt16 finderFlags;
    Point location;
    UInt16 reservedField;
} FileInfo;

/// Finder information of a folder.
typedef struct FolderInfo {
    Rect windowBounds;
    UInt16 finderFlags;
    Point location;
    UInt16 reservedField;
} FolderInfo;

typedef struct ExtendedFileInfo {
    SInt16 reserved1[4];
    UInt16 extendedFinderFlags;
    SInt16 reserved2;
    SInt32 putAwayFolderID;
} ExtendedFileInfo;

typedef struct ExtendedFolderInfo {
    Point scrollPosition;
    SInt32 reserved1;
    UInt16 extendedFinderFlags;
    SInt16 reserved2;
    SInt32 putAwayFolderID;
} ExtendedFolderInfo;

/// What the catalog says of an item.
typedef struct FSCatalogInfo {
    UInt16 nodeFlags;       // kFSNodeIsDirectoryMask, kFSNodeLockedMask
    FSVolumeRefNum volume;  // of the mount that the item is on; 0 on a file system that is not listed
    UInt32 parentDirID;     // the parent folder's inode number, low 32 bits; 1 for the root
    UInt32 nodeID;          // inode number, low 32 bits; 2 for the root of a mounted file system
    UInt8 sharingFlags;     // 0
    UInt8 userPrivileges;   // 0
    UInt8 reserved1;
    UInt8 reserved2;
    UTCDateTime createDate;        // birth time; else the metadata's; else the oldest of the three below
    UTCDateTime contentModDate;    // mtime
    UTCDateTime attributeModDate;  // ctime
    UTCDateTime accessDate;        // atime
    UTCDateTime backupDate;        // the metadata's, else zero
    FSPermissionInfo permissions;
    UInt8 finderInfo[16];           // a FileInfo or FolderInfo
    UInt8 extFinderInfo[16];        // an ExtendedFileInfo or ExtendedFolderInfo
    UInt64 dataLogicalSize;         // bytes; 0 for folders
    UInt64 dataPhysicalSize;        // bytes in use on the disk
    UInt64 rsrcLogicalSize;         // bytes of the resource fork that the metadata holds, else 0
    UInt64 rsrcPhysicalSize;        // the same, in whole blocks
    UInt32 valence;                 // entries of a folder; 0 for files
    TextEncoding textEncodingHint;  // 126, Unicode
} FSCatalogInfo;

#pragma pack(pop)

/// What to obtain of a catalog entry. A field that is not asked for costs nothing and is zero.
enum {
    kFSCatInfoNone = 0,
    kFSCatInfoTextEncoding = 0x00000001,
    kFSCatInfoNodeFlags = 0x00000002,
    kFSCatInfoVolume = 0x00000004,
    kFSCatInfoParentDirID = 0x00000008,
    kFSCatInfoNodeID = 0x00000010,
    kFSCatInfoCreateDate = 0x00000020,
    kFSCatInfoContentMod = 0x00000040,
    kFSCatInfoAttrMod = 0x00000080,
    kFSCatInfoAccessDate = 0x00000100,
    kFSCatInfoBackupDate = 0x00000200,
    kFSCatInfoAllDates = 0x000003E0,
    kFSCatInfoPermissions = 0x00000400,
    kFSCatInfoFinderInfo = 0x00000800,
    kFSCatInfoFinderXInfo = 0x00001000,
    kFSCatInfoValence = 0x00002000,
    kFSCatInfoDataSizes = 0x00004000,
    kFSCatInfoRsrcSizes = 0x00008000,
    kFSCatInfoSharingFlags = 0x00010000,
    kFSCatInfoUserPrivs = 0x00020000,
    kFSCatInfoUserAccess = 0x00080000,
    kFSCatInfoGettableInfo = 0x0003FFFF
};

/// Bits of FSCatalogInfo::nodeFlags.
enum {
    kFSNodeLockedMask = 0x0001,  // the immutable attribute, or the metadata's locked bit
    kFSNodeIsDirectoryMask = 0x0010
};

/// Bits of the Finder flags.
enum {
    kHasBeenInited = 0x0100,
    kIsStationery = 0x0800,
    kIsInvisible = 0x4000,  // the metadata's, or a '.' in front of the name
    kIsAlias = 0x8000       // the metadata's, or the item's last name is a symbolic link
};

/// Type and creator of a link that leads nowhere.
enum { kSymLinkFileType = 0x736C6E6B, kSymLinkCreator = 0x72686170 };

enum { fsRtParID = 1, fsRtDirID = 2 };

/// How FSPathMakeRefWithOptions treats a link at the end of a path.
enum {
    kFSPathMakeRefDefaultOptions = 0,
    kFSPathMakeRefDoNotFollowLeafSymlink = 1  // describe the link itself, as a file
};

#ifdef __cplusplus
static_assert(sizeof(FSRef) == 80);
static_assert(sizeof(FSSpec) == 70 && offsetof(FSSpec, parID) == 2 && offsetof(FSSpec, name) == 6);
static_assert(sizeof(FSPermissionInfo) == 16 && offsetof(FSPermissionInfo, userAccess) == 9 &&
              offsetof(FSPermissionInfo, mode) == 10);
static_assert(sizeof(FileInfo) == 16 && offsetof(FileInfo, finderFlags) == 8 &&
              offsetof(FileInfo, location) == 10);
static_assert(sizeof(FolderInfo) == 16 && offsetof(FolderInfo, finderFlags) == 8);
static_assert(sizeof(ExtendedFileInfo) == 16 && offsetof(ExtendedFileInfo, extendedFinderFlags) == 8);
static_assert(sizeof(ExtendedFolderInfo) == 16 && offsetof(ExtendedFolderInfo, extendedFinderFlags) == 8);
static_assert(sizeof(FSCatalogInfo) == 144 && offsetof(FSCatalogInfo, volume) == 2 &&
              offsetof(FSCatalogInfo, parentDirID) == 4 && offsetof(FSCatalogInfo, nodeID) == 8 &&
              offsetof(FSCatalogInfo, sharingFlags) == 12 && offsetof(FSCatalogInfo, createDate) == 16 &&
              offsetof(FSCatalogInfo, contentModDate) == 24 &&
              offsetof(FSCatalogInfo, attributeModDate) == 32 && offsetof(FSCatalogInfo, accessDate) == 40 &&
              offsetof(FSCatalogInfo, backupDate) == 48 && offsetof(FSCatalogInfo, permissions) == 56 &&
              offsetof(FSCatalogInfo, finderInfo) == 72 && offsetof(FSCatalogInfo, extFinderInfo) == 88 &&
              offsetof(FSCatalogInfo, dataLogicalSize) == 104 &&
              offsetof(FSCatalogInfo, dataPhysicalSize) == 112 &&
              offsetof(FSCatalogInfo, rsrcLogicalSize) == 120 &&
              offsetof(FSCatalogInfo, rsrcPhysicalSize) == 128 && offsetof(FSCatalogInfo, valence) == 136 &&
              offsetof(FSCatalogInfo, textEncodingHint) == 140);
#endif

/// What the catalog says of the referenced item. Every output is optional: `catalogInfo` gets the fields of
/// `whichInfo`, `outName` the item's name ("/" for the root), `fsSpec` its FSSpec, `parentRef` its
/// folder (all zero for the root, which no function accepts). fnfErr when the item is gone, errFSBadFSRef for
/// a stale reference, errFSBadInfoBitmap for bits of `whichInfo` that mean nothing, paramErr for a null
/// reference, and what the file system says. Attributes and companion files that hold metadata are read only
/// when `whichInfo` names a field that may come from them.
///
/// Here and in all functions that look items up: what lies on a mount whose server may not answer is waited
/// for until the check-in function says stop, and the answer is userCanceledErr. It is volOffLinErr while an
/// earlier call on the mount has not come back.
PLATFORM_API OSErr FSGetCatalogInfo(FSRef const* ref, FSCatalogInfoBitmap whichInfo,
                                    FSCatalogInfo* catalogInfo, HFSUniStr255* outName, FSSpec* fsSpec,
                                    FSRef* parentRef);

/// A reference to the item called `name` in the folder `parentRef`. fnfErr when there is none, dirNFErr when
/// the parent is no folder, errFSMissingName for the empty name, bdNamErr for ".", "..", and names with '/',
/// NUL or a lone surrogate that stands for no byte, errFSNameTooLong above 255 bytes. Names compare as the
/// file system compares them. `textEncodingHint` is ignored.
PLATFORM_API OSErr FSMakeFSRefUnicode(FSRef const* parentRef, UniCharCount nameLength, UniChar const* name,
                                      TextEncoding textEncodingHint, FSRef* newRef);

/// noErr when both references are to the same item (device and inode), else errFSRefsDifferent. A link that
/// was described by its target counts as the target. errFSBadFSRef when either was never made; a stale one
/// compares.
PLATFORM_API OSErr FSCompareFSRefs(FSRef const* ref1, FSRef const* ref2);

/// A reference to the item at a POSIX path, which ends with a NUL; a relative one starts at the working
/// directory. "." and ".." are resolved against the disk. `isDirectory` (optional) tells whether it is a
/// folder. paramErr for the empty path; else what the file system says.
PLATFORM_API OSStatus FSPathMakeRef(UInt8 const* path, FSRef* ref, Boolean* isDirectory);
/// The same, with a choice of how a link at the end of the path is treated.
PLATFORM_API OSStatus FSPathMakeRefWithOptions(UInt8 const* path, OptionBits options, FSRef* ref,
                                               Boolean* isDirectory);
/// Writes the absolute path that the reference was made with, and a NUL, to `path` of `maxPathSize` bytes.
/// errFSNameTooLong when it does not fit, errFSBadFSRef for a stale reference.
PLATFORM_API OSStatus FSRefMakePath(FSRef const* ref, UInt8* path, UInt32 maxPathSize);

/// Stands for a pass over the items of a folder.
typedef struct OpaqueFSIterator* FSIterator;

/// The next items of a folder, at most `maximumObjects` of them; `actualObjects` gets their number. The other
/// outputs are optional arrays with a place for each item: `catalogInfos` with the fields of `whichInfo`, and
/// what FSGetCatalogInfo tells of it besides. Items come in the order of the file system, each once.
/// AppleDouble files that go with an item are none, nor are those that have gone before they were looked at.
/// A link to a folder is described by itself, as a file. An item that may not be looked at, as in a folder
/// that may be read but not searched, has catalog information of zeros, the nodeID among them; its reference
/// leads to it nevertheless. `containerChanged` (optional) tells whether the folder has changed since it was
/// asked for first.
///
/// A folder whose server may not answer is waited for until the check-in function says stop: userCanceledErr,
/// or volOffLinErr while an earlier call there has not come back; either ends the iterator, which answers the
/// same from then on. Of another such mount an item may be the mount point, or a link onto it: when it does
/// not answer within a fifth of a second, the item has no information, and the link is described by itself.
///
/// errFSNoMoreItems when these are the last items, of which there may be none; errFSBadItemCount for 0 items,
/// errFSIteratorNotFound, errFSBadInfoBitmap, and what the file system says where there is no item to give,
/// such as fnfErr when the folder was removed meanwhile.
PLATFORM_API OSErr FSGetCatalogInfoBulk(FSIterator iterator, ItemCount maximumObjects,
                                        ItemCount* actualObjects, Boolean* containerChanged,
                                        FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfos,
                                        FSRef* refs, FSSpec* specs, HFSUniStr255* names);
/// Ends an iterator, which must not be in use on another thread. errFSIteratorNotFound when it is none.
PLATFORM_API OSErr FSCloseIterator(FSIterator iterator);

/// A reference to the item that the FSSpec names. The layer remembers the 1024 folders that it last
/// named in an FSSpec; dirNFErr when the folder is not among them or is gone, fnfErr when it has no
/// such item, nsvErr for an unknown volume's root.
PLATFORM_API OSErr FSpMakeFSRef(FSSpec const* spec, FSRef* newRef);
/// Fills an FSSpec from its parts; the name is Mac Roman and no path. nsvErr for an unknown volume,
/// dirNFErr for an unknown folder, bdNamErr for a name that is longer than 63 bytes or holds '/' or NUL.
/// fnfErr when there is no such item; `spec` is filled nevertheless.
PLATFORM_API OSErr FSMakeFSSpec(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName,
                                FSSpec* spec);

// ---- Forks
//
// A fork is read as it is at the moment: nothing is read ahead or kept, so that a file that grows, shrinks or
// is written to meanwhile shows as it is. One that has lost its name can be read to its end. A fork must not
// be used on two threads at one time.
//
// The files of proc, sysfs and their like are made when they are read. They are read when they are opened, up
// to 16 MiB, and stay so while the fork is open; one that cannot say more at the moment ends there. Pipes,
// sockets and devices are never opened: their forks are empty.

/// Where a position counts from, and the bits that may be added to it; these are hints and change nothing.
enum {
    fsAtMark = 0,
    fsFromStart = 1,
    fsFromLEOF = 2,
    fsFromMark = 3,
    pleaseCacheMask = 0x0010,
    noCacheMask = 0x0020,
    rdVerifyMask = 0x0040
};

/// What a fork is opened for. There is no writing.
enum { fsCurPerm = 0, fsRdPerm = 1, fsWrPerm = 2, fsRdWrPerm = 3, fsRdWrShPerm = 4 };

/// The name of the data fork: the empty one. paramErr for null.
PLATFORM_API OSErr FSGetDataForkName(HFSUniStr255* dataForkName);

/// Opens the data fork of the referenced file; a link's is that of what it leads to. `forkRefNum` gets its
/// number, from 1, which is the caller's until FSCloseFork; it is left alone on failure.
///
/// fnfErr when the file is gone, notAFileErr for a folder, errFSBadFSRef for a stale reference,
/// errFSForkNotFound for another name and errFSBadForkName for one of more than 255 units, permErr for a
/// permission to write and paramErr for none of the permissions, tmfoErr when 32767 forks are open or the
/// process may open no more files, ioErr for a file of proc and its like that is longer than 16 MiB, and what
/// the file system says. A server that does not answer is waited for as by all that looks items up; this
/// holds for the other calls on forks too.
PLATFORM_API OSErr FSOpenFork(FSRef const* ref, UniCharCount forkNameLength, UniChar const* forkName,
                              SInt8 permissions, SInt16* forkRefNum);

/// Reads `requestCount` bytes from a position on into `buffer`; `actualCount` (optional) gets how many there
/// are, also on failure. The mark then stands behind them.
///
/// eofErr when the fork has fewer, which may be none; posErr for a position before the start, rfNumErr for no
/// open fork, errFSBadPosMode, errFSBadBuffer for null, userCanceledErr when the check-in function says stop,
/// and what the file system says. No bytes can be read from anywhere.
PLATFORM_API OSErr FSReadFork(SInt16 forkRefNum, UInt16 positionMode, SInt64 positionOffset,
                              ByteCount requestCount, void* buffer, ByteCount* actualCount);
/// Moves the mark, which is at the start at first. It may stand behind the end; a read there says so.
/// posErr, rfNumErr and errFSBadPosMode as above.
PLATFORM_API OSErr FSSetForkPosition(SInt16 forkRefNum, UInt16 positionMode, SInt64 positionOffset);
/// Bytes of the fork now. rfNumErr, paramErr for null, and what the file system says.
PLATFORM_API OSErr FSGetForkSize(SInt16 forkRefNum, SInt64* forkSize);
/// Closes a fork and frees its number. rfNumErr when it is none.
PLATFORM_API OSErr FSCloseFork(SInt16 forkRefNum);

// ---- Volumes
//
// A volume is a mounted file system that has room for bytes, each once. The first is the root, the others
// follow in the order in which they were mounted. Reference numbers go from -100 down and belong to a volume
// for as long as it stays mounted.

typedef UInt32 FSVolumeInfoBitmap;

#pragma pack(push, 2)

/// What is known of a volume. What Linux has no counterpart for is zero.
typedef struct FSVolumeInfo {
    UTCDateTime createDate;   // birth time of the root folder, as local time; zero when it is not known
    UTCDateTime modifyDate;   // mtime of the root folder, as local time
    UTCDateTime backupDate;   // zero
    UTCDateTime checkedDate;  // zero
    UInt32 fileCount;         // inodes in use, at most 2^32 - 1; 0 where the file system does not count them
    UInt32 folderCount;       // 0: folders are not counted apart
    UInt64 totalBytes;
    UInt64 freeBytes;       // that a user without privileges may fill
    UInt32 blockSize;       // of the blocks that the next two count
    UInt32 totalBlocks;     // at most 2^32 - 1, as the next
    UInt32 freeBlocks;      // of freeBytes
    UInt32 nextAllocation;  // zero, and what follows to the flags
    UInt32 rsrcClumpSize;
    UInt32 dataClumpSize;
    UInt32 nextCatalogID;
    UInt8 finderInfo[32];
    UInt16 flags;
    UInt16 filesystemID;  // zero, as what follows
    UInt16 signature;
    UInt16 driveNumber;
    SInt16 driverRefNum;
} FSVolumeInfo;

#pragma pack(pop)

/// What to obtain of a volume. A field that is not asked for is zero.
enum {
    kFSVolInfoNone = 0,
    kFSVolInfoCreateDate = 0x0001,
    kFSVolInfoModDate = 0x0002,
    kFSVolInfoBackupDate = 0x0004,
    kFSVolInfoCheckedDate = 0x0008,
    kFSVolInfoFileCount = 0x0010,
    kFSVolInfoDirCount = 0x0020,
    kFSVolInfoSizes = 0x0040,
    kFSVolInfoBlocks = 0x0080,
    kFSVolInfoNextAlloc = 0x0100,
    kFSVolInfoRsrcClump = 0x0200,
    kFSVolInfoDataClump = 0x0400,
    kFSVolInfoNextID = 0x0800,
    kFSVolInfoFinderInfo = 0x1000,
    kFSVolInfoFlags = 0x2000,
    kFSVolInfoFSInfo = 0x4000,
    kFSVolInfoDriveInfo = 0x8000,
    kFSVolInfoGettableInfo = 0xFFFF
};

/// Bits of FSVolumeInfo::flags.
enum {
    kFSVolFlagDefaultVolumeMask = 0x0020,   // the root
    kFSVolFlagHardwareLockedMask = 0x0080,  // the device is write-protected
    kFSVolFlagSoftwareLockedMask = 0x8000   // mounted read-only
};

/// The reference number of no volume.
enum { kFSInvalidVolumeRefNum = 0 };

#ifdef __cplusplus
static_assert(sizeof(FSVolumeInfo) == 126 && offsetof(FSVolumeInfo, modifyDate) == 8 &&
              offsetof(FSVolumeInfo, fileCount) == 32 && offsetof(FSVolumeInfo, folderCount) == 36 &&
              offsetof(FSVolumeInfo, totalBytes) == 40 && offsetof(FSVolumeInfo, freeBytes) == 48 &&
              offsetof(FSVolumeInfo, blockSize) == 56 && offsetof(FSVolumeInfo, totalBlocks) == 60 &&
              offsetof(FSVolumeInfo, freeBlocks) == 64 && offsetof(FSVolumeInfo, nextCatalogID) == 80 &&
              offsetof(FSVolumeInfo, finderInfo) == 84 && offsetof(FSVolumeInfo, flags) == 116 &&
              offsetof(FSVolumeInfo, driverRefNum) == 124);
#endif

/// What is known of a mounted volume: the one at the place `volumeIndex` when that is 1 or more, the one of
/// the reference number `volume` when it is 0. Every output is optional: `info` gets the fields of
/// `whichInfo`, `volumeName` the label, else the last component of the mount point, else "root", and
/// `rootDirectory` a reference to the root folder. Dates are local: universal time plus the machine's present
/// offset, in `lowSeconds`; `highSeconds` is not zero for what that cannot hold.
///
/// nsvErr when there is no such volume, or it has gone; paramErr for a negative index; errFSBadInfoBitmap for
/// bits of `whichInfo` that mean nothing; else what the file system says. One whose server may not answer is
/// waited for, a few seconds long: userCanceledErr when the check-in function says stop, then volOffLinErr.
/// Number and name are known without asking the file system.
PLATFORM_API OSErr FSGetVolumeInfo(FSVolumeRefNum volume, ItemCount volumeIndex, FSVolumeRefNum* actualVolume,
                                   FSVolumeInfoBitmap whichInfo, FSVolumeInfo* info, HFSUniStr255* volumeName,
                                   FSRef* rootDirectory);
