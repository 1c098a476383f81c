// A listing mounts nothing: neither what waits among its items to be mounted when it is looked at, nor what a
// link leads to.

#include <Carbon/MacErrors.h>
#include <Platform/Items.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>

#include "platform/Items.h"

namespace {

std::atomic<int> looks{0}, looksThatMount{0};

}  // namespace

// Counts the looks at paths. It stands before the C library's, for the platform too.
extern "C" [[gnu::visibility("default")]] int statx(int folder, char const* path, int flags, unsigned mask,
                                                    struct statx* status) noexcept {
    if ((flags & AT_EMPTY_PATH) == 0) {
        ++looks;
        if ((flags & AT_NO_AUTOMOUNT) == 0) ++looksThatMount;
    }
    return static_cast<int>(syscall(SYS_statx, folder, path, flags, mask, status));
}

TEST(NothingIsMounted, ByAListing) {
    TemporaryFolder const folder;
    folder.Write("file");
    folder.MakeFolder("folder");
    folder.Link("link to a file", "file");
    folder.Link("link to a folder", "folder");
    Owned<CFURLRef> const url(NewURL(folder.Path(), true));
    FSIterator iterator = nullptr;
    ASSERT_EQ(noErr, PlatformOpenIterator(url, &iterator));
    looks = looksThatMount = 0;
    FSCatalogInfo infos[10];
    FSRef references[10];
    ItemCount count = 0;
    constexpr FSCatalogInfoBitmap wanted = kFSCatInfoGettableInfo & ~kFSCatInfoParentDirID;
    EXPECT_EQ(errFSNoMoreItems, FSGetCatalogInfoBulk(iterator, 10, &count, nullptr, wanted, infos, references,
                                                     nullptr, nullptr));
    EXPECT_EQ(4u, count);
    EXPECT_EQ(6, looks);  // twice at each link
    EXPECT_EQ(0, looksThatMount);
    EXPECT_EQ(noErr, FSCloseIterator(iterator));
}
