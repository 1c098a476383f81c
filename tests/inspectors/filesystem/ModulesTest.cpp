// The tables of the modules, row for row.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <span>

#include "RegistrationLog.h"
#include "Slot.h"
#include "modules/AncestorsModule.h"
#include "modules/DescendantsModule.h"
#include "modules/FileSignaturesModule.h"
#include "modules/FileSystemObjectsModule.h"
#include "modules/FileTypesModule.h"
#include "modules/FilesModule.h"
#include "modules/FoldersModule.h"

#include "Asking.h"

namespace {

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

std::string RootInHfsStyle() {
    Owned<CFURLRef> const root(NewURL("/"));
    Owned<CFStringRef> const path(CFURLCopyFileSystemPath(root, kCFURLHFSPathStyle));
    return NameBytes(path);
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
         "property \"name\" \"names\" " + kOfObject + "\"string\" pure",
         "iterated property \"item\" \"items\" " + kOfFolder + "\"filesystem object\"",
         "iterated property \"item ending in\" \"items ending in\" [\"string\"] " + kOfFolder +
             "\"filesystem object\"",
         "iterated property \"file\" \"files\" " + kOfFolder + "\"file\"",
         "iterated property \"file ending in\" \"files ending in\" [\"string\"] " + kOfFolder + "\"file\"",
         "iterated property \"folder\" \"folders\" " + kOfFolder + "\"folder\"",
         "iterated property \"folder ending in\" \"folders ending in\" [\"string\"] " + kOfFolder +
             "\"folder\"",
         "cache"});
}

TEST(DescendantsModule, RegistersItsTable) {
    ExpectRows<DescendantsModule>(
        {"iterated property \"descendant\" \"descendants\" " + kOfFolder + "\"file\""});
}

TEST(AncestorsModule, RegistersItsTable) {
    ExpectRows<AncestorsModule>({"iterated property \"ancestor\" \"ancestors\" " + kOfObject + "\"folder\""});
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

// Each row asks the function of its own: only one of the paths leads to the item.
TEST(FileSystemModules, LookUpsAreThoseOfTheirPhrases) {
    TemporaryFolder const here;
    here.MakeFolder("a/folder");
    here.Write("a/file");
    folder const base = FolderAt(here.Path());
    folder const inner = FolderAt(here.Path("a"));
    folder const sibling = FolderAt(here.Path("a/folder"));
    FilesModule const files;
    FoldersModule const folders;
    FileSystemObjectsModule const objects;
    struct Row {
        std::string before;
        std::string object;
        folder const* asked;
        std::string path;
    };
    std::string const root = RootInHfsStyle();
    for (std::string const kind : {"file", "folder", "item"}) {
        std::string const posix = here.Path("a/" + kind);
        std::string hfs = root + posix;
        std::replace(hfs.begin() + static_cast<std::ptrdiff_t>(root.size()), hfs.end(), '/', ':');
        Row const rows[] = {{"", "folder", &inner, kind},
                            {"sibling ", "filesystem object", &sibling, kind},
                            {"relative ", "folder", &base, "a/" + kind},
                            {"relative hfs ", "folder", &base, "a:" + kind},
                            {"relative posix ", "folder", &base, "a/" + kind},
                            {"", "", nullptr, posix},
                            {"hfs ", "", nullptr, hfs},
                            {"posix ", "", nullptr, posix}};
        bool const isItem = kind == "item";
        if (isItem) here.Write("a/item");
        for (Row const& row : std::span(rows).first(isItem ? 2 : std::size(rows))) {
            ClearFileCaches(nullptr);
            ClearFolderCaches(nullptr);
            ClearFileSystemObjectCache(nullptr);
            std::string const phrase = row.before + kind;
            std::string const of = row.object.empty() ? "" : " of \"" + row.object + "\"";
            Registration const registration =
                RegisteredAs("property \"" + phrase + "\" \"" + phrase + "s\" [\"string\"]" + of + ": \"" +
                             (isItem ? "filesystem object" : kind) + "\"");
            inspector_string const path(Bytes(row.path), static_cast<std::uint32_t>(row.path.size()));
            Slot<filesystem_object> slot;
            registration.get(slot, &path, row.asked, nullptr, registration.context);
            EXPECT_EQ(posix, Path(slot.Value())) << phrase;
            EXPECT_EQ(kind == "folder", slot.Value().info.IsFolder()) << phrase;
            slot.End();
        }
    }
}

TEST(FileSystemModules, TimesTypesAndCreatorsAreThoseOfTheirPhrases) {
    TemporaryFolder const here;
    std::string const path = here.Write("file");
    struct timespec const times[] = {{1'000'000'000, 0}, {1'100'000'000, 0}};
    ASSERT_EQ(0, utimensat(AT_FDCWD, path.c_str(), times, 0));
    here.SetAttribute("file", "user.com.apple.FinderInfo", "TEXTttxt" + std::string(24, '\0'));
    ClearFileCaches(nullptr);
    file const item = FileAt(path);
    FilesModule const files;
    FileSystemObjectsModule const objects;
    auto const timeOf = [&](std::string const& row) {
        Registration const registration = RegisteredAs("property " + row);
        Slot<moment> slot;
        registration.get(slot, nullptr, &item, nullptr, registration.context);
        return slot.Value();
    };
    std::string const ofTime = kOfObject + "\"time\"";
    EXPECT_EQ(creation_time_of(item), timeOf("\"creation time\" \"creation times\" " + ofTime + " pure"));
    EXPECT_EQ(modification_time_of(item),
              timeOf("\"modification time\" \"modification times\" " + ofTime + " pure"));
    EXPECT_EQ(january_1_1904_GMT(), timeOf("\"backup time\" \"backup times\" " + ofTime));
    EXPECT_NE(creation_time_of(item), modification_time_of(item));
    auto const codeOf = [&](std::string const& row) {
        Registration const registration = RegisteredAs("property " + row);
        Slot<std::uint32_t> slot;
        registration.get(slot, nullptr, &item, nullptr, registration.context);
        return slot.Value();
    };
    EXPECT_EQ(0x54455854u, codeOf("\"type\" \"types\" of \"file\": \"file type\""));
    EXPECT_EQ(0x74747874u, codeOf("\"creator\" \"creators\" of \"file\": \"file signature\""));
}

namespace {

// A module's clearing function must make the look-up, which finds what is at `path`, ask again.
template <class Module, class Look>
void ExpectToForget(std::string const& path, Look const& look) {
    Module const module;
    Registration const cache = RegisteredAs("cache");
    cache.clear(nullptr);
    look();
    std::filesystem::remove(path);
    EXPECT_NO_THROW(look());
    cache.clear(nullptr);
    EXPECT_ANY_THROW(look());
}

}  // namespace

TEST(FileSystemModules, ClearingForgetsWhatWasLookedUp) {
    TemporaryFolder const here;
    folder const parent = FolderAt(here.Path());
    std::string const path = here.Path("name");
    here.Write("name");
    ExpectToForget<FilesModule>(path, [&] { FileAt(path); });
    here.MakeFolder("name");
    ExpectToForget<FoldersModule>(path, [&] { FolderAt(path); });
    here.Write("name");
    ExpectToForget<FileSystemObjectsModule>(path, [&] { ItemNamed("name", parent); });
}
