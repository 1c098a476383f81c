// Catalog information, held against what stat(2) says.

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Items.h"

namespace {

struct stat StatusOf(std::string const& path) {
    struct stat status {};
    EXPECT_EQ(0, lstat(path.c_str(), &status));
    return status;
}

std::int64_t FixedPoint(struct timespec time) {
    return time.tv_sec * 65536 + time.tv_nsec * 65536 / 1'000'000'000;
}

void SetTimes(std::string const& path, struct timespec access, struct timespec modification) {
    struct timespec const times[] = {access, modification};
    ASSERT_EQ(0, utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW));
}

bool IsZero(void const* bytes, std::size_t size) {
    static unsigned char const zeros[sizeof(FSCatalogInfo)] = {};
    return std::memcmp(bytes, zeros, size) == 0;
}

}  // namespace

TEST(CatalogInfo, OfAFileAgreesWithStat) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file", std::string(5000, 'x'));
    struct stat const status = StatusOf(path);
    FSCatalogInfo const info = CatalogOf(path);
    EXPECT_EQ(0, info.nodeFlags);
    EXPECT_EQ(5000u, +info.dataLogicalSize);
    EXPECT_EQ(static_cast<UInt64>(status.st_blocks) * 512, +info.dataPhysicalSize);
    EXPECT_EQ(0u, +info.rsrcLogicalSize);
    EXPECT_EQ(0u, +info.rsrcPhysicalSize);
    EXPECT_EQ(static_cast<UInt32>(status.st_ino), +info.nodeID);
    EXPECT_EQ(static_cast<UInt32>(StatusOf(folder.Path()).st_ino), +info.parentDirID);
    EXPECT_EQ(status.st_uid, +info.permissions.userID);
    EXPECT_EQ(status.st_gid, +info.permissions.groupID);
    EXPECT_EQ(status.st_mode, info.permissions.mode);
    EXPECT_EQ(0u, +info.valence);
    EXPECT_EQ(126u, +info.textEncodingHint);
    EXPECT_TRUE(IsZero(info.finderInfo, 32));
}

TEST(CatalogInfo, OfAFolderHasTheDirectoryFlagNoDataAndItsEntries) {
    TemporaryFolder const folder;
    std::string const path = folder.MakeFolder("folder");
    folder.Write("folder/a");
    folder.Write("folder/.b");
    folder.MakeFolder("folder/c");
    FSCatalogInfo const info = CatalogOf(path);
    EXPECT_EQ(kFSNodeIsDirectoryMask, info.nodeFlags);
    EXPECT_EQ(0u, +info.dataLogicalSize);
    EXPECT_EQ(0u, +info.dataPhysicalSize);
    EXPECT_EQ(3u, +info.valence);
}

TEST(CatalogInfo, DatesHaveTheirFractions) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    SetTimes(path, {1'000'000'000, 250'000'000}, {2'000'000'000, 500'000'000});
    FSCatalogInfo const info = CatalogOf(path);
    EXPECT_EQ(1'000'000'000 * 65536LL + 0x4000, FixedPoint(info.accessDate));
    EXPECT_EQ(2'000'000'000 * 65536LL + 0x8000, FixedPoint(info.contentModDate));
    EXPECT_EQ(FixedPoint(StatusOf(path).st_ctim), FixedPoint(info.attributeModDate));
    EXPECT_TRUE(IsZero(&info.backupDate, sizeof info.backupDate));
}

TEST(CatalogInfo, DatesBefore1970And1904AndAfter2040) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    for (std::int64_t const seconds : {-1LL, -2'082'844'800LL, 2'212'122'495LL, 4'000'000'000LL}) {
        SetTimes(path, {seconds, 0}, {seconds, 0});
        std::int64_t const kept = StatusOf(path).st_mtim.tv_sec;  // the file system may not reach so far
        EXPECT_EQ(kept * 65536, FixedPoint(CatalogOf(path).contentModDate)) << seconds;
    }
}

TEST(CatalogInfo, CreationIsTheBirthTimeElseTheOldestTime) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    SetTimes(path, {1'000'000'000, 0}, {1'200'000'000, 0});
    struct statx status;
    ASSERT_EQ(0, statx(AT_FDCWD, path.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &status));
    bool const hasBirthTime = (status.stx_mask & STATX_BTIME) != 0;
    std::int64_t const expected = hasBirthTime ? status.stx_btime.tv_sec : 1'000'000'000;
    EXPECT_EQ(expected, FixedPoint(CatalogOf(path).createDate) >> 16);
}

TEST(CatalogInfo, CreationOfAFileWithoutBirthTimeIsTheOldestTime) {
    struct statx status;
    ASSERT_EQ(0, statx(AT_FDCWD, "/proc/version", 0, STATX_BASIC_STATS | STATX_BTIME, &status));
    ASSERT_EQ(0u, status.stx_mask & STATX_BTIME) << "the process file system has learned to keep birth times";
    std::int64_t const oldest =
        std::min({status.stx_atime.tv_sec, status.stx_mtime.tv_sec, status.stx_ctime.tv_sec});
    EXPECT_EQ(oldest, FixedPoint(CatalogOf("/proc/version").createDate) >> 16);
}

