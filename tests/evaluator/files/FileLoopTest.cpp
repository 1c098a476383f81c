// The loop over a folder's items, as inspectors use it.

#include <Platform/Items.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <set>

#include "evaluator/files/Naming.h"
#include "support/Unprivileged.h"

using MacintoshPlatform::FileItem;
using MacintoshPlatform::FileLoop;

namespace {

using Names = std::set<std::string>;

Names NamesLeftIn(FileLoop& loop) {
    Names names;
    for (; !loop.IsAtEnd(); ++loop)
        EXPECT_TRUE(names.insert(MacintoshPlatform::MakeUTF8String(loop.Item().Name())).second);
    return names;
}

}  // namespace

TEST(FileLoops, BeginAtTheirEnd) {
    FileLoop loop;
    EXPECT_TRUE(loop.IsAtEnd());
    ++loop;
    EXPECT_TRUE(loop.IsAtEnd());
}

TEST(FileLoops, GiveEachItemOnce) {
    TemporaryFolder const folder;
    Names names;
    for (int i = 0; i < 200; ++i) names.insert(std::to_string(i));
    for (std::string const& name : names) folder.Write(name);
    FileLoop loop;
    loop.Start(At(folder.Path()));
    EXPECT_EQ(names, NamesLeftIn(loop));
    ++loop;
    EXPECT_TRUE(loop.IsAtEnd());
}

TEST(FileLoops, EmptyFolderIsAtItsEnd) {
    TemporaryFolder const folder;
    FileLoop loop;
    loop.Start(At(folder.Path()));
    EXPECT_TRUE(loop.IsAtEnd());
}

TEST(FileLoops, StartAgainWithAnotherFolder) {
    TemporaryFolder const folder;
    for (char const* name : {"one", "two"}) {
        folder.MakeFolder(name);
        for (int i = 0; i < 40; ++i) folder.Write(name + std::string("/") + name + std::to_string(i));
    }
    FileLoop loop;
    loop.Start(At(folder.Path("one")));
    ++loop;
    loop.Start(At(folder.Path("two")));
    Names const names = NamesLeftIn(loop);
    EXPECT_EQ(40u, names.size());
    EXPECT_TRUE(names.contains("two7"));
}

TEST(FileLoops, ItemsHaveLocationAndInformation) {
    TemporaryFolder const folder;
    std::string const file = folder.Write("file", "12345");
    FileLoop loop;
    loop.Start(At(folder.Path()));
    FileItem const kept = loop.Item();
    ++loop;
    EXPECT_EQ(file, Path(kept));
    EXPECT_EQ(5u, +kept.Info().catalog.dataLogicalSize);
    EXPECT_TRUE(kept == ItemAt(file));
}

// More items than references are remembered pass between.
TEST(FileLoops, ItemsNotYetHandedOutAreNotForgotten) {
    TemporaryFolder const folder;
    for (int i = 0; i < 60; ++i) folder.Write(std::to_string(i));
    FileLoop loop;
    loop.Start(At(folder.Path()));
    for (; !loop.IsAtEnd(); ++loop) {
        std::string const path = Path(loop.Item());
        for (int i = 0; i < 1100; ++i) MakeFSRef(loop.Item().url);
        EXPECT_TRUE(loop.Item() == ItemAt(path)) << path;
    }
}

TEST(FileLoops, SayWhyAFolderCannotBeListed) {
    TemporaryFolder const folder;
    std::string const file = folder.Write("file");
    std::string const locked = folder.MakeFolder("locked");
    ASSERT_EQ(0, chmod(folder.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(locked.c_str(), 0));
    FileLoop loop;
    EXPECT_THROW(loop.Start(At(folder.Path("missing"))), DirectoryNotFoundError);
    EXPECT_THROW(loop.Start(At(file)), DirectoryNotFoundError);
    try {
        loop.Start(At(folder.Path(std::string(300, 'n'))));
        ADD_FAILURE() << "it started";
    } catch (OSError const& error) {
        EXPECT_EQ(-1410, error.Code());
    }
    Unprivileged const now;
    EXPECT_THROW(loop.Start(At(locked)), FilePermissionError);
    EXPECT_TRUE(loop.IsAtEnd());
}

TEST(FileLoops, StopIsThePlatformsCode) {
    TemporaryFolder const folder;
    PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
    FileLoop loop;
    std::int32_t code = 0;
    try {
        loop.Start(At(folder.Path()));
    } catch (OSError const& error) {
        code = error.Code();
    }
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ(-128, code);
}

TEST(FileLoops, AreAtTheirEndAfterAFailure) {
    TemporaryFolder const folder;
    for (int i = 0; i < 100; ++i) folder.Write(std::to_string(i));
    FileLoop loop;
    loop.Start(At(folder.Path()));
    PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
    EXPECT_THROW(
        for (;;) { ++loop; }, OSError);
    PlatformSetCheckIn(nullptr);
    EXPECT_TRUE(loop.IsAtEnd());
    ++loop;
    EXPECT_TRUE(loop.IsAtEnd());
}

TEST(FileLoops, ItemThatMayNotBeLookedAtHasNoInformation) {
    TemporaryFolder const folder;
    std::string const inner = folder.MakeFolder("inner");
    folder.Write("inner/file");
    ASSERT_EQ(0, chmod(folder.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(inner.c_str(), 0744));
    Unprivileged const now;
    FileLoop loop;
    loop.Start(At(inner));
    ASSERT_FALSE(loop.IsAtEnd());
    EXPECT_EQ(0u, loop.Item().info.valid);
    EXPECT_EQ(-5000, loop.Item().info.status);
    EXPECT_EQ(inner + "/file", Path(loop.Item()));
    ++loop;
    EXPECT_TRUE(loop.IsAtEnd());
}

namespace {

std::int32_t DetailOfMissing(std::string const& path) {
    try {
        FileLoop().Start(At(path));
    } catch (DirectoryNotFoundError const& error) {
        return error.Detail();
    }
    return 0;
}

}  // namespace

// The host finds the folder again by the detail word, for its messages.
TEST(FileLoops, EachFailureHasADetailWordOfItsOwn) {
    std::int32_t const first = DetailOfMissing("/no such folder");
    std::int32_t const second = DetailOfMissing("/nor this");
    EXPECT_NE(0, first);
    EXPECT_NE(0, second);
    EXPECT_NE(first, second);
}
