#include <fcntl.h>
#include <sys/stat.h>

#include "Asking.h"

namespace {

std::int64_t Seconds(moment const& time) { return time.SinceEpoch().microseconds / 1'000'000; }

inspector_string String(std::string_view text) {
    return {Bytes(text), static_cast<std::uint32_t>(text.size())};
}

}  // namespace

using Items = FileSystem;

TEST_F(Items, TellTheirTimes) {
    std::string const path = here.Write("file");
    struct timespec const times[] = {{1'000'000'000, 0}, {1'100'000'000, 500'000'000}};
    ASSERT_EQ(0, utimensat(AT_FDCWD, path.c_str(), times, 0));
    here.SetAttribute("file", "user.AFP_AfpInfo",
                      std::string("AFP\0\0\0\1\0\0\0\0\0\0\0\0\5", 16) + std::string(44, '\0'));
    file const item = FileAt(path);
    EXPECT_EQ(1'100'000'000'500'000, modification_time_of(item).SinceEpoch().microseconds);
    EXPECT_EQ(946'684'805, Seconds(backup_time_of(item)));
    struct statx status;
    ASSERT_EQ(0, statx(AT_FDCWD, path.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &status));
    bool const hasBirthTime = (status.stx_mask & STATX_BTIME) != 0;
    EXPECT_EQ(hasBirthTime ? status.stx_btime.tv_sec : 1'000'000'000, Seconds(creation_time_of(item)));
}

TEST_F(Items, WithoutABackupWereBackedUpIn1904) {
    EXPECT_EQ(january_1_1904_GMT(), backup_time_of(FileAt(here.Write("file"))));
}

TEST_F(Items, KeepTheirTimesFromTheLookUp) {
    std::string const path = here.Write("file");
    file const item = FileAt(path);
    moment const before = modification_time_of(item);
    struct timespec const times[] = {{0, 0}, {0, 0}};
    ASSERT_EQ(0, utimensat(AT_FDCWD, path.c_str(), times, 0));
    EXPECT_EQ(before, modification_time_of(item));
}

TEST_F(Items, WithoutInformationFail) {
    filesystem_object const missing = MissingItem();
    EXPECT_THROW(creation_time_of(missing), FailedToGetFileItem);
    EXPECT_THROW(modification_time_of(missing), FailedToGetFileItem);
    EXPECT_THROW(backup_time_of(missing), FailedToGetFileItem);
    EXPECT_THROW(parent_folder_of(missing), FailedToGetFileItem);
    EXPECT_THROW(asFile(missing), FailedToGetFileItem);
    EXPECT_THROW(asFolder(missing), FailedToGetFileItem);
    EXPECT_EQ("item", Text(name_of(missing)));
}

TEST_F(Items, TellTheirNames) {
    EXPECT_EQ("caf\xC3\xA9", Text(name_of(FileAt(here.Write("caf\xC3\xA9")))));
    EXPECT_EQ("\xFF:", Text(name_of(FileAt(here.Write("\xFF:")))));
    EXPECT_EQ("folder", Text(name_of(FolderAt(here.MakeFolder("folder") + "/"))));
    EXPECT_EQ("/", Text(name_of(FolderAt("/"))));
}

TEST_F(Items, HaveParentsUpToTheRoot) {
    folder const parent = parent_folder_of(FileAt(here.Write("file")));
    EXPECT_EQ(here.Path(), Path(parent));
    EXPECT_TRUE(parent == Here());
    EXPECT_EQ("/", Path(parent_folder_of(FolderAt("/proc"))));
    EXPECT_THROW(parent_folder_of(FolderAt("/")), FailedToGetFileItem);
}

TEST_F(Items, ReachedThroughALinkStandWhereTheLinkDoes) {
    here.MakeFolder("folder");
    here.Link("link", "/etc");
    EXPECT_EQ(here.Path(), Path(parent_folder_of(FolderAt(here.Path("link")))));
}

TEST_F(Items, AreFilesOrFolders) {
    here.Write("file");
    here.MakeFolder("folder");
    filesystem_object const item = ItemNamed("file", Here());
    filesystem_object const folderItem = ItemNamed("folder", Here());
    EXPECT_EQ(here.Path("file"), Path(asFile(item)));
    EXPECT_THROW(asFolder(item), NoSuchObject);
    EXPECT_EQ(here.Path("folder"), Path(asFolder(folderItem)));
    EXPECT_THROW(asFile(folderItem), NoSuchObject);
}

TEST_F(Items, AreEqualWhenTheyAreOneItem) {
    here.Write("file");
    here.Write("other");
    here.Link("link", "file");
    EXPECT_TRUE(ItemNamed("file", Here()) == FileNamed("link", Here()));
    EXPECT_FALSE(ItemNamed("file", Here()) == ItemNamed("other", Here()));
    EXPECT_TRUE(MissingItem() == MissingItem());
    EXPECT_FALSE(MissingItem() == ItemNamed("file", Here()));
}

TEST_F(Items, HaveSuffixes) {
    file const item = FileAt(here.Write("file.txt"));
    EXPECT_TRUE(ItemHasSuffix(item, String(".txt")));
    EXPECT_TRUE(ItemHasSuffix(item, String("t")));
    EXPECT_TRUE(ItemHasSuffix(item, String("")));
    EXPECT_FALSE(ItemHasSuffix(item, String(".TXT")));
    EXPECT_TRUE(ItemHasSuffix(item, String(std::string_view("txt\0no", 6)))) << "a NUL ends the suffix";
}

TEST_F(Items, OfTypesAndCreators) {
    file const item = FileAt(here.Write("file"));
    EXPECT_EQ(0u, type_of(item).code);
    here.SetAttribute("file", "user.com.apple.FinderInfo", "TEXTttxt" + std::string(24, '\0'));
    EXPECT_TRUE(type_of(item) == file_type_of(Bytes("TEXT"), 4));
    EXPECT_TRUE(creator_of(item) == file_signature_of(Bytes("ttxt"), 4));
    std::filesystem::remove(here.Path("file"));
    EXPECT_THROW(type_of(item), FailedToGetFileItem);
}
