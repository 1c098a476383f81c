// Volumes of this machine, and what is made of any volume's information.

#include "system/Volumes.h"

#include <Carbon/MacErrors.h>
#include <gtest/gtest.h>
#include <sys/statvfs.h>

#include "Evaluator/Time.h"
#include "RegistrationLog.h"
#include "Slot.h"
#include "filesystem/File.h"
#include "filesystem/Folder.h"
#include "modules/VolumeIterationModule.h"
#include "modules/VolumesModule.h"
#include "support/Owned.h"
#include "support/TemporaryFolder.h"

using MacintoshPlatform::FailedToGetFileItem;

namespace {

std::string Text(inspector_string const& text) { return {text.begin(), text.end()}; }
std::int64_t Seconds(moment const& time) { return time.SinceEpoch().microseconds / 1'000'000; }

folder FolderAt(std::string_view path) { return posix_folder_of_world(Bytes(path), path.size()); }
file FileAt(std::string_view path) { return posix_file_of_world(Bytes(path), path.size()); }

VolumeLink First() { return VolumeLink(ByIndex(), 1); }

// The first volume, with other information.
VolumeLink With(FSVolumeInfo const& info) {
    VolumeLink volume = First();
    volume.volume.info = info;
    return volume;
}
VolumeLink WithSpace(UInt64 free, UInt64 total) {
    FSVolumeInfo info{};
    info.freeBytes = free;
    info.totalBytes = total;
    return With(info);
}

template <class Iterator, class... Name>
std::vector<VolumeLink> All(Iterator iterator, Name... name) {
    std::vector<VolumeLink> volumes;
    try {
        volumes.push_back(iterator.First(name...));
        for (;;) volumes.push_back(iterator.Next(name...));
    } catch (NoSuchObject const&) {
        return volumes;
    }
}

std::vector<VolumeLink> Named(std::string_view name) {
    return All(VolumeIterator(), Bytes(name), static_cast<unsigned long>(name.size()));
}

}  // namespace

TEST(Volumes, FirstIsTheRoot) {
    VolumeLink const volume = volume_of_index(1);
    EXPECT_EQ("/", PathOf(volume.root.url));
    EXPECT_EQ(-100, volume.volume.actualVolume);
    EXPECT_TRUE(volume == VolumeLink(VolInfo()));
    EXPECT_TRUE(volume == VolumeLink(ByRefNum(), -100));
    EXPECT_EQ(0x20, flags_of(volume) & 0x20);
}

