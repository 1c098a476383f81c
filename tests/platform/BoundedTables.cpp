// The tables behind references and FSSpecs, with few places.

#include "files/References.h"

#include <gtest/gtest.h>

using Platform::FolderTable;
using Platform::Item;
using Platform::LinkRule;
using Platform::ReferenceTable;

namespace {

FSRef Remember(ReferenceTable& table, std::string path) {
    Item item{};
    item.status.stx_ino = path.size();
    return table.Remember({std::move(path), LinkRule::Listed}, item);
}

}  // namespace

TEST(ReferenceTable, RemembersAsManyAsItHasPlaces) {
    ReferenceTable table(3);
    FSRef const first = Remember(table, "/first");
    FSRef const second = Remember(table, "/second");
    Remember(table, "/third");
    ASSERT_TRUE(table.Find(first));
    EXPECT_EQ("/first", table.Find(first)->location.path);
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

TEST(FolderTable, RemembersAsManyAsItHasPlaces) {
    FolderTable table(2);
    table.Remember(-100, 1, "/one");
    table.Remember(-100, 2, "/two");
    EXPECT_EQ("/one", table.Find(-100, 1));
    table.Remember(-100, 3, "/three");
    EXPECT_EQ(std::nullopt, table.Find(-100, 1));
    EXPECT_EQ("/two", table.Find(-100, 2));
    EXPECT_EQ("/three", table.Find(-100, 3));
}

TEST(FolderTable, KnownFolderTakesNoSecondPlace) {
    FolderTable table(2);
    table.Remember(-100, 1, "/one");
    table.Remember(-100, 2, "/two");
    table.Remember(-100, 1, "/moved");
    EXPECT_EQ("/moved", table.Find(-100, 1));
    EXPECT_EQ("/two", table.Find(-100, 2));
}

TEST(FolderTable, FolderNamedAgainIsNamedLast) {
    FolderTable table(2);
    table.Remember(-100, 1, "/one");
    table.Remember(-100, 2, "/two");
    table.Remember(-100, 1, "/one");
    table.Remember(-100, 3, "/three");
    EXPECT_EQ("/one", table.Find(-100, 1));
    EXPECT_EQ(std::nullopt, table.Find(-100, 2));
}

TEST(FolderTable, SameNumberOnAnotherVolumeIsAnotherFolder) {
    FolderTable table(2);
    table.Remember(-100, 1, "/one");
    EXPECT_EQ(std::nullopt, table.Find(-101, 1));
}
