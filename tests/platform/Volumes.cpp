// FSGetVolumeInfo on this machine.

#include <sys/statvfs.h>

#include "platform/Items.h"

namespace {

OSErr Ask(FSVolumeRefNum volume, SInt32 index) {
    return FSGetVolumeInfo(volume, static_cast<ItemCount>(index), nullptr, kFSVolInfoGettableInfo, nullptr,
                           nullptr, nullptr);
}

FSVolumeRefNum VolumeOf(std::string const& path) { return CatalogOf(path, kFSCatInfoVolume).volume; }

}  // namespace

TEST(Volumes, AreFoundByIndexAndByNumber) {
    FSVolumeRefNum actual = 0;
    FSRef root{};
    FSVolumeInfo info{};
    ASSERT_EQ(noErr, FSGetVolumeInfo(0, 1, &actual, kFSVolInfoFlags, &info, nullptr, &root));
    EXPECT_EQ(-100, actual);
    EXPECT_EQ("/", PathOf(root));
    EXPECT_EQ(kFSVolFlagDefaultVolumeMask, info.flags & kFSVolFlagDefaultVolumeMask);
    FSVolumeRefNum const shared = VolumeOf("/dev/shm");
    ASSERT_EQ(noErr, FSGetVolumeInfo(shared, 0, &actual, kFSVolInfoNone, nullptr, nullptr, &root));
    EXPECT_EQ(shared, actual);
    EXPECT_EQ("/dev/shm", PathOf(root));
}

TEST(Volumes, IndexCountsMoreThanTheNumber) {
    FSVolumeRefNum actual = 0;
    ASSERT_EQ(noErr, FSGetVolumeInfo(VolumeOf("/dev/shm"), 1, &actual, 0, nullptr, nullptr, nullptr));
    EXPECT_EQ(-100, actual);
}

TEST(Volumes, ThatAreNone) {
    EXPECT_EQ(nsvErr, Ask(0, 0));
    EXPECT_EQ(nsvErr, Ask(-1, 0));
    EXPECT_EQ(nsvErr, Ask(100, 0));
    EXPECT_EQ(nsvErr, Ask(0, 32767));
    EXPECT_EQ(nsvErr, Ask(0, 0x7FFFFFFF));
    EXPECT_EQ(paramErr, Ask(0, -1));
    EXPECT_EQ(paramErr, Ask(-100, -1));
    EXPECT_EQ(errFSBadInfoBitmap, FSGetVolumeInfo(0, 1, nullptr, 0x10000, nullptr, nullptr, nullptr));
}

TEST(Volumes, EveryOutputIsOptional) { EXPECT_EQ(noErr, Ask(0, 1)); }

TEST(Volumes, OutputsOfAFailureAreLeftAlone) {
    FSVolumeRefNum actual = 7;
    FSVolumeInfo info{};
    info.flags = 7;
    HFSUniStr255 name{};
    name.length = 7;
    EXPECT_EQ(nsvErr, FSGetVolumeInfo(0, 0, &actual, kFSVolInfoGettableInfo, &info, &name, nullptr));
    EXPECT_EQ(7, actual);
    EXPECT_EQ(7, info.flags);
    EXPECT_EQ(7, name.length);
}

TEST(Volumes, HaveTheSpaceThatTheSystemTells) {
    struct statvfs space;
    ASSERT_EQ(0, statvfs("/dev/shm", &space));
    FSVolumeInfo info{};
    HFSUniStr255 name{};
    ASSERT_EQ(noErr, FSGetVolumeInfo(VolumeOf("/dev/shm"), 0, nullptr, kFSVolInfoGettableInfo, &info, &name,
                                     nullptr));
    EXPECT_EQ(UInt64{space.f_blocks} * space.f_frsize, +info.totalBytes);
    EXPECT_EQ(std::u16string(u"shm"), std::u16string(name.unicode, name.unicode + name.length));
}

TEST(Volumes, OnlyWhatIsAskedForIsFilled) {
    FSVolumeInfo info{};
    info.blockSize = 7;
    ASSERT_EQ(noErr, FSGetVolumeInfo(0, 1, nullptr, kFSVolInfoSizes, &info, nullptr, nullptr));
    EXPECT_NE(0u, +info.totalBytes);
    EXPECT_EQ(0u, +info.blockSize);
    EXPECT_EQ(0, info.flags);
}
