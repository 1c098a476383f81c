// What look-ups remember. The platform counts the items that it is asked for.

#include <Platform/Items.h>

#include "Asking.h"

namespace {

int lookUps = 0;

Boolean Count() {
    ++lookUps;
    return true;
}

class Caches : public FileSystem {
  protected:
    Caches() { PlatformSetCheckIn(Count); }
    ~Caches() override { PlatformSetCheckIn(nullptr); }

    // Whether an action asks the platform for an item.
    template <class Action>
    static bool Asks(Action const& action) {
        int const before = lookUps;
        action();
        return lookUps != before;
    }
    void Write(int count) const {
        for (int i = 0; i < count; ++i) here.Write(std::to_string(i));
    }
    void MakeFolders(int count) const {
        for (int i = 0; i < count; ++i) here.MakeFolder(std::to_string(i));
    }
};

// The item's number in the order of look-ups, as a name and a path.
std::string Name(int number) { return std::to_string(number); }

}  // namespace

TEST_F(Caches, AnswerTheSameLookUpWithoutAskingThePlatform) {
    here.Write("file");
    here.MakeFolder("folder");
    folder const parent = Here();
    auto const look = [&] {
        FileNamed("file", parent);
        FolderNamed("folder", parent);
        ItemNamed("file", parent);
        posix_relative_file_of(Bytes("./file"), 6, parent);
        posix_relative_folder_of(Bytes("./folder"), 8, parent);
        FileAt(here.Path("file"));
        FolderAt(here.Path("folder"));
    };
    EXPECT_TRUE(Asks(look));
    EXPECT_FALSE(Asks(look));
}

TEST_F(Caches, StillAnswerWhenTheItemHasGone) {
    here.Write("file");
    folder const parent = Here();
    FileNamed("file", parent);
    std::filesystem::remove(here.Path("file"));
    EXPECT_EQ(here.Path("file"), Path(FileNamed("file", parent)));
    ClearFileCaches(nullptr);
    EXPECT_THROW(FileNamed("file", parent), NoSuchObject);
}

TEST_F(Caches, AreClearedByTheirKinds) {
    here.Write("file");
    here.MakeFolder("folder");
    folder const parent = Here();
    auto const lookForFiles = [&] {
        FileNamed("file", parent);
        posix_relative_file_of(Bytes("file"), 4, parent);
        FileAt(here.Path("file"));
    };
    auto const lookForFolders = [&] {
        FolderNamed("folder", parent);
        posix_relative_folder_of(Bytes("folder"), 6, parent);
        FolderAt(here.Path("folder"));
    };
    auto const lookForItems = [&] { ItemNamed("file", parent); };
    auto const expect = [&](bool files, bool folders, bool items) {
        EXPECT_EQ(files, Asks(lookForFiles));
        EXPECT_EQ(folders, Asks(lookForFolders));
        EXPECT_EQ(items, Asks(lookForItems));
    };
    expect(true, true, true);
    ClearFileCaches(nullptr);
    expect(true, false, false);
    ClearFolderCaches(nullptr);
    expect(false, true, false);
    ClearFileSystemObjectCache(nullptr);
    expect(false, false, true);
}

TEST_F(Caches, OfFilesAndItemsHoldTheLastEight) {
    Write(9);
    folder const parent = Here();
    for (int i = 0; i < 9; ++i) FileNamed(Name(i), parent);
    for (int i = 0; i < 9; ++i) ItemNamed(Name(i), parent);
    for (int i = 0; i < 9; ++i) FileAt(here.Path(Name(i)));
    EXPECT_FALSE(Asks([&] { FileNamed("1", parent); }));
    EXPECT_TRUE(Asks([&] { FileNamed("0", parent); }));
    EXPECT_FALSE(Asks([&] { ItemNamed("1", parent); }));
    EXPECT_TRUE(Asks([&] { ItemNamed("0", parent); }));
    EXPECT_FALSE(Asks([&] { FileAt(here.Path("1")); }));
    EXPECT_TRUE(Asks([&] { FileAt(here.Path("0")); }));
    EXPECT_TRUE(Asks([&] { FileNamed("1", parent); })) << "the oldest gave way, though it was used last";
}

TEST_F(Caches, OfFoldersHoldTheLastSixteen) {
    MakeFolders(17);
    folder const parent = Here();
    for (int i = 0; i < 17; ++i) FolderNamed(Name(i), parent);
    for (int i = 0; i < 17; ++i) posix_relative_folder_of(Bytes(Name(i)), Name(i).size(), parent);
    EXPECT_FALSE(Asks([&] { FolderNamed("1", parent); }));
    EXPECT_TRUE(Asks([&] { FolderNamed("0", parent); }));
    EXPECT_FALSE(Asks([&] { posix_relative_folder_of(Bytes("1"), 1, parent); }));
    EXPECT_TRUE(Asks([&] { posix_relative_folder_of(Bytes("0"), 1, parent); }));
}

TEST_F(Caches, MindTheCaseAndTheFolder) {
    here.Write("foo");
    here.Write("Foo");
    here.MakeFolder("folder");
    here.Write("folder/foo");
    folder const parent = Here();
    FileNamed("foo", parent);
    EXPECT_TRUE(Asks([&] { FileNamed("Foo", parent); }));
    EXPECT_EQ(here.Path("folder/foo"), Path(FileNamed("foo", FolderAt(here.Path("folder")))));
}

TEST_F(Caches, MindNeitherStyleNorEncoding) {
    here.MakeFolder("a");
    here.Write("a/b");
    folder const base = Here();
    EXPECT_THROW(posix_relative_file_of(Bytes("a:b"), 3, base), NoSuchObject);
    EXPECT_EQ(here.Path("a/b"), Path(hfs_relative_file_of(Bytes("a:b"), 3, base)));
    EXPECT_EQ(here.Path("a/b"), Path(posix_relative_file_of(Bytes("a:b"), 3, base)));
}

TEST_F(Caches, KeepTheWholeKeyWhenANulEndsThePath) {
    here.Write("file");
    std::string const path = here.Path("file");
    FileAt(path);
    EXPECT_TRUE(Asks([&] { FileAt(path + std::string("\0a", 2)); }));
    EXPECT_FALSE(Asks([&] { FileAt(path + std::string("\0a", 2)); }));
}

TEST_F(Caches, AreUntouchedByLookUpsThatFail) {
    Write(8);
    folder const parent = Here();
    for (int i = 0; i < 8; ++i) FileNamed(Name(i), parent);
    EXPECT_THROW(FileNamed("missing", parent), NoSuchObject);
    for (int i = 0; i < 8; ++i) EXPECT_FALSE(Asks([&] { FileNamed(Name(i), parent); }));
    EXPECT_TRUE(Asks([&] { EXPECT_THROW(FileNamed("missing", parent), NoSuchObject); }));
}

TEST_F(Caches, ObjectIsLookedAtTwice) {
    here.Write("file");
    folder const parent = Here();
    int const before = lookUps;
    FileNamed("file", parent);
    int const once = lookUps - before;
    ItemNamed("file", parent);
    EXPECT_EQ(2 * once, lookUps - before - once);
}
