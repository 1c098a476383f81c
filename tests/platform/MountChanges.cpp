// The numbers of volumes while file systems come and go.

#include <gtest/gtest.h>

#include <thread>

#include "files/MountTable.h"

using Platform::Mount;
using Platform::MountTable;
using Platform::Volume;

namespace {

// What a table is to see; the test changes it.
struct Machine {
    std::vector<Mount> mounts;
    bool changed = false;
    int readings = 0;
    int checks = 0;
    int names = 0;

    void Mounts(std::uint64_t id, std::string target) {
        Mount mount;
        mount.id = id;
        mount.device = id;
        mount.target = std::move(target);
        mount.source = "tmpfs";
        mount.hasBytes = true;
        mounts.push_back(mount);
        changed = true;
    }
    void UnmountsTheLast() {
        mounts.pop_back();
        changed = true;
    }
};

class MachineSource final : public Platform::MountSource {
  public:
    explicit MachineSource(Machine& watched) : machine(watched) {}
    std::vector<Mount> Read() override {
        ++machine.readings;
        machine.changed = false;
        return machine.mounts;
    }
    bool HasChanged() override {
        ++machine.checks;
        return machine.changed;
    }
    std::string ReadName(Volume const& volume) override {
        ++machine.names;
        return "name of " + volume.mountPoint;
    }

  private:
    Machine& machine;
};

class MountChanges : public testing::Test {
  protected:
    MountChanges() { machine.Mounts(1, "/"); }

    std::string MountPoints() {
        std::string all;
        for (Volume const& volume : table.Volumes())
            all += volume.mountPoint + " " + std::to_string(volume.number) + "\n";
        return all;
    }
    static void WaitUntilTheTableChecksAgain() { std::this_thread::sleep_for(std::chrono::milliseconds(20)); }

    Machine machine;
    MountTable table{std::make_unique<MachineSource>(machine)};
};

}  // namespace

TEST_F(MountChanges, NumbersGoDownFromMinusHundredAndStay) {
    machine.Mounts(2, "/a");
    machine.Mounts(3, "/b");
    EXPECT_EQ("/ -100\n/a -101\n/b -102\n", MountPoints());
    std::swap(machine.mounts[1], machine.mounts[2]);
    machine.UnmountsTheLast();
    EXPECT_EQ("/ -100\n/b -102\n", MountPoints());
    machine.Mounts(2, "/c");
    EXPECT_EQ("/ -100\n/b -102\n/c -103\n", MountPoints());
}

TEST_F(MountChanges, NewMountIsKnownAtOnce) {
    EXPECT_EQ(-100, table.NumberOf(1));
    machine.Mounts(2, "/a");
    EXPECT_EQ(-101, table.NumberOf(2));
}

TEST_F(MountChanges, MountWithTheIdOfAnOlderOneIsAnotherVolume) {
    machine.Mounts(2, "/a");
    EXPECT_EQ(-101, table.NumberOf(2));
    machine.UnmountsTheLast();
    machine.Mounts(2, "/b");
    WaitUntilTheTableChecksAgain();
    EXPECT_EQ(-102, table.NumberOf(2));
}

TEST_F(MountChanges, OtherFileSystemMountedInTheSamePlaceIsAnotherVolume) {
    machine.Mounts(2, "/a");
    machine.mounts.back().fsid = 1;
    EXPECT_EQ("/ -100\n/a -101\n", MountPoints());
    machine.UnmountsTheLast();
    machine.Mounts(2, "/a");
    machine.mounts.back().fsid = 2;
    EXPECT_EQ("/ -100\n/a -102\n", MountPoints());
}

TEST_F(MountChanges, DroppedVolumeIsNotListedUntilTheMountsChange) {
    machine.Mounts(2, "/a");
    Volume const gone = table.Volumes().back();
    table.Drop(gone);
    EXPECT_EQ("/ -100\n", MountPoints());
    machine.Mounts(3, "/b");
    EXPECT_EQ("/ -100\n/a -102\n/b -103\n", MountPoints());
}

TEST_F(MountChanges, NamesAreReadOnceWhileTheVolumeIsMounted) {
    machine.Mounts(2, "/a");
    Volume const volume = table.Volumes().back();
    for (int i = 0; i < 3; ++i) EXPECT_EQ("name of /a", table.NameOf(volume));
    EXPECT_EQ(1, machine.names);
    machine.Mounts(3, "/b");
    table.Volumes();
    EXPECT_EQ("name of /a", table.NameOf(volume));
    EXPECT_EQ(1, machine.names);
    machine.mounts.resize(1);
    machine.changed = true;
    table.Volumes();
    EXPECT_EQ("name of /a", table.NameOf(volume)) << "also of one that has just gone";
    EXPECT_EQ(2, machine.names);
}

