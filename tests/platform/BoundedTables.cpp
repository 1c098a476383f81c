// The tables behind references and FSSpecs, with few places.

#include "files/References.h"

#include <gtest/gtest.h>

using Platform::FolderTable;
using Platform::Item;
using Platform::LinkRule;
using Platform::Path;
using Platform::ReferenceTable;

namespace {

FSRef Remember(ReferenceTable& table, std::string path) {
    Item item{};
    item.status.stx_ino = path.size();
    return table.Remember({Path(path), LinkRule::Listed}, item);
}

std::string FolderIn(FolderTable const& table, FSVolumeRefNum volume, SInt32 number) {
    auto const path = table.Find(volume, number);
    return path ? path->Text() : std::string();
}

}  // namespace

TEST(ReferenceTable, RemembersAsManyAsItHasPlaces) {
    ReferenceTable table(3);
    FSRef const first = Remember(table, "/first");
    FSRef const second = Remember(table, "/second");
    Remember(table, "/third");
    ASSERT_TRUE(table.Find(first));
    EXPECT_EQ("/first", table.Find(first)->location.path.Text());
    EXPECT_EQ(LinkRule::Listed, table.Find(first)->location.rule);
    Remember(table, "/fourth");
    EXPECT_FALSE(table.Find(first));
    EXPECT_TRUE(table.Find(second));
}

TEST(ReferenceTable, KeepsWhatAReferenceHoldsItself) {
    ReferenceTable table(1);
    FSRef const first = Remember(table, "/first");
    Remember(table, "/second");
    ASSERT_TRUE(ReferenceTable::IdentityIn(first));
    EXPECT_EQ(6u, ReferenceTable::IdentityIn(first)->inode);
}

TEST(ReferenceTable, RowIsRememberedAndForgottenAsAWhole) {
    ReferenceTable table(4);
    std::vector<FSRef> row;
    {
        ReferenceTable::Row made(table, 3);
        for (char const* path : {"/a", "/b", "/c"})
            row.push_back(made.Add({Path(path), LinkRule::Listed}, Item{}));
        EXPECT_FALSE(table.Find(row[0])) << "the table learns of them together";
    }
    EXPECT_EQ("/a", table.Find(row[0])->location.path.Text());
    EXPECT_EQ("/c", table.Find(row[2])->location.path.Text());
    for (char const* path : {"/1", "/2", "/3"}) Remember(table, path);
    EXPECT_TRUE(table.Find(row[0])) << "three others and one of these are not enough to forget it";
    FSRef const last = Remember(table, "/4");
    for (FSRef const& reference : row) EXPECT_FALSE(table.Find(reference));
    EXPECT_EQ("/4", table.Find(last)->location.path.Text());
}

TEST(FolderTable, RemembersAsManyAsItHasPlaces) {
    FolderTable table(2);
    table.Remember(-100, 1, Path("/one"));
    table.Remember(-100, 2, Path("/two"));
    EXPECT_EQ("/one", FolderIn(table, -100, 1));
    table.Remember(-100, 3, Path("/three"));
    EXPECT_EQ("", FolderIn(table, -100, 1));
    EXPECT_EQ("/two", FolderIn(table, -100, 2));
    EXPECT_EQ("/three", FolderIn(table, -100, 3));
}

TEST(FolderTable, KnownFolderTakesNoSecondPlace) {
    FolderTable table(2);
    table.Remember(-100, 1, Path("/one"));
    table.Remember(-100, 2, Path("/two"));
    table.Remember(-100, 1, Path("/moved"));
    EXPECT_EQ("/moved", FolderIn(table, -100, 1));
    EXPECT_EQ("/two", FolderIn(table, -100, 2));
}

TEST(FolderTable, FolderNamedAgainIsNamedLast) {
    FolderTable table(2);
    table.Remember(-100, 1, Path("/one"));
    table.Remember(-100, 2, Path("/two"));
    table.Remember(-100, 1, Path("/one"));
    table.Remember(-100, 3, Path("/three"));
    EXPECT_EQ("/one", FolderIn(table, -100, 1));
    EXPECT_EQ("", FolderIn(table, -100, 2));
}

TEST(FolderTable, SameNumberOnAnotherVolumeIsAnotherFolder) {
    FolderTable table(2);
    table.Remember(-100, 1, Path("/one"));
    EXPECT_EQ("", FolderIn(table, -101, 1));
}
