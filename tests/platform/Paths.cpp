// Paths that share their beginnings.

#include "foundation/Path.h"

#include <gtest/gtest.h>

using Platform::Path;

TEST(Paths, OfATextAreThatText) {
    struct {
        char const* given;
        char const* text;
        char const* name;
        bool plain;
    } const rows[] = {
        {"/", "/", "/", true},        {"/a", "/a", "a", true},        {"/a/b/", "/a/b", "b", true},
        {"a/b", "a/b", "b", false},   {"/a//b", "/a//b", "b", false}, {"/a/../b", "/a/../b", "b", false},
        {"/a/.", "/a/.", ".", false}, {".", ".", ".", false},         {"//", "/", "/", true}};
    for (auto const& row : rows) {
        Path const path{std::string_view(row.given)};
        EXPECT_EQ(row.text, path.Text());
        EXPECT_EQ(row.name, path.Name()) << row.given;
        EXPECT_EQ(row.plain, path.IsPlain()) << row.given;
        EXPECT_EQ(path.Text().size(), path.Length()) << row.given;
    }
}

TEST(Paths, ChildrenStandBelowTheirFolder) {
    for (char const* top : {"/", "/a", "/a/b", "a"}) {
        Path const folder{std::string_view(top)};
        Path const child = folder.Child("c").Child("d");
        std::string const begin = top == std::string("/") ? "" : top;
        EXPECT_EQ(begin + "/c/d", child.Text());
        EXPECT_EQ(child.Text().size(), child.Length());
        EXPECT_EQ("d", child.Name());
        EXPECT_EQ(folder.IsPlain(), child.IsPlain());
        EXPECT_EQ(begin + "/c", child.Folder().Text());
    }
}

TEST(Paths, FolderOfATextIsFoundToo) {
    EXPECT_EQ("/a", Path("/a/b").Folder().Text());
    EXPECT_EQ("/", Path("/a").Folder().Text());
    EXPECT_TRUE(Path("/").Folder().IsNone());
    EXPECT_TRUE(Path("/a").Folder().IsRoot());
}

TEST(Paths, BelowTakesAnyText) {
    Path const folder("/a");
    EXPECT_TRUE(folder.Below("b").IsChildOf(folder));
    for (char const* rest : {"b/c", "..", "."}) {
        EXPECT_EQ(std::string("/a/") + rest, folder.Below(rest).Text());
        EXPECT_FALSE(folder.Below(rest).IsChildOf(folder));
    }
    EXPECT_FALSE(folder.Below("..").IsPlain());
}

TEST(Paths, KnowWhatTheyWereMadeFrom) {
    Path const folder("/a");
    Path const same("/a");
    Path const child = folder.Child("b");
    EXPECT_TRUE(child.IsChildOf(Path(folder)));
    EXPECT_FALSE(child.IsChildOf(same));
    EXPECT_FALSE(Path("/a/b").IsChildOf(folder));
    EXPECT_TRUE(child.Folder().Is(folder));
    EXPECT_FALSE(folder.Is(same));
}

TEST(Paths, FindAFolderAboveThatIsShortEnough) {
    Path const top("/top");
    Path const deep = top.Child("a").Child("b").Child("c");
    EXPECT_EQ("/top/a/b", deep.FolderWithin(100).Text());
    EXPECT_EQ("/top/a", deep.FolderWithin(7).Text());
    EXPECT_EQ("/top", deep.FolderWithin(5).Text());
    EXPECT_TRUE(deep.FolderWithin(3).IsNone());
    EXPECT_TRUE(Path("/top/a").FolderWithin(100).IsNone());
    EXPECT_EQ("b/c", deep.TextBelow(deep.FolderWithin(7)));
    EXPECT_EQ("a/b/c", Path("/").Child("a").Child("b").Child("c").TextBelow(Path("/")));
}

// Neither the stack nor the memory would do for a million whole paths.
TEST(Paths, MillionNamesDeep) {
    Path path("/");
    for (int i = 0; i < 1'000'000; ++i) path = path.Child("d");
    EXPECT_EQ(2'000'000u, path.Length());
    EXPECT_EQ(2'000'000u, path.Text().size());
}
