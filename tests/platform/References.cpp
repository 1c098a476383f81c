// References: how they are made, compared, and go stale.

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/Items.h"

namespace {

OSErr Look(FSRef const& reference) {
    return FSGetCatalogInfo(&reference, 0, nullptr, nullptr, nullptr, nullptr);
}

// More references than the layer remembers.
void MakeManyReferences() {
    FSRef ignored;
    for (int i = 0; i < 1024; ++i) ASSERT_EQ(noErr, FSPathMakeRef(Bytes("/"), &ignored, nullptr));
}

long ResidentKilobytes() {
    long pages = 0;
    std::ifstream statistics("/proc/self/statm");
    statistics >> pages >> pages;
    return pages * sysconf(_SC_PAGESIZE) / 1024;
}

}  // namespace

TEST(References, LeadBackToTheLocation) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file \xFF");
    FSRef const reference = ReferenceTo(path);
    EXPECT_EQ(path, PathOf(reference));
    Owned<CFURLRef> const url(CFURLCreateFromFSRef(kCFAllocatorDefault, &reference));
    EXPECT_EQ(path, PathOf(url));
}

TEST(References, ToAFolderGiveADirectoryUrl) {
    TemporaryFolder const folder;
    Boolean isDirectory = false;
    FSRef reference;
    ASSERT_EQ(noErr, FSPathMakeRef(Bytes(folder.Path().c_str()), &reference, &isDirectory));
    EXPECT_TRUE(isDirectory);
    Owned<CFURLRef> const url(CFURLCreateFromFSRef(kCFAllocatorDefault, &reference));
    EXPECT_EQ(folder.Path() + "/", PathOf(url));
}

TEST(References, OfAUrl) {
    TemporaryFolder const folder;
    FSRef const expected = ReferenceTo(folder.Write("file"));
    Owned<CFURLRef> const url(NewURL(folder.Path("file")));
    Owned<CFURLRef> const missing(NewURL(folder.Path("missing")));
    Owned<CFURLRef> const fileAsFolder(NewURL(folder.Path("file"), true));
    FSRef reference;
    EXPECT_TRUE(CFURLGetFSRef(url, &reference));
    EXPECT_EQ(noErr, FSCompareFSRefs(&expected, &reference));
    EXPECT_FALSE(CFURLGetFSRef(missing, &reference));
    EXPECT_FALSE(CFURLGetFSRef(fileAsFolder, &reference));
}

TEST(References, GoStaleWhenTooManyOthersWereMade) {
    TemporaryFolder const folder;
    FSRef const reference = ReferenceTo(folder.Path());
    ASSERT_EQ(noErr, Look(reference));
    MakeManyReferences();
    EXPECT_EQ(errFSBadFSRef, Look(reference));
    EXPECT_EQ("(-1401)", PathOf(reference));
    EXPECT_EQ(nullptr, CFURLCreateFromFSRef(kCFAllocatorDefault, &reference));
    FSRef child;
    UniChar const name[] = {'a'};
    EXPECT_EQ(errFSBadFSRef, FSMakeFSRefUnicode(&reference, 1, name, 0xFFFF, &child));
}

TEST(References, CompareAlsoWhenTheyAreStale) {
    TemporaryFolder const folder;
    FSRef const file = ReferenceTo(folder.Write("file"));
    FSRef const sameFile = ReferenceTo(folder.Path("file"));
    FSRef const other = ReferenceTo(folder.Write("other"));
    MakeManyReferences();
    EXPECT_EQ(noErr, FSCompareFSRefs(&file, &sameFile));
    EXPECT_EQ(errFSRefsDifferent, FSCompareFSRefs(&file, &other));
}

TEST(References, TakeNoMemoryForTheNumberOfFilesSeen) {
    for (int round = 0; round < 4; ++round) MakeManyReferences();
    long const before = ResidentKilobytes();
    for (int round = 0; round < 20; ++round) MakeManyReferences();
    EXPECT_LT(ResidentKilobytes() - before, 4096);
}

TEST(References, ThatNobodyMadeAreRefused) {
    TemporaryFolder const folder;
    FSRef forged{};
    EXPECT_EQ(errFSBadFSRef, Look(forged));
    std::memset(&forged, 0xFF, sizeof forged);
    EXPECT_EQ(errFSBadFSRef, Look(forged));
    FSRef const genuine = ReferenceTo(folder.Path());
    for (std::size_t i = 0; i < 24; ++i) {
        forged = genuine;
        forged.hidden[i] ^= 1;
        EXPECT_EQ(errFSBadFSRef, Look(forged)) << i;
        EXPECT_EQ(errFSBadFSRef, FSCompareFSRefs(&forged, &genuine));
        EXPECT_EQ(errFSBadFSRef, FSCompareFSRefs(&genuine, &forged));
    }
}

TEST(References, ItemThatIsGoneIsNotFound) {
    TemporaryFolder const folder;
    FSRef const reference = ReferenceTo(folder.Write("file"));
    ASSERT_EQ(0, unlink(folder.Path("file").c_str()));
    EXPECT_EQ(fnfErr, Look(reference));
}

TEST(References, ItemThatAnotherHasReplacedIsNotFound) {
    TemporaryFolder const folder;
    FSRef const reference = ReferenceTo(folder.Write("file"));
    std::filesystem::rename(folder.Write("new"), folder.Path("file"));
    EXPECT_EQ(fnfErr, Look(reference));
}

TEST(References, HardLinksAreTheSameItem) {
    TemporaryFolder const folder;
    FSRef const file = ReferenceTo(folder.Write("file"));
    ASSERT_EQ(0, link(folder.Path("file").c_str(), folder.Path("second").c_str()));
    FSRef const second = ReferenceTo(folder.Path("second"));
    EXPECT_EQ(noErr, FSCompareFSRefs(&file, &second));
}

TEST(References, PathNeedsRoomForItsNul) {
    FSRef const root = ReferenceTo("/");
    UInt8 path[2];
    EXPECT_EQ(errFSNameTooLong, FSRefMakePath(&root, path, 1));
    EXPECT_EQ(noErr, FSRefMakePath(&root, path, 2));
    EXPECT_STREQ("/", reinterpret_cast<char*>(path));
}
