#include "filesystem/Descendants.h"

#include <sys/stat.h>

#include <filesystem>
#include <vector>

#include "Asking.h"
#include "filesystem/Ancestors.h"
#include "filesystem/Enumeration.h"
#include "support/Unprivileged.h"

using Descendants = FileSystem;
using Ancestors = FileSystem;

namespace {

using Paths = std::vector<std::string>;

// The paths below the top that a walk gives.
Paths PathsBelow(folder const& top) {
    Paths paths;
    descendant_iterator walk;
    try {
        for (file found = walk.First(Of(), top);; found = walk.Next(Of(), top))
            paths.push_back(Path(found).substr(Path(top).size() + 1));
    } catch (NoSuchObject const&) {
    }
    EXPECT_THROW(walk.Next(Of(), top), NoSuchObject);
    return paths;
}

Paths Sorted(Paths paths) {
    std::sort(paths.begin(), paths.end());
    return paths;
}

// The same by the items of each folder, in their order.
void WalkByItems(folder const& top, Paths& paths, std::size_t skipped) {
    filesystem_object_iterator loop;
    try {
        for (filesystem_object item = loop.FirstItem(Of(), top);; item = loop.NextItem(Of(), top)) {
            if (item.Info().IsFolder()) {
                WalkByItems(folder(item), paths, skipped);
            } else {
                paths.push_back(Path(item).substr(skipped));
            }
        }
    } catch (NoSuchObject const&) {
    }
}

Paths AncestorsOf(filesystem_object const& object) {
    Paths paths;
    ancestor_iterator walk;
    try {
        for (folder above = walk.First(Of(), object);; above = walk.Next(Of(), object))
            paths.push_back(Path(above));
    } catch (NoSuchObject const&) {
    }
    return paths;
}

}  // namespace

TEST_F(Descendants, AreTheFilesAtAnyDepth) {
    here.MakeFolder("a/b/c");
    here.MakeFolder("empty/inner");
    for (char const* name : {"1", "a/2", "a/b/3", "a/b/c/4", ".hidden"}) here.Write(name);
    EXPECT_EQ((Paths{".hidden", "1", "a/2", "a/b/3", "a/b/c/4"}), Sorted(PathsBelow(Here())));
}

TEST_F(Descendants, OfFoldersWithoutFilesAreNone) {
    here.MakeFolder("a/b/c");
    here.MakeFolder("d");
    EXPECT_EQ(Paths{}, PathsBelow(Here()));
}

TEST_F(Descendants, OfAFolderStandWhereTheFolderDoes) {
    for (int i = 0; i < 30; ++i) {
        here.Write("a" + std::to_string(i));
        here.MakeFolder("b" + std::to_string(i));
        here.Write("b" + std::to_string(i) + "/inner");
    }
    Paths expected;
    WalkByItems(Here(), expected, here.Path().size() + 1);
    EXPECT_EQ(60u, expected.size());
    EXPECT_EQ(expected, PathsBelow(Here()));
}

TEST_F(Descendants, LinkToAFolderIsAFileAndIsNotEntered) {
    here.MakeFolder("a");
    here.Write("a/file");
    here.Link("a/up", "..");
    here.Link("a/self", ".");
    here.Link("a/loop", "loop");
    EXPECT_EQ((Paths{"a/file", "a/loop", "a/self", "a/up"}), Sorted(PathsBelow(Here())));
}

TEST_F(Descendants, BeginAnewEachTime) {
    here.MakeFolder("a");
    here.Write("a/1");
    here.Write("a/2");
    descendant_iterator walk;
    walk.First(Of(), Here());
    walk.First(Of(), Here());
    walk.Next(Of(), Here());
    EXPECT_THROW(walk.Next(Of(), Here()), NoSuchObject);
}

TEST_F(Descendants, OutliveTheWalk) {
    here.MakeFolder("a");
    here.Write("a/file", "12345");
    std::optional<file> kept;
    {
        descendant_iterator walk;
        kept = walk.First(Of(), Here());
    }
    EXPECT_EQ(here.Path("a/file"), Path(*kept));
    EXPECT_EQ(here.Path("a"), Path(parent_folder_of(*kept)));
}

TEST_F(Descendants, FolderThatMayNotBeReadEndsTheWalkWithAFailure) {
    here.MakeFolder("locked");
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(here.Path("locked").c_str(), 0));
    folder const top = Here();
    Unprivileged const now;
    descendant_iterator walk;
    EXPECT_THROW(walk.First(Of(), top), FilePermissionError);
}

TEST_F(Descendants, FolderThatHasGoneEndsTheWalkWithAFailure) {
    here.MakeFolder("a");
    folder const top = Here();
    descendant_iterator walk;
    std::filesystem::remove_all(here.Path());
    EXPECT_THROW(walk.First(Of(), top), DirectoryNotFoundError);
}

