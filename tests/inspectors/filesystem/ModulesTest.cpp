// The tables of the modules, row for row.

#include <gtest/gtest.h>

#include <algorithm>

#include "RegistrationLog.h"
#include "Slot.h"
#include "modules/FileSignaturesModule.h"
#include "modules/FileSystemObjectsModule.h"
#include "modules/FileTypesModule.h"
#include "modules/FilesModule.h"
#include "modules/FoldersModule.h"

#include "Asking.h"

namespace {

using Rows = std::vector<std::string>;

// Constructs a module, which must register these rows in this order and withdraw them in the opposite one.
template <class Module>
void ExpectRows(Rows rows) {
    ForgetWithdrawn();
    {
        Module const module;
        EXPECT_EQ(rows, RegisteredRows());
    }
    EXPECT_TRUE(Registered().empty());
    std::reverse(rows.begin(), rows.end());
    EXPECT_EQ(rows, Withdrawn());
}

std::string const kOfFolder = "of \"folder\": ";
std::string const kOfObject = "of \"filesystem object\": ";

// The rows of look-ups that are the same for files and folders.
Rows LookUpRows(std::string const& kind) {
    auto const row = [&](std::string const& before, std::string const& object) {
        return "property \"" + before + kind + "\" \"" + before + kind + "s\" [\"string\"]" + object + " \"" +
               kind + "\"";
    };
    return {row("", " of \"folder\":"),
            row("sibling ", " of \"filesystem object\":"),
            row("relative ", " of \"folder\":"),
            row("relative hfs ", " of \"folder\":"),
            row("relative posix ", " of \"folder\":"),
            row("", ":"),
            row("hfs ", ":"),
            row("posix ", ":")};
}

Rows operator+(Rows left, Rows const& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

}  // namespace

TEST(FilesModule, RegistersItsTableInOrder) {
    ExpectRows<FilesModule>(Rows{"type \"file\" based on \"filesystem object\""} + LookUpRows("file") +
                            Rows{"property \"type\" \"types\" of \"file\": \"file type\"",
                                 "property \"creator\" \"creators\" of \"file\": \"file signature\"",
                                 "cast \"file\" of \"filesystem object\": \"file\"", "cache"});
}

TEST(FoldersModule, RegistersItsTableInOrder) {
    ExpectRows<FoldersModule>(Rows{"type \"folder\" based on \"filesystem object\""} + LookUpRows("folder") +
                              Rows{"cast \"folder\" of \"filesystem object\": \"folder\"", "cache"});
}

TEST(FileSystemObjectsModule, RegistersItsTableInOrder) {
    ExpectRows<FileSystemObjectsModule>(
        {"type \"filesystem object\"",
         "operator 6 \"filesystem object\" \"filesystem object\": \"boolean\" pure",
         "property \"item\" \"items\" [\"string\"] " + kOfFolder + "\"filesystem object\"",
         "property \"sibling item\" \"sibling items\" [\"string\"] " + kOfObject + "\"filesystem object\"",
         "property \"creation time\" \"creation times\" " + kOfObject + "\"time\" pure",
         "property \"modification time\" \"modification times\" " + kOfObject + "\"time\" pure",
         "property \"backup time\" \"backup times\" " + kOfObject + "\"time\"",
         "property \"parent folder\" \"parent folders\" " + kOfObject + "\"folder\"",
         "property \"name\" \"names\" " + kOfObject + "\"string\" pure", "cache"});
}

TEST(FileTypesModule, RegistersItsTableInOrder) {
    ExpectRows<FileTypesModule>({"type \"file type\"",
                                 "property \"file type\" \"file types\" [\"string\"]: \"file type\"",
                                 "operator 6 \"file type\" \"file type\": \"boolean\""});
}

TEST(FileSignaturesModule, RegistersItsTableInOrder) {
    ExpectRows<FileSignaturesModule>(
        {"type \"file signature\"",
         "property \"file signature\" \"file signatures\" [\"string\"]: \"file signature\"",
         "operator 6 \"file signature\" \"file signature\": \"boolean\""});
}

TEST(FileSystemModules, OnlyFilesHaveFingerprints) {
    FilesModule const files;
    FoldersModule const folders;
    FileSystemObjectsModule const objects;
    EXPECT_NE(nullptr, RegisteredAs("type \"file\" based on \"filesystem object\"").fingerprint);
    EXPECT_EQ(nullptr, RegisteredAs("type \"folder\" based on \"filesystem object\"").fingerprint);
    EXPECT_EQ(nullptr, RegisteredAs("type \"filesystem object\"").fingerprint);
}

TEST(FileSystemModules, FilesAndFoldersServeAsObjects) {
    static_assert(sizeof(file) == sizeof(filesystem_object) && sizeof(folder) == sizeof(filesystem_object));
    FileSystemObjectsModule const objects;
    Registration const name =
        RegisteredAs("property \"name\" \"names\" of \"filesystem object\": \"string\" pure");
    folder const root = FolderAt("/");
    Slot<inspector_string> slot;
    name.get(slot, nullptr, &root, nullptr, name.context);
    EXPECT_EQ("/", Text(slot.Value()));
}

TEST(FileSystemModules, BarePathsArePosixPaths) {
    TemporaryFolder const here;
    here.MakeFolder("a");
    here.Write("a/b");
    FilesModule const files;
    Registration const relative =
        RegisteredAs("property \"relative file\" \"relative files\" [\"string\"] of \"folder\": \"file\"");
    folder const base = FolderAt(here.Path());
    inspector_string const path(Bytes("a/b"), 3);
    Slot<file> slot;
    relative.get(slot, &path, &base, nullptr, relative.context);
    EXPECT_EQ(here.Path("a/b"), Path(slot.Value()));
    slot.End();
}

TEST(FileSystemModules, ClearingForgetsWhatWasLookedUp) {
    TemporaryFolder const here;
    FilesModule const files;
    Registration const cache = RegisteredAs("cache");
    std::string const path = here.Write("file");
    FileAt(path);
    std::filesystem::remove(path);
    EXPECT_EQ(path, Path(FileAt(path)));
    cache.clear(nullptr);
    EXPECT_THROW(FileAt(path), NoSuchObject);
}
