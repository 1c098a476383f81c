#include "filesystem/Enumeration.h"

#include <sys/stat.h>

#include <algorithm>
#include <functional>
#include <set>

#include "Asking.h"
#include "support/Unprivileged.h"

using Enumeration = FileSystem;

namespace {

using Names = std::multiset<std::string>;
using Loop = filesystem_object_iterator;

inspector_string String(std::string_view text) {
    return {Bytes(text), static_cast<std::uint32_t>(text.size())};
}

// The names that the steps of an iteration give up to its end, which must stay one.
template <class First, class Next>
Names NamesOf(First const& first, Next const& next) {
    Names names;
    try {
        for (auto item = first();; item = next()) names.insert(Text(name_of(item)));
    } catch (NoSuchObject const&) {
    }
    EXPECT_THROW(next(), NoSuchObject);
    return names;
}

template <class R>
Names NamesIn(folder const& parent, R (Loop::*first)(Of, folder const&), R (Loop::*next)(Of, folder const&)) {
    Loop loop;
    return NamesOf([&] { return (loop.*first)(Of(), parent); }, [&] { return (loop.*next)(Of(), parent); });
}

template <class R>
Names NamesEndingIn(std::string_view text, folder const& parent,
                    R (Loop::*first)(inspector_string const&, Of, folder const&),
                    R (Loop::*next)(inspector_string const&, Of, folder const&)) {
    Loop loop;
    inspector_string const suffix = String(text);
    return NamesOf([&] { return (loop.*first)(suffix, Of(), parent); },
                   [&] { return (loop.*next)(suffix, Of(), parent); });
}

Names Items(folder const& parent) { return NamesIn(parent, &Loop::FirstItem, &Loop::NextItem); }
Names Files(folder const& parent) { return NamesIn(parent, &Loop::FirstFile, &Loop::NextFile); }
Names Folders(folder const& parent) { return NamesIn(parent, &Loop::FirstFolder, &Loop::NextFolder); }

}  // namespace

TEST_F(Enumeration, GivesItemsFilesAndFolders) {
    here.Write("file");
    here.Write(".hidden");
    here.MakeFolder("folder");
    here.MakeFolder("package.app");
    here.Link("to folder", "folder");
    here.Link("to nothing", "nothing");
    EXPECT_EQ((Names{"file", ".hidden", "folder", "package.app", "to folder", "to nothing"}), Items(Here()));
    EXPECT_EQ((Names{"file", ".hidden", "to folder", "to nothing"}), Files(Here()));
    EXPECT_EQ((Names{"folder", "package.app"}), Folders(Here()));
}

TEST_F(Enumeration, OfAnEmptyFolderGivesNothing) {
    EXPECT_EQ(Names{}, Items(Here()));
    EXPECT_EQ(Names{}, Files(Here()));
    EXPECT_EQ(Names{}, Folders(Here()));
}

TEST_F(Enumeration, OfAFolderWithFoldersOnlyGivesNoFiles) {
    for (int i = 0; i < 40; ++i) here.MakeFolder(std::to_string(i));
    EXPECT_EQ(Names{}, Files(Here()));
    EXPECT_EQ(40u, Folders(Here()).size());
}

TEST_F(Enumeration, ByTheEndOfTheName) {
    for (char const* name : {"a.txt", "b.TXT", "txt", ".txt", "c.txt.gz"}) here.Write(name);
    for (char const* name : {"d.txt", "e"}) here.MakeFolder(name);
    folder const parent = Here();
    EXPECT_EQ((Names{"a.txt", ".txt", "d.txt"}),
              NamesEndingIn(".txt", parent, &Loop::FirstItemEndingIn, &Loop::NextItemEndingIn));
    EXPECT_EQ((Names{"a.txt", ".txt"}),
              NamesEndingIn(".txt", parent, &Loop::FirstFileEndingIn, &Loop::NextFileEndingIn));
    EXPECT_EQ(Names{"d.txt"},
              NamesEndingIn(".txt", parent, &Loop::FirstFolderEndingIn, &Loop::NextFolderEndingIn));
    EXPECT_EQ((Names{"a.txt", ".txt", "txt"}),
              NamesEndingIn("txt", parent, &Loop::FirstFileEndingIn, &Loop::NextFileEndingIn));
    EXPECT_EQ(Files(parent), NamesEndingIn("", parent, &Loop::FirstFileEndingIn, &Loop::NextFileEndingIn));
}

