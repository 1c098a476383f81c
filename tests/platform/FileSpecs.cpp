// FSSpecs: a folder's number and a short name, and back.

#include <Platform/Items.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/Items.h"

namespace {

FSSpec SpecOf(std::string const& path) {
    FSRef const reference = ReferenceTo(path);
    FSSpec spec{};
    EXPECT_EQ(noErr, FSGetCatalogInfo(&reference, 0, nullptr, nullptr, &spec, nullptr));
    return spec;
}

std::string NameIn(FSSpec const& spec) { return {spec.name + 1, spec.name + 1 + spec.name[0]}; }

// Where an FSSpec leads: a path, or the code in parentheses.
std::string Target(FSSpec const& spec) {
    FSRef reference;
    OSErr const error = FSpMakeFSRef(&spec, &reference);
    return error == noErr ? PathOf(reference) : "(" + std::to_string(error) + ")";
}

std::uint64_t InodeOf(std::string const& path) {
    struct stat status {};
    EXPECT_EQ(0, stat(path.c_str(), &status));
    return status.st_ino;
}

std::string Hex(std::uint64_t number) {
    char text[32];
    std::snprintf(text, sizeof text, "%X", static_cast<unsigned>(number));
    return text;
}

}  // namespace

TEST(FileSpecs, HoldTheParentsNumberTheVolumeAndTheName) {
    TemporaryFolder const folder;
    FSSpec const spec = SpecOf(folder.Write("file"));
    EXPECT_EQ(static_cast<SInt32>(InodeOf(folder.Path())), +spec.parID);
    EXPECT_EQ(CatalogOf(folder.Path("file"), kFSCatInfoVolume).volume, spec.vRefNum);
    EXPECT_EQ("file", NameIn(spec));
}

TEST(FileSpecs, LeadBackToTheItem) {
    TemporaryFolder const folder;
    std::string const names[] = {"file",
                                 "caf\xC3\xA9",
                                 "cafe\xCC\x81",
                                 "\xE4\xB8\xAD.txt",
                                 "b\xFF",
                                 std::string(200, 'x'),
                                 std::string(200, 'x') + ".html",
                                 "a#1",
                                 ".hidden"};
    for (std::string const& name : names) {
        FSSpec const spec = SpecOf(folder.Write(name));
        EXPECT_LE(spec.name[0], 31) << name;
        EXPECT_EQ(folder.Path(name), Target(spec));
    }
}

TEST(FileSpecs, NamesOfMacRomanAreKept) {
    TemporaryFolder const folder;
    EXPECT_EQ("caf\x8E", NameIn(SpecOf(folder.Write("caf\xC3\xA9"))));
    std::string const longest(31, 'x');
    EXPECT_EQ(longest, NameIn(SpecOf(folder.Write(longest))));
}

TEST(FileSpecs, OtherNamesHaveTheInodeNumberAndTheExtension) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("A long name that does not fit into it.text");
    std::string const number = "#" + Hex(InodeOf(path));
    std::string const start =
        std::string("A long name that does not fit into it").substr(0, 31 - number.size() - 5);
    EXPECT_EQ(start + number + ".text", NameIn(SpecOf(path)));
    std::string const wide = folder.Write("\xE4\xB8\xAD.txt");
    EXPECT_EQ("?#" + Hex(InodeOf(wide)) + ".txt", NameIn(SpecOf(wide)));
}

TEST(FileSpecs, RootsParentHasNumberOne) {
    FSSpec const spec = SpecOf("/");
    EXPECT_EQ(fsRtParID, +spec.parID);
    if (spec.vRefNum != 0) {
        EXPECT_EQ("/", Target(spec));
    }
}

// In /dev/shm the root has the number 1, which elsewhere stands for the parent of a root.
TEST(FileSpecs, OfItemsInTheRootOfAVolumeLeadBackToThem) {
    std::string pattern = "/dev/shm/zelq-XXXXXX";
    std::string const path = mkdtemp(pattern.data());
    std::string const target = Target(SpecOf(path));
    std::filesystem::remove(path);
    EXPECT_EQ(path, target);
}

// Roots of file systems often have the same number: the folder that holds a mount point must not be taken for
// one of the file system that is mounted there.
TEST(FileSpecs, NameTheVolumeOfTheFolder) {
    EXPECT_EQ(SpecOf("/etc").vRefNum, SpecOf("/proc").vRefNum);
    EXPECT_EQ("/proc", Target(SpecOf("/proc")));
    TemporaryFolder const folder;
    FSSpec const link = SpecOf(folder.Link("link", "/proc"));
    EXPECT_EQ(CatalogOf(folder.Path(), kFSCatInfoVolume).volume, link.vRefNum);
    EXPECT_EQ(folder.Path("link"), Target(link));
}

