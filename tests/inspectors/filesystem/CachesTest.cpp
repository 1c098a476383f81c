// What look-ups remember. The platform counts the items that it is asked for.

#include <Platform/Items.h>

#include <functional>

#include "Asking.h"

namespace {

int lookUps = 0;

Boolean Count(UInt32) {
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
    // Looks one item more up than an empty cache has slots for; the items are named "0", "1" and so on.
    template <class Look>
    static void ExpectToHold(int slots, Look const& look) {
        for (int i = 0; i <= slots; ++i) EXPECT_TRUE(Asks([&] { look(std::to_string(i)); })) << i;
        for (int i = 1; i <= slots; ++i) EXPECT_FALSE(Asks([&] { look(std::to_string(i)); })) << i;
        EXPECT_TRUE(Asks([&] { look("0"); })) << "the oldest gave way";
        EXPECT_TRUE(Asks([&] { look("1"); })) << "the oldest gave way, though it was used last";
    }
    void Write(int count) const {
        for (int i = 0; i < count; ++i) here.Write(std::to_string(i));
    }
    void MakeFolders(int count) const {
        for (int i = 0; i < count; ++i) here.MakeFolder(std::to_string(i));
    }
};

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
    std::function<void()> const lookUpsOfEachKind[] = {
        [&] { FileNamed("file", parent); },
        [&] { posix_relative_file_of(Bytes("file"), 4, parent); },
        [&] { FileAt(here.Path("file")); },
        [&] { FolderNamed("folder", parent); },
        [&] { posix_relative_folder_of(Bytes("folder"), 6, parent); },
        [&] { FolderAt(here.Path("folder")); },
        [&] { ItemNamed("file", parent); },
    };
    auto const asking = [&] {
        std::string result;
        for (auto const& look : lookUpsOfEachKind) result += Asks(look) ? '+' : '-';
        return result;
    };
    EXPECT_EQ("+++++++", asking());
    EXPECT_EQ("-------", asking());
    ClearFileCaches(nullptr);
    EXPECT_EQ("+++----", asking());
    ClearFolderCaches(nullptr);
    EXPECT_EQ("---+++-", asking());
    ClearFileSystemObjectCache(nullptr);
    EXPECT_EQ("------+", asking());
}

TEST_F(Caches, ClearedKeepTheirItemsUntilTheSlotIsUsedAgain) {
    Write(2);
    file const first = FileAt(here.Path("0"));
    CFIndex const held = CFGetRetainCount(first.url);
    ClearFileCaches(nullptr);
    EXPECT_EQ(held, CFGetRetainCount(first.url));
    FileAt(here.Path("1"));
    EXPECT_EQ(held - 1, CFGetRetainCount(first.url));
}

TEST_F(Caches, OfFilesAndItemsHoldTheLastEight) {
    Write(9);
    folder const parent = Here();
    auto const relative = [&](std::string const& name) {
        posix_relative_file_of(Bytes(name), name.size(), parent);
    };
    ExpectToHold(8, [&](std::string const& name) { FileNamed(name, parent); });
    ExpectToHold(8, relative);
    ExpectToHold(8, [&](std::string const& name) { FileAt(here.Path(name)); });
    ExpectToHold(8, [&](std::string const& name) { ItemNamed(name, parent); });
}

TEST_F(Caches, OfFoldersHoldTheLastSixteen) {
    MakeFolders(17);
    folder const parent = Here();
    auto const relative = [&](std::string const& name) {
        posix_relative_folder_of(Bytes(name), name.size(), parent);
    };
    ClearFolderCaches(nullptr);
    ExpectToHold(16, [&](std::string const& name) { FolderNamed(name, parent); });
    ExpectToHold(16, relative);
    ExpectToHold(16, [&](std::string const& name) { FolderAt(here.Path(name)); });
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
    for (int i = 0; i < 8; ++i) FileNamed(std::to_string(i), parent);
    EXPECT_THROW(FileNamed("missing", parent), NoSuchObject);
    for (int i = 0; i < 8; ++i) EXPECT_FALSE(Asks([&] { FileNamed(std::to_string(i), parent); }));
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