// Their names were read together, and then there is no folder where one was.
TEST_F(Descendants, FolderThatWentMeanwhileEndsTheWalkWithAFailure) {
    here.MakeFolder("a");
    here.MakeFolder("b");
    here.Write("a/file");
    here.Write("b/file");
    folder const top = Here();
    descendant_iterator walk;
    std::string const first = Path(walk.First(Of(), top));
    std::filesystem::remove_all(here.Path(first == here.Path("a/file") ? "b" : "a"));
    EXPECT_THROW(walk.Next(Of(), top), DirectoryNotFoundError);
}

TEST_F(Descendants, ItemWithoutInformationEndsTheWalkWithAFailure) {
    here.MakeFolder("inner");
    here.Write("inner/file");
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(here.Path("inner").c_str(), 0744));
    folder const top = Here();
    Unprivileged const now;
    descendant_iterator walk;
    EXPECT_THROW(walk.First(Of(), top), FailedToGetFileItem);
}

TEST_F(Descendants, FolderReplacedByALinkIsNotEntered) {
    here.MakeFolder("a");
    here.MakeFolder("b");
    here.Write("a/file");
    here.Write("b/file");
    folder const top = Here();
    descendant_iterator walk;
    bool const isA = Path(walk.First(Of(), top)) == here.Path("a/file");
    std::string const other = here.Path(isA ? "b" : "a");
    std::filesystem::remove_all(other);
    std::filesystem::create_symlink("..", other);
    EXPECT_THROW(walk.Next(Of(), top), DirectoryNotFoundError);
}

TEST_F(Descendants, LoopOfAFolderIsMadeAndEndsWithItsLastSharer) {
    here.Write("file");
    {
        SharingPtr<FileLoop> const loop = MakeFileLoop(Here());
        SharingPtr<FileLoop> const sharer(loop);
        EXPECT_FALSE(sharer->IsAtEnd());
        EXPECT_EQ(nullptr, sharer->scratch.url);
    }
    EXPECT_THROW(MakeFileLoop(MissingItem()), DirectoryNotFoundError);
}

TEST_F(Ancestors, AreTheFoldersUpToTheRoot) {
    here.MakeFolder("a/b");
    std::string const file = here.Write("a/b/file");
    Paths expected;
    for (std::filesystem::path path = here.Path("a/b");; path = path.parent_path()) {
        expected.push_back(path);
        if (path == "/") break;
    }
    EXPECT_EQ(expected, AncestorsOf(FileAt(file)));
    expected.erase(expected.begin());
    EXPECT_EQ(expected, AncestorsOf(FolderAt(here.Path("a/b"))));
}

TEST_F(Ancestors, OfALinkAreThoseOfWhereItStands) {
    here.MakeFolder("a");
    here.Link("a/link", "/etc");
    Paths const paths = AncestorsOf(FolderAt(here.Path("a/link")));
    EXPECT_EQ(here.Path("a"), paths.at(0));
}

TEST_F(Ancestors, PassMountPoints) { EXPECT_EQ((Paths{"/proc", "/"}), AncestorsOf(FileAt("/proc/version"))); }

TEST_F(Ancestors, RootHasNoneWhichIsAFailure) {
    ancestor_iterator walk;
    EXPECT_THROW(walk.First(Of(), FolderAt("/")), FailedToGetFileItem);
}

TEST_F(Ancestors, FolderThatIsMissingIsAFailureFirstAndTheEndLater) {
    here.MakeFolder("a/b");
    file const object = FileAt(here.Write("a/b/file"));
    ancestor_iterator walk;
    walk.First(Of(), object);
    std::filesystem::remove_all(here.Path("a"));
    EXPECT_THROW(walk.Next(Of(), object), NoSuchObject);
    ancestor_iterator other;
    EXPECT_THROW(other.First(Of(), object), FailedToGetFileItem);
}

// What a look-up finds does not depend on a walk that is on: it goes where the path leads.
TEST_F(Descendants, LookUpsDuringAWalkFollowTheirPaths) {
    here.MakeFolder("a");
    for (int i = 0; i < 100; ++i) here.Write("a/" + std::to_string(i));
    folder const top = FolderAt(here.Path("a"));
    descendant_iterator walk;
    file const found = walk.First(Of(), top);
    std::filesystem::rename(here.Path("a"), here.Path("moved"));
    here.MakeFolder("a");
    here.Write("a/new");
    EXPECT_NO_THROW(FileNamed("new", parent_folder_of(found)));
    EXPECT_EQ(here.Path("a/new"), Path(FileNamed("new", top)));
}