TEST(FileSpecs, OfTheRootAreTheSameWhenItsItemsHaveBeenNamed) {
    SpecOf("/etc");
    EXPECT_EQ("/", Target(SpecOf("/")));
}

TEST(FileSpecs, EmptyNameIsTheFolderItself) {
    TemporaryFolder const folder;
    FSSpec spec = SpecOf(folder.Write("file"));
    spec.name[0] = 0;
    EXPECT_EQ(folder.Path(), Target(spec));
}

TEST(FileSpecs, RootsNumberIsTheRootOfTheVolume) {
    FSVolumeRefNum const volume = CatalogOf("/", kFSCatInfoVolume).volume;
    FSSpec const spec{volume, fsRtDirID, {3, 'e', 't', 'c'}};
    FSSpec const noVolume{-1, fsRtDirID, {3, 'e', 't', 'c'}};
    EXPECT_EQ("/etc", Target(spec));
    EXPECT_EQ("(-35)", Target(noVolume));
}

TEST(FileSpecs, OfAFolderThatWasNeverNamedAreNotFound) {
    FSSpec const spec{-100, 0x7FFFFFFF, {1, 'a'}};
    EXPECT_EQ("(-120)", Target(spec));
}

TEST(FileSpecs, OfAFolderThatIsGoneAreNotFound) {
    TemporaryFolder const folder;
    folder.MakeFolder("gone");
    FSSpec const spec = SpecOf(folder.Write("gone/file"));
    std::filesystem::remove_all(folder.Path("gone"));
    EXPECT_EQ("(-120)", Target(spec));
    folder.Write("gone");
    EXPECT_EQ("(-120)", Target(spec));
}

TEST(FileSpecs, AreNotMadeWhenTheFolderCannotBeLookedAt) {
    TemporaryFolder const folder;
    FSRef const reference = ReferenceTo(folder.Write("file"));
    static int looks;
    looks = 0;
    PlatformSetCheckIn([](UInt32) -> Boolean { return ++looks == 1; });
    FSSpec spec;
    OSErr const error = FSGetCatalogInfo(&reference, 0, nullptr, nullptr, &spec, nullptr);
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ(userCanceledErr, error);
}

TEST(FileSpecs, OfAnItemThatIsGoneAreNotFound) {
    TemporaryFolder const folder;
    FSSpec const plain = SpecOf(folder.Write("file"));
    FSSpec const mangled = SpecOf(folder.Write(std::string(100, 'x')));
    std::filesystem::remove(folder.Path("file"));
    std::filesystem::remove(folder.Path(std::string(100, 'x')));
    EXPECT_EQ("(-43)", Target(plain));
    EXPECT_EQ("(-43)", Target(mangled));
}

TEST(FileSpecs, OfAnImpossibleNameAreBad) {
    TemporaryFolder const folder;
    FSSpec spec = SpecOf(folder.Write("file"));
    std::memcpy(spec.name, "\3a/b", 4);
    EXPECT_EQ("(-37)", Target(spec));
}

TEST(FileSpecs, MadeOfTheirParts) {
    TemporaryFolder const folder;
    FSSpec const known = SpecOf(folder.Write("file"));
    folder.Write("caf\xC3\xA9");
    FSSpec spec{};
    auto const name = [](char const* text) { return reinterpret_cast<unsigned char const*>(text); };
    EXPECT_EQ(noErr, FSMakeFSSpec(known.vRefNum, known.parID, name("\4caf\x8E"), &spec));
    EXPECT_EQ(folder.Path("caf\xC3\xA9"), Target(spec));
    EXPECT_EQ(fnfErr, FSMakeFSSpec(known.vRefNum, known.parID, name("\7missing"), &spec));
    EXPECT_EQ("missing", NameIn(spec));
    EXPECT_EQ(bdNamErr, FSMakeFSSpec(known.vRefNum, known.parID, name("\3a/b"), &spec));
    EXPECT_EQ(bdNamErr, FSMakeFSSpec(known.vRefNum, known.parID,
                                     name((std::string(1, 64) + std::string(64, 'x')).c_str()), &spec));
    EXPECT_EQ(dirNFErr, FSMakeFSSpec(known.vRefNum, 0x7FFFFFFF, name("\1a"), &spec));
    EXPECT_EQ(nsvErr, FSMakeFSSpec(-1, fsRtDirID, name("\1a"), &spec));
}

TEST(FileSpecs, FoldersNamedLongAgoAreForgotten) {
    TemporaryFolder const folder;
    folder.MakeFolder("first");
    FSSpec const spec = SpecOf(folder.Write("first/file"));
    for (int i = 0; i < 1024; ++i) {
        std::string const name = std::to_string(i);
        folder.MakeFolder(name);
        SpecOf(folder.Write(name + "/file"));
    }
    EXPECT_EQ("(-120)", Target(spec));
}
