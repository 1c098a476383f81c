#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "evaluator/files/Naming.h"

using MacintoshPlatform::FailedToGetFileItem;
using MacintoshPlatform::FileItem;
using MacintoshPlatform::FileLocation;
using MacintoshPlatform::MacFileInfo;

namespace {

std::int32_t CodeOf(FileItem const& item) {
    try {
        item.Info();
        return 0;
    } catch (FailedToGetFileItem const& failure) {
        return failure.Code();
    }
}

}  // namespace

TEST(FileInformation, OfAFile) {
    TemporaryFolder const folder;
    FileItem const item = ItemAt(folder.Write("file", "12345"));
    ASSERT_NE(0u, item.info.valid);
    EXPECT_FALSE(item.info.IsFolder());
    EXPECT_EQ(5u, +item.info.catalog.dataLogicalSize);
    EXPECT_EQ(0, CodeOf(item));
}

TEST(FileInformation, OfAFolder) {
    TemporaryFolder const folder;
    EXPECT_TRUE(ItemAt(folder.Path()).Info().IsFolder());
}

TEST(FileInformation, OfAMissingItemIsNotValidAndTellsWhy) {
    TemporaryFolder const folder;
    FileItem const item = ItemAt(folder.Path("missing"));
    EXPECT_EQ(0u, item.info.valid);
    EXPECT_EQ(-43, CodeOf(item));
    EXPECT_EQ(0u, MacFileInfo(FileLocation()).valid);
}

TEST(FileInformation, FinderFlagsOfFilesAndFolders) {
    TemporaryFolder const folder;
    folder.Write("file");
    folder.SetAttribute("file", "user.com.apple.FinderInfo",
                        std::string("TEXTttxt\x08\x00", 10) + std::string(22, '\0'));
    EXPECT_EQ(kIsStationery, ItemAt(folder.Path("file")).info.FinderFlags());
    EXPECT_EQ(kIsInvisible, ItemAt(folder.MakeFolder(".hidden")).info.FinderFlags());
}

TEST(FileInformation, IsEqualForTheSameItem) {
    TemporaryFolder const folder;
    FileItem const file = ItemAt(folder.Write("file"));
    FileItem const link = ItemAt(folder.Link("link", "file"));
    FileItem const other = ItemAt(folder.Write("other"));
    EXPECT_TRUE(file == link);
    EXPECT_FALSE(file == other);
}

TEST(FileInformation, KeepsItsIdentityWhenTheItemHasGone) {
    TemporaryFolder const folder;
    FileItem const file = ItemAt(folder.Write("file"));
    FileItem const copy = file;
    std::filesystem::remove(folder.Path("file"));
    EXPECT_TRUE(file == copy);
}

TEST(ItemsWithoutInformation, CompareByTheirLocations) {
    TemporaryFolder const folder;
    FileItem const missing = ItemAt(folder.Path("missing"));
    FileItem const alsoMissing = ItemAt(folder.Path("missing"));
    FileItem const other = ItemAt(folder.Path("other"));
    EXPECT_TRUE(missing == alsoMissing);
    EXPECT_FALSE(missing == other);
    EXPECT_FALSE(missing == ItemAt(folder.Write("file")));
    EXPECT_TRUE(missing == ItemAt(folder.Write("missing")));
}

TEST(Items, OwnTheirUrls) {
    CFURLRef const url = NewURL("/");
    {
        FileItem const item{FileLocation(Duplicate(url))};
        FileItem const copy = item;
        EXPECT_EQ(3, CFGetRetainCount(url));
    }
    EXPECT_EQ(1, CFGetRetainCount(url));
    CFRelease(url);
}
