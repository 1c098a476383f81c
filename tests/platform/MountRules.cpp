// Which mounts are volumes, and in which order.

#include "files/MountTable.h"

#include <gtest/gtest.h>

using Platform::ListedMounts;
using Platform::Mount;
using Platform::VolumeOrder;

namespace {

Mount OnDevice(dev_t device, std::string target) {
    Mount mount;
    mount.target = std::move(target);
    mount.device = device;
    mount.hasBytes = true;
    return mount;
}

using Listed = std::vector<std::optional<std::size_t>>;
using Order = std::vector<std::size_t>;

}  // namespace

TEST(MountRules, FileSystemsWithoutBytesAreNotListed) {
    std::vector<Mount> mounts = {OnDevice(1, "/"), OnDevice(2, "/proc")};
    mounts[1].hasBytes = false;
    Listed const listed = ListedMounts(mounts);
    EXPECT_EQ((Listed{0, std::nullopt}), listed);
    EXPECT_EQ((Order{0}), VolumeOrder(mounts, listed));
}

TEST(MountRules, ServersOfNetworksClustersMachinesAndProgramsMayNotAnswer) {
    for (char const* const type :
         {"nfs4", "cifs", "9p", "ceph", "lustre", "gfs2", "ocfs2", "beegfs", "gpfs", "orangefs", "vboxsf",
          "virtiofs", "fuse", "fuse.sshfs", "fuseblk", "autofs"})
        EXPECT_TRUE(Platform::MayHang(type)) << type;
    for (char const* const type :
         {"ext4", "xfs", "btrfs", "tmpfs", "overlay", "proc", "devtmpfs", "vfat", "iso9660"})
        EXPECT_FALSE(Platform::MayHang(type)) << type;
}

TEST(MountRules, WhatContainersSeeOfProcIsMadeWhenItIsRead) {
    EXPECT_TRUE(Platform::MakesFilesWhenRead("fuse.lxcfs"));
    for (char const* const type : {"fuse", "fuse.sshfs", "ext4", "proc"})
        EXPECT_FALSE(Platform::MakesFilesWhenRead(type)) << type;
}

TEST(MountRules, FileSystemMountedTwiceIsListedOnceAndCountsForBoth) {
    std::vector<Mount> const mounts = {OnDevice(1, "/"), OnDevice(2, "/data"), OnDevice(2, "/home/data")};
    Listed const listed = ListedMounts(mounts);
    EXPECT_EQ((Listed{0, 1, 1}), listed);
    EXPECT_EQ((Order{0, 1}), VolumeOrder(mounts, listed));
}

TEST(MountRules, RootComesFirstAndStandsForItsFileSystem) {
    std::vector<Mount> const mounts = {OnDevice(2, "/data"), OnDevice(1, "/old"), OnDevice(1, "/")};
    Listed const listed = ListedMounts(mounts);
    EXPECT_EQ((Listed{0, 2, 2}), listed);
    EXPECT_EQ((Order{2, 0}), VolumeOrder(mounts, listed));
}

TEST(MountRules, HiddenMountIsNotListedUnlessItsFileSystemIsSeenElsewhere) {
    std::vector<Mount> mounts = {OnDevice(1, "/"), OnDevice(2, "/shm"), OnDevice(3, "/shm"),
                                 OnDevice(2, "/seen")};
    mounts[1].hidden = true;
    EXPECT_EQ((Listed{0, 3, 2, 3}), ListedMounts(mounts));
    mounts.pop_back();
    EXPECT_EQ((Listed{0, std::nullopt, 2}), ListedMounts(mounts));
}

TEST(MountRules, PartsOfAServersFileSystemAreVolumesOfTheirOwn) {
    std::vector<Mount> mounts = {OnDevice(1, "/"), OnDevice(2, "/a"), OnDevice(2, "/b")};
    mounts[1].root = "/exports/a";
    mounts[2].root = "/exports/b";
    EXPECT_EQ((Listed{0, 1, 2}), ListedMounts(mounts));
}

namespace {

Mount Slow(std::uint64_t id, std::string target) {
    Mount mount = OnDevice(id, std::move(target));
    mount.id = id;
    mount.mayHang = true;
    return mount;
}

}  // namespace

// Nothing is asked of a mount when the way to it leads through one that may hang.
TEST(MountRules, WhatLiesBelowAMountThatMayHangMayHang) {
    std::vector<Mount> mounts = {OnDevice(1, "/"), Slow(2, "/net"), OnDevice(3, "/net/a"),
                                 OnDevice(4, "/network")};
    Platform::MarkSlowMounts(mounts);
    EXPECT_FALSE(mounts[0].mayHang);
    EXPECT_TRUE(mounts[1].mayHang);
    EXPECT_TRUE(mounts[2].mayHang);
    EXPECT_FALSE(mounts[3].mayHang);
}

TEST(MountRules, RootThatMayHangMakesNoOtherHang) {
    std::vector<Mount> mounts = {Slow(1, "/"), OnDevice(2, "/data")};
    Platform::MarkSlowMounts(mounts);
    EXPECT_TRUE(mounts[0].mayHang);
    EXPECT_FALSE(mounts[1].mayHang);
}

TEST(MountRules, MountThatMayHangIsHiddenByWhatIsMountedOnItsRoot) {
    std::vector<Mount> mounts = {OnDevice(1, "/"), Slow(2, "/net"), Slow(3, "/seen"), OnDevice(4, "/net")};
    mounts[3].parent = 2;
    Platform::MarkSlowMounts(mounts);
    EXPECT_TRUE(mounts[1].hidden);
    EXPECT_FALSE(mounts[2].hidden);
    EXPECT_FALSE(mounts[3].mayHang) << "it can be asked without asking the one below";
}

TEST(MountRules, NameWithoutLabelIsTheLastComponentOfTheMountPoint) {
    EXPECT_EQ("data", Platform::ReadNameOfVolume({-101, "/mnt/data", "tmpfs"}));
    EXPECT_EQ("root", Platform::ReadNameOfVolume({-100, "/", "overlay"}));
}