TEST(Volumes, NumbersOfNoVolume) {
    EXPECT_THROW(volume_of_index(0), NoSuchObject);
    EXPECT_THROW(volume_of_index(32767), NoSuchObject);
    EXPECT_THROW(volume_of_index(32768), NoSuchObject);
    EXPECT_THROW(volume_of_index(65537), NoSuchObject) << "it is not cut to 16 bits";
    EXPECT_THROW(volume_of_index(0x8000'0000'0000'0001), NoSuchObject);
    EXPECT_THROW(VolumeLink(ByRefNum(), 0), NoSuchObject);
    EXPECT_THROW(VolumeLink(ByRefNum(), -1), NoSuchObject);
}

TEST(Volumes, NegativeIndexIsThePlatformsFailure) {
    try {
        VolumeLink(ByIndex(), -1);
        FAIL();
    } catch (OSError const& error) {
        EXPECT_EQ(-50, error.Code());
    }
}

TEST(Volumes, ComeInTheOrderOfTheirPlaces) {
    auto const volumes = All(VolumeIterator());
    ASSERT_FALSE(volumes.empty());
    for (std::size_t i = 0; i < volumes.size(); ++i) EXPECT_TRUE(volumes[i] == volume_of_index(i + 1)) << i;
}

TEST(Volumes, OfAName) {
    std::string const name = Text(name_of(First()));
    auto const named = Named(name);
    ASSERT_FALSE(named.empty());
    EXPECT_TRUE(named.front() == First());
    for (VolumeLink const& volume : named) EXPECT_EQ(name, Text(name_of(volume)));
    EXPECT_TRUE(Named(name + " of nobody").empty());
    EXPECT_THROW(Named(""), IllegalFileName);
    EXPECT_THROW(Named("a/b"), IllegalFileName);
    EXPECT_THROW(Named(std::string(256, 'a')), IllegalFileNameLength);
}

TEST(Volumes, IterationBeginsAnewWithFirst) {
    VolumeIterator iterator;
    iterator.First();
    EXPECT_TRUE(iterator.First() == First());
}

TEST(Volumes, OfItems) {
    EXPECT_TRUE(volume_of_folder(FolderAt("/")) == First());
    TemporaryFolder const here;
    VolumeLink const volume = volume_of_file(FileAt(here.Write("file")));
    EXPECT_TRUE(volume == volume_of_folder(FolderAt(here.Path())));
    EXPECT_FALSE(volume == volume_of_folder(FolderAt("/dev/shm")));
    ClearVolCache(nullptr);
    EXPECT_TRUE(volume == volume_of_folder(FolderAt(here.Path())));
}

TEST(Volumes, OfItemsThatAreOnNone) {
    EXPECT_THROW(volume_of_file(FileAt("/proc/version")), NoSuchObject);
    EXPECT_THROW(volume_of_folder(FolderAt("/proc")), NoSuchObject);
    MacintoshPlatform::FileItem const missing{MacintoshPlatform::FileLocation(NewURL("/missing"))};
    EXPECT_THROW(volume_of_file(file(missing)), FailedToGetFileItem);
    EXPECT_THROW(volume_of_folder(folder(missing)), FailedToGetFileItem);
}

TEST(Volumes, WhoseRootCannotBeLookedUpFail) {
    TemporaryFolder const here;
    VolInfo info;
    ASSERT_EQ(noErr, FSPathMakeRef(Bytes(here.MakeFolder("root")), &info.rootDirectory, nullptr));
    std::filesystem::remove(here.Path("root"));
    EXPECT_THROW(VolumeLink{info}, FailedToGetFileItem);
    info.rootDirectory = FSRef{};
    EXPECT_THROW(VolumeLink{info}, FailedToGetFileItem);
}

TEST(Volumes, SpaceIsWhatWasRead) {
    VolumeLink const volume = WithSpace(1000, 3000);
    EXPECT_EQ(3000, total_space_of(volume));
    EXPECT_EQ(1000, free_space_of(volume));
    EXPECT_EQ(2000, used_space_of(volume));
    EXPECT_EQ(33, percent_free_of(volume));
    EXPECT_EQ(66, percent_used_of(volume));
}

TEST(Volumes, WithoutBytesHaveNoPercentages) {
    VolumeLink const volume = WithSpace(0, 0);
    EXPECT_EQ(0, used_space_of(volume));
    EXPECT_THROW(percent_free_of(volume), NoSuchObject);
    EXPECT_THROW(percent_used_of(volume), NoSuchObject);
}

TEST(Volumes, SpaceHas64Bits) {
    VolumeLink const volume = WithSpace(3ull << 40, 4ull << 40);
    EXPECT_EQ(75, percent_free_of(volume));
    EXPECT_EQ(25, percent_used_of(volume));
    EXPECT_EQ(4ll << 40, total_space_of(volume));
}

TEST(Volumes, CountsAndFlagsHaveNoSign) {
    FSVolumeInfo info{};
    info.fileCount = 0xFFFFFFFF;
    info.folderCount = 0xFFFFFFFE;
    info.totalBlocks = 7;
    info.flags = 0x8020;
    VolumeLink const volume = With(info);
    EXPECT_EQ(4'294'967'295, files_of(volume));
    EXPECT_EQ(4'294'967'294, directories_of(volume));
    EXPECT_EQ(4'294'967'295, alloc_of(volume)) << "the number of files, not of blocks";
    EXPECT_EQ(0x8020, flags_of(volume));
}

TEST(Volumes, DatesAreLocalSecondsOf32Bits) {
    FSVolumeInfo info{};
    info.createDate = {0, 0xFFFFFFFF, 0xFFFF};
    info.modifyDate = {0, 60, 0};
    EXPECT_EQ(january_1_1904_Local() + integer(0xFFFFFFFF) * second_of(), init_date_of(With(info)));
    EXPECT_EQ(january_1_1904_Local() + minute_of(), modification_time_of(With(info)));
    info.createDate.highSeconds = 1;
    info.modifyDate.highSeconds = 0xFFFF;
    EXPECT_THROW(init_date_of(With(info)), NoSuchObject);
    EXPECT_THROW(modification_time_of(With(info)), NoSuchObject);
}

// The platform's local seconds and the host's local epoch take each other's offset out again.
TEST(Volumes, ModificationTimeIsThatOfTheRootFolder) {
    VolumeLink const volume = volume_of_folder(FolderAt("/dev/shm"));
    EXPECT_EQ(Seconds(modification_time_of(filesystem_object(volume.root))),
              Seconds(modification_time_of(volume)));
}

TEST(Volumes, AreWhatTheSystemSaysOfThem) {
    VolumeLink const volume = volume_of_folder(FolderAt("/dev/shm"));
    struct statvfs space;
    ASSERT_EQ(0, statvfs("/dev/shm", &space));
    EXPECT_EQ("shm", Text(name_of(volume)));
    EXPECT_EQ(static_cast<long long>(space.f_blocks * space.f_frsize), total_space_of(volume));
}

TEST(VolumeIterationModule, RegistersItsTableInOrder) {
    ExpectRows<VolumeIterationModule>(
        {"iterated property \"filesystem\" \"filesystems\": \"volume\"",
         "iterated property \"drive\" \"drives\": \"volume\"",
         "iterated property \"volume\" \"volumes\": \"volume\"",
         "iterated property \"filesystem\" \"filesystems\" [\"string\"]: \"volume\"",
         "iterated property \"drive\" \"drives\" [\"string\"]: \"volume\"",
         "iterated property \"volume\" \"volumes\" [\"string\"]: \"volume\""});
}

namespace {

std::string const kSynonyms[] = {"\"filesystem\" \"filesystems\"", "\"drive\" \"drives\"",
                                 "\"volume\" \"volumes\""};

std::string Row(std::string const& phrases, std::string const& result) {
    return "property " + phrases + " of \"volume\": \"" + result + "\"";
}

}  // namespace

TEST(VolumeIterationModule, RowsIterateOverVolumes) {
    VolumeIterationModule const module;
    std::string const name = Text(name_of(First()));
    inspector_string const named(Bytes(name), static_cast<std::uint32_t>(name.size()));
    for (std::string const& phrases : kSynonyms) {
        for (std::string const index : {"", " [\"string\"]"}) {
            Registration const row = RegisteredAs("iterated property " + phrases + index + ": \"volume\"");
            EXPECT_EQ(sizeof(VolumeIterator), row.valueSize);
            Slot<VolumeIterator> state;
            row.construct(state);
            Slot<VolumeLink> slot;
            row.get(slot, &named, nullptr, state, row.context);
            EXPECT_TRUE(slot.Value() == First());
            slot.End();
            row.destroy(state);
        }
    }
}

TEST(VolumesModule, RegistersItsTableInOrder) {
    Rows rows = {"type \"volume\"", "operator 6 \"volume\" \"volume\": \"boolean\""};
    for (std::string const of : {" [\"integer\"]:", " of \"file\":", " of \"folder\":"}) {
        for (std::string const& phrases : kSynonyms)
            rows.push_back("property " + phrases + of + " \"volume\"");
    }
    rows.push_back(Row("\"name\" \"names\"", "string"));
    for (std::string const phrases :
         {"\"size\" \"sizes\"", "\"total space\" \"total spaces\"", "\"free space\" \"free spaces\"",
          "\"used space\" \"used spaces\"", "\"free percent\" \"free percents\"",
          "\"used percent\" \"used percents\"", "\"file count\" \"file counts\"",
          "\"directory count\" \"directory counts\"",
          "\"allocation block count\" \"allocation block counts\""})
        rows.push_back(Row(phrases, "integer"));
    rows.push_back(Row("\"init date\" \"init dates\"", "time"));
    rows.push_back(Row("\"modification time\" \"modification times\"", "time"));
    rows.push_back(Row("\"flag\" \"flags\"", "integer"));
    rows.push_back("cache");
    ExpectRows<VolumesModule>(rows);
}

TEST(VolumesModule, RowsAskTheFunctionsOfTheirPhrases) {
    VolumesModule const module;
    FSVolumeInfo info{};
    info.totalBytes = 3000;
    info.freeBytes = 1000;
    info.fileCount = 5;
    info.folderCount = 6;
    info.flags = 7;
    info.createDate.lowSeconds = 8;
    info.modifyDate.lowSeconds = 9;
    VolumeLink const volume = With(info);
    auto const ask = [&](std::string const& row, auto slot) {
        Registration const registration = RegisteredAs(row);
        registration.get(slot, nullptr, &volume, nullptr, registration.context);
        return slot.Value();
    };
    std::pair<std::string, long long> const numbers[] = {
        {"\"size\" \"sizes\"", 3000},
        {"\"total space\" \"total spaces\"", 3000},
        {"\"free space\" \"free spaces\"", 1000},
        {"\"used space\" \"used spaces\"", 2000},
        {"\"free percent\" \"free percents\"", 33},
        {"\"used percent\" \"used percents\"", 66},
        {"\"file count\" \"file counts\"", 5},
        {"\"directory count\" \"directory counts\"", 6},
        {"\"allocation block count\" \"allocation block counts\"", 5},
        {"\"flag\" \"flags\"", 7}};
    for (auto const& [phrases, value] : numbers)
        EXPECT_EQ(value, ask(Row(phrases, "integer"), Slot<integer>())) << phrases;
    EXPECT_EQ(january_1_1904_Local() + integer(8) * second_of(),
              ask(Row("\"init date\" \"init dates\"", "time"), Slot<moment>()));
    EXPECT_EQ(january_1_1904_Local() + integer(9) * second_of(),
              ask(Row("\"modification time\" \"modification times\"", "time"), Slot<moment>()));
    EXPECT_EQ(Text(name_of(volume)),
              Text(ask(Row("\"name\" \"names\"", "string"), Slot<inspector_string>())));
}

TEST(VolumesModule, RowsReachVolumes) {
    VolumesModule const module;
    TemporaryFolder const here;
    file const item = FileAt(here.Write("file"));
    folder const root = FolderAt("/");
    integer const one(1);
    for (std::string const& phrases : kSynonyms) {
        auto const reach = [&](std::string const& of, void const* index, void const* object) {
            Registration const row = RegisteredAs("property " + phrases + of + ": \"volume\"");
            Slot<VolumeLink> slot;
            row.get(slot, index, object, nullptr, row.context);
            VolumeLink const volume = slot.Value();
            slot.End();
            return volume;
        };
        EXPECT_TRUE(First() == reach(" [\"integer\"]", &one, nullptr));
        EXPECT_TRUE(First() == reach(" of \"folder\"", nullptr, &root));
        EXPECT_TRUE(volume_of_file(item) == reach(" of \"file\"", nullptr, &item));
        integer const negative(-1);
        EXPECT_THROW(reach(" [\"integer\"]", &negative, nullptr), NoSuchObject);
    }
}

TEST(VolumesModule, ValuesEndInPlace) {
    VolumesModule const module;
    Registration const type = RegisteredAs("type \"volume\"");
    EXPECT_EQ(sizeof(VolumeLink), type.valueSize);
    EXPECT_EQ(nullptr, type.fingerprint);
    Slot<VolumeLink> slot;
    VolumeLink const volume = First();
    CFIndex const before = CFGetRetainCount(volume.root.url);
    new (slot) VolumeLink(volume);
    EXPECT_EQ(before + 1, CFGetRetainCount(volume.root.url));
    type.destroy(slot);
    EXPECT_EQ(before, CFGetRetainCount(volume.root.url));
}

TEST(VolumesModule, RelationComparesReferenceNumbers) {
    VolumesModule const module;
    Registration const equal = RegisteredAs("operator 6 \"volume\" \"volume\": \"boolean\"");
    VolumeLink const left = First();
    VolumeLink right = WithSpace(1, 2);
    Slot<boolean> slot;
    equal.compute(slot, &left, &right, equal.context);
    EXPECT_TRUE(slot.Value());
    right.volume.actualVolume = -101;
    equal.compute(slot, &left, &right, equal.context);
    EXPECT_FALSE(slot.Value());
}

TEST(VolumesModule, CacheIsCleared) {
    VolumesModule const module;
    RegisteredAs("cache").clear(nullptr);
    EXPECT_TRUE(volume_of_folder(FolderAt("/")) == First());
}
