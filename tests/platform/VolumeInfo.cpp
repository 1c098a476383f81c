// What is made of what the system says of a volume.

#include "files/VolumeInfo.h"

#include <gtest/gtest.h>
#include <sys/sysmacros.h>

#include "support/TemporaryFolder.h"

using Platform::VolumeFacts;
using Platform::VolumeInfoOf;

namespace {

constexpr std::int64_t k1904To1970 = 2'082'844'800;

VolumeFacts Facts() {
    VolumeFacts facts{};
    facts.root.stx_mask = STATX_BTIME;
    facts.root.stx_btime.tv_sec = 1'000'000'000;
    facts.root.stx_mtime.tv_sec = 1'100'000'000;
    facts.space.f_frsize = 4096;
    facts.space.f_blocks = 300;
    facts.space.f_bfree = 200;
    facts.space.f_bavail = 100;
    facts.space.f_files = 50;
    facts.space.f_ffree = 20;
    facts.localOffset = 3600;
    return facts;
}

FSVolumeInfo All(VolumeFacts const& facts) { return VolumeInfoOf(facts, kFSVolInfoGettableInfo); }

// Which of the records' bytes are not zero, by the field that they are in.
std::vector<std::string> FilledFields(FSVolumeInfo const& info) {
    struct {
        char const* name;
        std::size_t offset, end;
    } const fields[] = {{"created", 0, 8},   {"modified", 8, 16}, {"files", 32, 36},  {"sizes", 40, 56},
                        {"blocks", 56, 68},  {"flags", 116, 118}, {"others", 16, 32}, {"others", 36, 40},
                        {"others", 68, 116}, {"others", 118, 126}};
    auto const* const bytes = reinterpret_cast<unsigned char const*>(&info);
    std::vector<std::string> filled;
    for (auto const& field : fields) {
        if (std::any_of(bytes + field.offset, bytes + field.end, [](auto byte) { return byte != 0; }))
            filled.push_back(field.name);
    }
    return filled;
}

}  // namespace

TEST(VolumeInfo, SpaceIsThatOfUsersWithoutPrivileges) {
    FSVolumeInfo const info = All(Facts());
    EXPECT_EQ(300u * 4096, +info.totalBytes);
    EXPECT_EQ(100u * 4096, +info.freeBytes);
    EXPECT_EQ(4096u, +info.blockSize);
    EXPECT_EQ(300u, +info.totalBlocks);
    EXPECT_EQ(100u, +info.freeBlocks);
    EXPECT_EQ(30u, +info.fileCount);
    EXPECT_EQ(0u, +info.folderCount);
}

TEST(VolumeInfo, NumbersThatDoNotFitAreTheGreatest) {
    VolumeFacts facts = Facts();
    facts.space.f_blocks = facts.space.f_bavail = facts.space.f_files = std::uint64_t{1} << 32;
    facts.space.f_ffree = 0;
    FSVolumeInfo const info = All(facts);
    EXPECT_EQ(0xFFFFFFFFu, +info.totalBlocks);
    EXPECT_EQ(0xFFFFFFFFu, +info.freeBlocks);
    EXPECT_EQ(0xFFFFFFFFu, +info.fileCount);
    EXPECT_EQ(std::uint64_t{1} << 44, +info.totalBytes);
    EXPECT_EQ(std::uint64_t{1} << 44, +info.freeBytes);
}

TEST(VolumeInfo, FileSystemThatDoesNotCountFilesHasNone) {
    VolumeFacts facts = Facts();
    facts.space.f_files = 0;
    EXPECT_EQ(0u, +All(facts).fileCount);
}

TEST(VolumeInfo, DatesAreLocalSecondsSince1904) {
    FSVolumeInfo const info = All(Facts());
    EXPECT_EQ(1'000'003'600 + k1904To1970, +info.createDate.lowSeconds);
    EXPECT_EQ(1'100'003'600 + k1904To1970, +info.modifyDate.lowSeconds);
    EXPECT_EQ(0, info.createDate.highSeconds);
    VolumeFacts facts = Facts();
    facts.root.stx_mask = 0;
    EXPECT_EQ(0u, +All(facts).createDate.lowSeconds) << "there is no birth time";
}

TEST(VolumeInfo, DatesThat32BitsDoNotHoldHaveHighSeconds) {
    VolumeFacts facts = Facts();
    facts.root.stx_mtime.tv_sec = 0xFFFFFFFF - k1904To1970 - facts.localOffset;
    EXPECT_EQ(0, All(facts).modifyDate.highSeconds);
    EXPECT_EQ(0xFFFFFFFFu, +All(facts).modifyDate.lowSeconds);
    ++facts.root.stx_mtime.tv_sec;
    EXPECT_EQ(1, All(facts).modifyDate.highSeconds);
    facts.root.stx_mtime.tv_sec = -k1904To1970 - facts.localOffset - 1;
    EXPECT_NE(0, All(facts).modifyDate.highSeconds) << "before 1904";
}

TEST(VolumeInfo, EachFlagIsItsOwn) {
    VolumeFacts facts = Facts();
    EXPECT_EQ(0, All(facts).flags);
    facts.isRoot = true;
    EXPECT_EQ(0x0020, All(facts).flags);
    facts.isRoot = false;
    facts.isDeviceWriteProtected = true;
    EXPECT_EQ(0x0080, All(facts).flags);
    facts.isDeviceWriteProtected = false;
    facts.space.f_flag = ST_RDONLY | ST_NOSUID;
    EXPECT_EQ(0x8000, All(facts).flags);
}

TEST(VolumeInfo, HoldsWhatWasAskedForAndNothingElse) {
    VolumeFacts facts = Facts();
    facts.isRoot = true;
    using Names = std::vector<std::string>;
    auto const filled = [&](FSVolumeInfoBitmap which) { return FilledFields(VolumeInfoOf(facts, which)); };
    EXPECT_EQ(Names{}, filled(kFSVolInfoNone));
    EXPECT_EQ(Names{"created"}, filled(kFSVolInfoCreateDate));
    EXPECT_EQ(Names{"modified"}, filled(kFSVolInfoModDate));
    EXPECT_EQ(Names{"files"}, filled(kFSVolInfoFileCount));
    EXPECT_EQ(Names{"sizes"}, filled(kFSVolInfoSizes));
    EXPECT_EQ(Names{"blocks"}, filled(kFSVolInfoBlocks));
    EXPECT_EQ(Names{"flags"}, filled(kFSVolInfoFlags));
    EXPECT_EQ((Names{"created", "modified", "files", "sizes", "blocks", "flags"}),
              filled(kFSVolInfoGettableInfo));
}

TEST(VolumeInfo, DeviceIsWriteProtectedWhenTheKernelSaysSo) {
    TemporaryFolder const devices;
    devices.MakeFolder("8:1");
    devices.Write("8:1/ro", "1\n");
    devices.MakeFolder("8:2");
    devices.Write("8:2/ro", "0\n");
    EXPECT_TRUE(Platform::IsWriteProtected(devices.Path(), makedev(8, 1)));
    EXPECT_FALSE(Platform::IsWriteProtected(devices.Path(), makedev(8, 2)));
    EXPECT_FALSE(Platform::IsWriteProtected(devices.Path(), makedev(0, 30)));
}