TEST_F(Enumeration, BySuffixThatNoneHasGivesNothing) {
    here.Write("file");
    here.MakeFolder("folder");
    folder const parent = Here();
    EXPECT_EQ(Names{}, NamesEndingIn("x", parent, &Loop::FirstItemEndingIn, &Loop::NextItemEndingIn));
    EXPECT_EQ(Names{}, NamesEndingIn("x", parent, &Loop::FirstFileEndingIn, &Loop::NextFileEndingIn));
    EXPECT_EQ(Names{}, NamesEndingIn("x", parent, &Loop::FirstFolderEndingIn, &Loop::NextFolderEndingIn));
}

TEST_F(Enumeration, BeginsAnewEachTime) {
    for (int i = 0; i < 100; ++i) here.Write(std::to_string(i));
    folder const parent = Here();
    EXPECT_EQ(Items(parent), Items(parent));
    Loop loop;
    std::string const first = Text(name_of(loop.FirstItem(Of(), parent)));
    loop.NextItem(Of(), parent);
    EXPECT_EQ(first, Text(name_of(loop.FirstItem(Of(), parent))));
}

TEST_F(Enumeration, ItemsOutliveIt) {
    here.Write("file", "12345");
    std::optional<file> kept;
    {
        Loop loop;
        kept = loop.FirstFile(Of(), Here());
    }
    EXPECT_EQ("file", Text(name_of(*kept)));
    EXPECT_EQ(5u, +kept->Info().catalog.dataLogicalSize);
    EXPECT_EQ(here.Path(), Path(parent_folder_of(*kept)));
}

TEST_F(Enumeration, OfAFolderThatHasGoneFails) {
    folder const gone = FolderAt(here.MakeFolder("gone"));
    std::filesystem::remove(here.Path("gone"));
    Loop loop;
    EXPECT_THROW(loop.FirstItem(Of(), gone), DirectoryNotFoundError);
    EXPECT_THROW(loop.FirstFile(Of(), gone), DirectoryNotFoundError);
    EXPECT_THROW(loop.FirstFolder(Of(), gone), DirectoryNotFoundError);
    EXPECT_THROW(loop.NextItem(Of(), gone), NoSuchObject);
}

TEST_F(Enumeration, OfAFolderThatMayNotBeReadFails) {
    folder const locked = FolderAt(here.MakeFolder("locked"));
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(here.Path("locked").c_str(), 0));
    Unprivileged const now;
    Loop loop;
    EXPECT_THROW(loop.FirstItem(Of(), locked), FilePermissionError);
}

// It cannot be told whether it is a file or a folder, but it is an item.
TEST_F(Enumeration, ItemWithoutInformationIsAnItemButEndsFilesAndFolders) {
    folder const inner = FolderAt(here.MakeFolder("inner"));
    here.Write("inner/file");
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(here.Path("inner").c_str(), 0744));
    Unprivileged const now;
    EXPECT_EQ(Names{"file"}, Items(inner));
    Loop loop;
    EXPECT_THROW(loop.FirstFile(Of(), inner), FailedToGetFileItem);
    EXPECT_THROW(loop.FirstFolder(Of(), inner), FailedToGetFileItem);
    EXPECT_THROW(loop.FirstFileEndingIn(String("x"), Of(), inner), FailedToGetFileItem);
    EXPECT_NO_THROW(loop.FirstItemEndingIn(String("e"), Of(), inner));
}