TEST(CatalogInfo, OnlyFieldsAskedForAreFilled) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file", "12345");
    FSCatalogInfo info = CatalogOf(path, kFSCatInfoDataSizes);
    EXPECT_EQ(5u, +info.dataLogicalSize);
    info.dataLogicalSize = info.dataPhysicalSize = 0;
    EXPECT_TRUE(IsZero(&info, sizeof info));
    FSCatalogInfo const nothing = CatalogOf(path, kFSCatInfoNone);
    EXPECT_TRUE(IsZero(&nothing, sizeof nothing));
}

TEST(CatalogInfo, UnknownBitOfTheMaskIsAnError) {
    TemporaryFolder const folder;
    FSRef const reference = ReferenceTo(folder.Path());
    FSCatalogInfo info;
    EXPECT_EQ(errFSBadInfoBitmap, FSGetCatalogInfo(&reference, 0x00040000, &info, nullptr, nullptr, nullptr));
    EXPECT_EQ(errFSBadInfoBitmap, FSGetCatalogInfo(&reference, 0x80000000, &info, nullptr, nullptr, nullptr));
}

TEST(CatalogInfo, UserAccessIsThatOfTheProcess) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    ASSERT_EQ(0, chmod(path.c_str(), 0500));
    UInt8 const writes = access(path.c_str(), W_OK) == 0 ? 1 : 0;  // the superuser may
    EXPECT_EQ(6 | writes, CatalogOf(path, kFSCatInfoUserAccess).permissions.userAccess);
}

TEST(CatalogInfo, NameWithALeadingDotIsInvisible) {
    TemporaryFolder const folder;
    EXPECT_EQ(kIsInvisible, FinderInfoOf(CatalogOf(folder.Write(".file"))).finderFlags);
    EXPECT_EQ(0, FinderInfoOf(CatalogOf(folder.Write("file."))).finderFlags);
    EXPECT_EQ(kIsInvisible, FinderInfoOf(CatalogOf(folder.MakeFolder(".folder"))).finderFlags);
}

TEST(CatalogInfo, ImmutableFileIsLocked) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    int const file = open(path.c_str(), O_RDONLY);
    int flags = 0;
    ASSERT_EQ(0, ioctl(file, FS_IOC_GETFLAGS, &flags));
    int const immutable = flags | FS_IMMUTABLE_FL;
    bool const isSet = ioctl(file, FS_IOC_SETFLAGS, &immutable) == 0;
    EXPECT_TRUE(isSet || geteuid() != 0) << "only the superuser may set the attribute";
    EXPECT_EQ(isSet ? kFSNodeLockedMask : 0, CatalogOf(path).nodeFlags);
    if (isSet) {
        EXPECT_EQ(0, ioctl(file, FS_IOC_SETFLAGS, &flags));
    }
    close(file);
    EXPECT_EQ(0, CatalogOf(path).nodeFlags);
}

TEST(CatalogInfo, RootHasTheRootsNumbersAndName) {
    FSRef const root = ReferenceTo("/");
    HFSUniStr255 name;
    FSCatalogInfo info;
    FSRef parent;
    ASSERT_EQ(noErr, FSGetCatalogInfo(&root, kFSCatInfoGettableInfo, &info, &name, nullptr, &parent));
    EXPECT_EQ(1u, +info.parentDirID);
    EXPECT_EQ(u"/", std::u16string(name.unicode, name.unicode + name.length));
    EXPECT_TRUE(IsZero(&parent, sizeof parent));
    EXPECT_EQ(errFSBadFSRef, FSGetCatalogInfo(&parent, 0, nullptr, nullptr, nullptr, nullptr));
}

TEST(CatalogInfo, RootOfAMountedFileSystemHasNodeNumberTwo) {
    EXPECT_EQ(2u, +CatalogOf("/proc", kFSCatInfoNodeID).nodeID);
}

TEST(CatalogInfo, NameAndParentOfAFile) {
    TemporaryFolder const folder;
    FSRef const file = ReferenceTo(folder.Write("na\xC3\xAFve\xFF"));
    HFSUniStr255 name;
    FSRef parent;
    ASSERT_EQ(noErr, FSGetCatalogInfo(&file, 0, nullptr, &name, nullptr, &parent));
    std::u16string const expected = u"na\u00efve" + std::u16string(1, static_cast<char16_t>(0xDCFF));
    EXPECT_EQ(expected, std::u16string(name.unicode, name.unicode + name.length));
    FSRef const expectedParent = ReferenceTo(folder.Path());
    EXPECT_EQ(noErr, FSCompareFSRefs(&parent, &expectedParent));
}
