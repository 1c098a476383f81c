// Volume reference numbers of items on this machine.

#include "platform/Items.h"

namespace {

FSVolumeRefNum VolumeOf(std::string const& path) { return CatalogOf(path, kFSCatInfoVolume).volume; }

}  // namespace

TEST(VolumeNumbers, RootIsTheFirst) { EXPECT_EQ(-100, VolumeOf("/")); }

TEST(VolumeNumbers, FileSystemsWithoutBytesHaveNone) {
    EXPECT_EQ(0, VolumeOf("/proc/version"));
    EXPECT_EQ(0, VolumeOf("/proc"));
}

TEST(VolumeNumbers, AreTheSameForAllItemsOfAFileSystem) {
    TemporaryFolder const folder;
    FSVolumeRefNum const number = VolumeOf(folder.Path());
    EXPECT_LE(number, -100);
    EXPECT_EQ(number, VolumeOf(folder.Write("file")));
    EXPECT_EQ(number, VolumeOf(folder.Link("link", "file")));
}

TEST(VolumeNumbers, OfALinkIsThatOfItsTarget) {
    TemporaryFolder const folder;
    EXPECT_EQ(0, VolumeOf(folder.Link("link", "/proc/version")));
}

TEST(VolumeNumbers, AreStable) {
    FSVolumeRefNum const first = VolumeOf("/dev/shm");
    EXPECT_EQ(first, VolumeOf("/dev/shm"));
    EXPECT_LT(first, -100);
}
