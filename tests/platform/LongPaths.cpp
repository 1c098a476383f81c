// Paths longer than system calls take.

#include <Platform/Items.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Items.h"

namespace {

// A chain of folders whose path has more than PATH_MAX bytes, with a file at its end.
class DeepTree {
  public:
    DeepTree() : path(folder.Path()) {
        int here = open(path.c_str(), O_DIRECTORY);
        while (path.size() < 3 * PATH_MAX) {
            EXPECT_EQ(0, mkdirat(here, name.c_str(), 0700));
            int const next = openat(here, name.c_str(), O_DIRECTORY);
            close(here);
            here = next;
            path += "/" + name;
        }
        int const file = openat(here, "file", O_CREAT | O_WRONLY, 0600);
        EXPECT_EQ(5, write(file, "12345", 5));
        close(file);
        close(here);
    }

    std::string FilePath() const { return path + "/file"; }
    std::string const& Top() const { return folder.Path(); }

  private:
    TemporaryFolder folder;
    std::string const name = std::string(200, 'd');
    std::string path;
};

}  // namespace

TEST(LongPaths, LeadToTheirFiles) {
    DeepTree const tree;
    FSRef const file = ReferenceTo(tree.FilePath());
    EXPECT_EQ(5u, +CatalogOf(file).dataLogicalSize);
    EXPECT_EQ(tree.FilePath(), PathOf(file));
    FSRef parent;
    EXPECT_EQ(noErr, FSGetCatalogInfo(&file, 0, nullptr, nullptr, nullptr, &parent));
    EXPECT_EQ(1u, +CatalogOf(parent).valence);
}

TEST(LongPaths, ThatLeadNowhereAreNotFound) {
    DeepTree const tree;
    FSRef ignored;
    EXPECT_EQ(fnfErr, FSPathMakeRef(Bytes((tree.FilePath() + "s").c_str()), &ignored, nullptr));
    std::string const nameTooLong = "/" + std::string(2 * PATH_MAX, 'x') + "/y";
    EXPECT_EQ(errFSNameTooLong, FSPathMakeRef(Bytes(nameTooLong.c_str()), &ignored, nullptr));
}

// Each of these takes minutes when a path is copied for each of its names.
TEST(LongPaths, TakeTimeForTheirLengthOnly) {
    constexpr int many = 1'000'000;
    std::string names = "/..";
    for (int i = 0; i < many; ++i) names += "/a";
    FSRef ignored;
    EXPECT_EQ(fnfErr, FSPathMakeRef(Bytes(names.c_str()), &ignored, nullptr));
    Owned<CFStringRef> const colons(NewString(std::string(many, ':')));
    Owned<CFURLRef> const up(
        CFURLCreateWithFileSystemPath(kCFAllocatorDefault, colons, kCFURLHFSPathStyle, false));
    Owned<CFStringRef> const path(CFURLCopyFileSystemPath(up, kCFURLPOSIXPathStyle));
    EXPECT_EQ(3 * (many - 1) - 1, CFStringGetLength(path)) << "one \"..\" for each colon beyond the first";
}

TEST(LongPaths, LeakNoDescriptors) {
    DeepTree const tree;
    ReferenceTo(tree.FilePath());  // the table of mounts stays open
    int const before = dup(0);
    close(before);
    for (int i = 0; i < 10; ++i) ReferenceTo(tree.FilePath());
    int const after = dup(0);
    close(after);
    EXPECT_EQ(before, after);
}

// Items that listings gave share their folders' paths, so a look-up knows where its neighbours start.
TEST(LongPaths, FolderOnTheWayIsHeldForTheNextLookUpAndNoLonger) {
    auto const openDescriptors = [] {
        using Entries = std::filesystem::directory_iterator;
        return std::distance(Entries("/proc/self/fd"), Entries());
    };
    DeepTree const tree;
    FSRef item = ReferenceTo(tree.Top());
    FSCatalogInfo info{};
    info.nodeFlags = kFSNodeIsDirectoryMask;
    while ((info.nodeFlags & kFSNodeIsDirectoryMask) != 0) {
        Owned<CFURLRef> const url(CFURLCreateFromFSRef(kCFAllocatorDefault, &item));
        FSIterator iterator;
        ItemCount count = 0;
        ASSERT_EQ(noErr, PlatformOpenIterator(url, &iterator));
        ASSERT_EQ(errFSNoMoreItems, FSGetCatalogInfoBulk(iterator, 1, &count, nullptr, kFSCatInfoNodeFlags,
                                                         &info, &item, nullptr, nullptr));
        FSCloseIterator(iterator);
    }
    PlatformSetCheckIn(nullptr);
    auto const before = openDescriptors();
    EXPECT_EQ(5u, +CatalogOf(item).dataLogicalSize);
    EXPECT_EQ(5u, +CatalogOf(item).dataLogicalSize);
    EXPECT_EQ(before + 1, openDescriptors());
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ(before, openDescriptors());
}