TEST_F(MountChanges, SlowMountOfAPathIsTheInnermostWhenItMayHang) {
    EXPECT_FALSE(table.SlowMountOf("/net/host/file"));
    machine.Mounts(2, "/net/host");
    machine.mounts.back().mayHang = machine.mounts.back().makesFiles = true;
    machine.Mounts(3, "/net/host/fast");
    WaitUntilTheTableChecksAgain();
    auto const slow = table.SlowMountOf("/net/host/file");
    ASSERT_TRUE(slow);
    EXPECT_TRUE(slow->makesFiles);
    EXPECT_EQ("/net/host", slow->mountPoint);
    EXPECT_EQ(2u, slow->id);
    EXPECT_TRUE(table.SlowMountOf("/net/host"));
    EXPECT_FALSE(table.SlowMountOf("/net/hostess"));
    EXPECT_FALSE(table.SlowMountOf("/net/host/fast/file"));
    EXPECT_FALSE(table.SlowMountOf("/net"));
}

TEST_F(MountChanges, HiddenMountIsNotTheSlowOneOfAPath) {
    machine.Mounts(2, "/net");
    machine.mounts.back().mayHang = machine.mounts.back().hidden = true;
    machine.Mounts(3, "/net");
    EXPECT_FALSE(table.SlowMountOf("/net/file"));
}

TEST_F(MountChanges, SlowMountsAreToldByTheFolderThatTheyAreMountedIn) {
    EXPECT_FALSE(table.HasSlowMounts());
    machine.Mounts(2, "/net");
    machine.mounts.back().mayHang = true;
    machine.Mounts(3, "/net/a");
    machine.mounts.back().mayHang = true;
    machine.Mounts(4, "/net/a/deeper");
    machine.mounts.back().mayHang = true;
    machine.Mounts(5, "/net/fast");
    machine.Mounts(6, "/net/covered");
    machine.mounts.back().mayHang = machine.mounts.back().hidden = true;
    WaitUntilTheTableChecksAgain();
    EXPECT_TRUE(table.HasSlowMounts());
    EXPECT_EQ(std::vector<std::string>{"net"}, table.SlowMountPointsIn("/"));
    EXPECT_EQ(std::vector<std::string>{"a"}, table.SlowMountPointsIn("/net"));
    EXPECT_EQ(std::vector<std::string>{}, table.SlowMountPointsIn("/ne"));
}

TEST_F(MountChanges, RootThatMayHangIsInNoFolder) {
    machine.mounts.back().mayHang = true;
    EXPECT_TRUE(table.HasSlowMounts());
    EXPECT_EQ(std::vector<std::string>{}, table.SlowMountPointsIn("/"));
}

TEST_F(MountChanges, UnlistedMountsHaveTheNumberZero) {
    machine.Mounts(2, "/proc");
    machine.mounts.back().hasBytes = false;
    EXPECT_EQ(0, table.NumberOf(2));
    EXPECT_EQ(0, table.NumberOf(77));
}

TEST_F(MountChanges, TableIsReadAgainOnlyWhenItHasChanged) {
    for (int i = 0; i < 3; ++i) table.Volumes();
    EXPECT_EQ(1, machine.readings);
    EXPECT_EQ(2, machine.checks);
}

TEST_F(MountChanges, LookUpsInARowDoNotAskEachTime) {
    for (int i = 0; i < 1000; ++i) table.NumberOf(1);
    EXPECT_LT(machine.checks, 500);
}

TEST_F(MountChanges, NumbersBeginAnewWithTheFreeOnes) {
    std::string last;
    for (int i = 0; i < 32000; ++i) {
        machine.Mounts(2, "/" + std::to_string(i));
        last = MountPoints();
        machine.UnmountsTheLast();
    }
    EXPECT_TRUE(last.starts_with("/ -100\n")) << last;
    std::string const number = last.substr(last.rfind(' ') + 1);
    EXPECT_LT(std::stoi(number), -100) << last;
    EXPECT_GE(std::stoi(number), -32000) << last;
}

TEST_F(MountChanges, MountsAreAskedForTheirAttributesOnceUntilTheyChange) {
    int asked = 0;
    auto const hasAttributes = [&](std::uint64_t mount, bool answer) {
        return table.HasAttributes(mount, [&] {
            ++asked;
            return answer;
        });
    };
    machine.Mounts(2, "/a");
    table.Volumes();
    EXPECT_FALSE(hasAttributes(1, false));
    EXPECT_FALSE(hasAttributes(1, true));
    EXPECT_TRUE(hasAttributes(2, true));
    EXPECT_EQ(2, asked);
    machine.Mounts(3, "/b");
    table.Volumes();
    EXPECT_TRUE(hasAttributes(1, true));
    EXPECT_EQ(3, asked);
    EXPECT_TRUE(hasAttributes(77, true));
    EXPECT_FALSE(hasAttributes(77, false)) << "a mount that is not in the table is not remembered";
}
