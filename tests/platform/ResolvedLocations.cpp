// Locations resolved against the disk.

#include <Platform/Items.h>
#include <unistd.h>

#include <filesystem>

#include "platform/Items.h"

namespace {

std::string Resolved(std::string const& path, OSErr* error = nullptr) {
    Owned<CFURLRef> const url(NewURL(path));
    Owned<CFURLRef> const resolved(PlatformCreateResolvedURL(url, error));
    return PathOf(resolved);
}

OSErr ErrorOf(std::string const& path) {
    OSErr error = noErr;
    EXPECT_EQ("(null)", Resolved(path, &error)) << path;
    return error;
}

// A tree with a link from one branch into another.
class ResolvedLocations : public testing::Test {
  protected:
    ResolvedLocations() {
        folder.MakeFolder("here/below");
        folder.MakeFolder("there/inner");
        folder.Write("here/file");
        folder.Link("here/link", "../there/inner");
        folder.Link("here/dangling", "missing");
    }

    TemporaryFolder folder;
};

}  // namespace

TEST_F(ResolvedLocations, DotsAndDoubledSeparatorsGo) {
    EXPECT_EQ(folder.Path("here/file"), Resolved(folder.Path("here/./file")));
    EXPECT_EQ(folder.Path("here/file"), Resolved(folder.Path("here//below/../file")));
    EXPECT_EQ(folder.Path("here/below/"), Resolved(folder.Path("here/below/.")));
    EXPECT_EQ(folder.Path("here/"), Resolved(folder.Path("here/below/..")));
    EXPECT_EQ("/", Resolved("/.."));
    EXPECT_EQ("/etc/", Resolved("/../../etc"));
}

TEST_F(ResolvedLocations, LinksKeepTheirNames) {
    EXPECT_EQ(folder.Path("here/link/"), Resolved(folder.Path("here/link")));
    EXPECT_EQ(folder.Path("here/link/more"), Resolved(folder.Path("here/link/more")));
    EXPECT_EQ(folder.Path("here/dangling"), Resolved(folder.Path("here/dangling")));
}

TEST_F(ResolvedLocations, ParentOfALinkIsThatOfWhereItLeads) {
    EXPECT_EQ(folder.Path("there/"), Resolved(folder.Path("here/link/..")));
    EXPECT_EQ(folder.Path("there/x"), Resolved(folder.Path("here/link/../x")));
}

TEST_F(ResolvedLocations, LastComponentMayBeMissing) {
    EXPECT_EQ(folder.Path("here/missing"), Resolved(folder.Path("here/missing")));
    EXPECT_EQ(fnfErr, ErrorOf(folder.Path("here/missing/more")));
    EXPECT_EQ(dirNFErr, ErrorOf(folder.Path("here/file/more")));
    EXPECT_EQ(fnfErr, ErrorOf(folder.Path("here/dangling/more")));
    folder.Link("here/loop", "loop");
    EXPECT_EQ(fnfErr, ErrorOf(folder.Path("here/loop/more")));
    EXPECT_EQ(fnfErr, ErrorOf(folder.Path("here/loop/..")));
}

TEST_F(ResolvedLocations, EndOfThePathMayDemandAFolder) {
    for (char const* path : {"here/file/", "here/file/.", "here/file/.."})
        EXPECT_EQ(dirNFErr, ErrorOf(folder.Path(path)));
    for (char const* path : {"here/missing/", "here/missing/.", "here/missing/..", "here/dangling/"}) {
        EXPECT_NE(noErr, ErrorOf(folder.Path(path))) << path;
    }
}

TEST_F(ResolvedLocations, RelativePathStartsAtTheWorkingDirectory) {
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path("here"));
    EXPECT_EQ(folder.Path("here/file"), Resolved("file"));
    EXPECT_EQ(folder.Path("there/"), Resolved("../there"));
    EXPECT_EQ(folder.Path("here/"), Resolved("."));
    std::filesystem::current_path(before);
}

TEST_F(ResolvedLocations, RelativePathFailsWhenTheWorkingDirectoryIsGone) {
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(folder.MakeFolder("gone"));
    rmdir(folder.Path("gone").c_str());
    EXPECT_EQ(fnfErr, ErrorOf("file"));
    std::filesystem::current_path(before);
}

TEST_F(ResolvedLocations, BaseOfAUrlIsPartOfIt) {
    Owned<CFURLRef> const base(NewURL(folder.Path("here"), true));
    Owned<CFURLRef> const url(CFURLCreateFromFileSystemRepresentationRelativeToBase(
        kCFAllocatorDefault, Bytes("../there"), 8, false, base));
    Owned<CFURLRef> const resolved(PlatformCreateResolvedURL(url, nullptr));
    EXPECT_EQ(folder.Path("there/"), PathOf(resolved));
}
