// Volumes that are mounted, changed and unmounted while they are asked for.

#include <sys/statvfs.h>

#include "evaluator/Asking.h"
#include "mounts/Namespace.h"
#include "mounts/VolumesAsked.h"

using namespace Mounts;

namespace {

using Paths = std::vector<std::string>;

class RealMounts : public testing::Test {
  protected:
    std::string At(std::string const& name) const { return here.Path(name); }

    TemporaryFolder const here;
};

std::string AnswerWithInspectors(std::string const& query) {
    static bool const loaded = Evaluator::LoadInspectors(Evaluator::StandardInspectorsFolder()).empty();
    EXPECT_TRUE(loaded);
    return Answer(query);
}

}  // namespace

TEST_F(RealMounts, HaveTheirOwnSpace) {
    Apart([&] {
        MountTmpfs(At("disk"), "size=300k,nr_inodes=50");
        struct statvfs space;
        ASSERT_EQ(0, statvfs(At("disk").c_str(), &space));
        AskedVolume const volume = AskVolume(NumberAt(At("disk")));
        ASSERT_EQ(noErr, volume.error);
        EXPECT_EQ(UInt64{space.f_blocks} * space.f_frsize, +volume.info.totalBytes);
        EXPECT_EQ(UInt64{space.f_bavail} * space.f_frsize, +volume.info.freeBytes);
        EXPECT_EQ(1u, +volume.info.fileCount);
        EXPECT_EQ(0, volume.info.flags);
        here.Write("disk/file", std::string(5000, 'x'));
        AskedVolume const fuller = AskVolume(volume.number);
        EXPECT_LT(+fuller.info.freeBytes, +volume.info.freeBytes);
        EXPECT_EQ(+fuller.info.totalBytes, +volume.info.totalBytes);
        EXPECT_EQ(2u, +fuller.info.fileCount);
    });
}

TEST_F(RealMounts, PercentagesAreRoundedDown) {
    Apart([&] {
        long const page = sysconf(_SC_PAGESIZE);
        MountTmpfs(At("disk"), "size=" + std::to_string(3 * page));
        here.Write("disk/file", std::string(static_cast<std::size_t>(2 * page), 'x'));
        EXPECT_EQ("33, 66",
                  AnswerWithInspectors("(free percent of it, used percent of it) of volume \"disk\""));
        EXPECT_EQ(std::to_string(2 * page), AnswerWithInspectors("used space of volume \"disk\""));
        here.Write("disk/more", std::string(static_cast<std::size_t>(page), 'x'));
        EXPECT_EQ("0, 100",
                  AnswerWithInspectors("(free percent of it, used percent of it) of volume \"disk\""));
    });
}

TEST_F(RealMounts, AreNamedByTheirMountPointsWhateverIsInThem) {
    Apart([&] {
        std::string const name = "my caf\xC3\xA9 \\040\n\xFF disk";
        MountTmpfs(At(name));
        AskedVolume const volume = AskVolume(NumberAt(At(name)));
        ASSERT_EQ(noErr, volume.error);
        EXPECT_EQ(u"my caf\u00E9 \\040\n\xDCFF disk", volume.name);
        EXPECT_EQ(At(name), volume.root);
        EXPECT_EQ("1", AnswerWithInspectors(R"(number of volumes "my caf\u00e9 \\040\n\xff disk")"));
    });
}

TEST_F(RealMounts, OfOneFileSystemAreOneVolume) {
    Apart([&] {
        MountTmpfs(At("disk"));
        here.MakeFolder("disk/folder");
        Bind(At("disk"), At("again"));
        Bind(At("disk/folder"), At("part"));
        EXPECT_EQ(Paths{At("disk")}, VolumesBelow(here.Path()));
        EXPECT_EQ(NumberAt(At("disk")), NumberAt(At("again")));
        EXPECT_EQ(NumberAt(At("disk")), NumberAt(At("part")));
    });
}

TEST_F(RealMounts, OverlayIsAVolumeOfItsOwn) {
    Apart([&] {
        MountTmpfs(At("disk"));
        for (std::string const folder : {"lower", "upper", "work"}) here.MakeFolder("disk/" + folder);
        std::string const disk = At("disk");
        Mount("overlay", At("merged"),
              "lowerdir=" + disk + "/lower,upperdir=" + disk + "/upper,workdir=" + disk + "/work");
        EXPECT_EQ((Paths{At("disk"), At("merged")}), VolumesBelow(here.Path()));
        EXPECT_EQ(u"merged", AskVolume(NumberAt(here.Write("merged/file"))).name);
    });
}

TEST_F(RealMounts, FileSystemWithoutBytesIsNone) {
    Apart([&] {
        Mount("ramfs", At("disk"));
        EXPECT_EQ(Paths{}, VolumesBelow(here.Path()));
        EXPECT_EQ(0, NumberAt(At("disk")));
    });
}

TEST_F(RealMounts, OneThatIsCoveredIsNoVolume) {
    Apart([&] {
        MountTmpfs(At("disk"), "size=100k");
        FSVolumeRefNum const covered = NumberAt(At("disk"));
        MountTmpfs(At("disk"), "size=200k");
        EXPECT_EQ(Paths{At("disk")}, VolumesBelow(here.Path()));
        EXPECT_EQ(nsvErr, AskVolume(covered).error);
        EXPECT_EQ(u"disk", AskVolume(NumberAt(At("disk"))).name);
        MountTmpfs(At("folder/inner"));
        EXPECT_EQ((Paths{At("disk"), At("folder/inner")}), VolumesBelow(here.Path()));
        MountTmpfs(At("folder"));
        EXPECT_EQ((Paths{At("disk"), At("folder")}), VolumesBelow(here.Path()));
    });
}

TEST_F(RealMounts, RemountedReadOnlyIsLocked) {
    Apart([&] {
        MountTmpfs(At("disk"));
        FSVolumeRefNum const number = NumberAt(At("disk"));
        EXPECT_EQ(0, AskVolume(number).info.flags);
        Mount("", At("disk"), "", MS_REMOUNT | MS_RDONLY);
        EXPECT_EQ(0x8000, AskVolume(number).info.flags);
    });
}

TEST_F(RealMounts, OneThatWasUnmountedIsNoVolume) {
    Apart([&] {
        MountTmpfs(At("disk"));
        FSVolumeRefNum const number = NumberAt(At("disk"));
        ASSERT_EQ(noErr, AskVolume(number).error);
        Unmount(At("disk"));
        EXPECT_EQ(nsvErr, AskVolume(number).error);
        EXPECT_EQ(Paths{}, VolumesBelow(here.Path()));
    });
}

TEST_F(RealMounts, AnotherInTheSamePlaceIsNotTakenForIt) {
    Apart([&] {
        MountTmpfs(At("disk"), "size=100k");
        FSVolumeRefNum const number = NumberAt(At("disk"));
        Unmount(At("disk"));
        MountTmpfs(At("disk"), "size=200k");
        EXPECT_EQ(nsvErr, AskVolume(number).error);
        FSVolumeRefNum const another = AskVolume(NumberAt(At("disk"))).number;
        EXPECT_LT(another, number);
        EXPECT_EQ(Paths{At("disk")}, VolumesBelow(here.Path()));
    });
}

TEST_F(RealMounts, NumbersStayWhileOthersComeAndGo) {
    Apart([&] {
        MountTmpfs(At("a"));
        MountTmpfs(At("b"));
        MountTmpfs(At("c"));
        FSVolumeRefNum const a = NumberAt(At("a")), b = NumberAt(At("b")), c = NumberAt(At("c"));
        Unmount(At("a"));
        EXPECT_EQ(At("b"), AskVolume(b).root);
        MountTmpfs(At("d"));
        EXPECT_EQ(At("c"), AskVolume(c).root);
        FSVolumeRefNum const d = NumberAt(At("d"));
        EXPECT_LT(d, c);
        EXPECT_EQ(nsvErr, AskVolume(a).error);
        EXPECT_EQ((Paths{At("b"), At("c"), At("d")}), VolumesBelow(here.Path()));
    });
}

TEST_F(RealMounts, OfOneNameAreAllDeliveredInTheirOrder) {
    Apart([&] {
        long const page = sysconf(_SC_PAGESIZE);
        MountTmpfs(At("one/twin"), "size=" + std::to_string(page));
        MountTmpfs(At("between"));
        MountTmpfs(At("two/twin"), "size=" + std::to_string(2 * page));
        EXPECT_EQ(std::to_string(page) + "|" + std::to_string(2 * page),
                  AnswerWithInspectors("sizes of volumes \"twin\""));
        EXPECT_EQ("twin|between|twin", AnswerWithInspectors("last values 3 of names of volumes"));
    });
}

TEST_F(RealMounts, AreAskedAnewEachTime) {
    Apart([&] {
        MountTmpfs(At("disk"), "size=100k");
        AskedVolume const before = AskVolume(NumberAt(At("disk")));
        Mount("", At("disk"), "size=200k", MS_REMOUNT);
        EXPECT_EQ(2 * before.info.totalBytes, +AskVolume(before.number).info.totalBytes);
    });
}
