#include <gtest/gtest.h>
#include <unistd.h>

#include "evaluator/files/Naming.h"

using MacintoshPlatform::FailedToGetFileItem;
using MacintoshPlatform::FileLocation;

namespace {

std::string ParentPath(std::string const& path) { return Path(FileLocation(At(path).ParentURL())); }

}  // namespace

TEST(FileLocations, OfANameInAFolder) {
    TemporaryFolder const folder;
    FileLocation location;
    location.Set(At(folder.Path()).url, Name("a\xFF:b"));
    EXPECT_EQ(folder.Path("a\xFF:b"), Path(location));
    EXPECT_FALSE(location.Exists());
    folder.Write("a\xFF:b");
    EXPECT_TRUE(location.Exists());
}

TEST(FileLocations, WithoutAFolderOrANameAreNone) {
    FileLocation location;
    EXPECT_THROW(location.Set(nullptr, Name("a")), DirectoryNotFoundError);
    EXPECT_THROW(location.Set(At("/").url, HFSUniStr255{}), FileNotFoundError);
    EXPECT_FALSE(location.Exists());
}

TEST(FileLocations, ParentIsTheFolderWhereTheItemStands) {
    TemporaryFolder const folder;
    folder.Link("link", "/etc/hosts");
    EXPECT_EQ("/a", ParentPath("/a/b"));
    EXPECT_EQ("/a", ParentPath("/a/b/"));
    EXPECT_EQ("/", ParentPath("/a"));
    EXPECT_EQ(folder.Path(), ParentPath(folder.Path("link")));
}

TEST(FileLocations, RootHasNoParent) { EXPECT_THROW(At("/").ParentURL(), FailedToGetFileItem); }

TEST(FileLocations, MountPointsHaveParents) { EXPECT_EQ("/", ParentPath("/proc")); }

TEST(FileLocations, NameIsTheLastComponent) {
    EXPECT_EQ("b", MacintoshPlatform::MakeUTF8String(At("/a/b").Name()));
    EXPECT_EQ("b", MacintoshPlatform::MakeUTF8String(At("/a/b/").Name()));
    EXPECT_EQ("b\xFF", MacintoshPlatform::MakeUTF8String(At("/a/b\xFF").Name()));
    EXPECT_EQ("/", MacintoshPlatform::MakeUTF8String(At("/").Name()));
    EXPECT_THROW(At("/" + std::string(300, 'x')).Name(), CFURLCopyLastPathComponentFailed);
}

TEST(FileLocations, TypeAndCreatorAreReadAnew) {
    TemporaryFolder const folder;
    FileLocation const location = At(folder.Write("file"));
    EXPECT_EQ(0u, location.Type());
    folder.SetAttribute("file", "user.com.apple.FinderInfo", "TEXTttxt" + std::string(24, '\0'));
    EXPECT_EQ(0x54455854u, location.Type());
    EXPECT_EQ(0x74747874u, location.CreatorType());
}

TEST(FileLocations, TypeOfWhatIsNoFile) {
    TemporaryFolder const folder;
    folder.MakeFolder("folder");
    folder.SetAttribute("folder", "user.com.apple.FinderInfo", std::string(32, 'x'));
    EXPECT_EQ(0u, At(folder.Path("folder")).Type());
    EXPECT_EQ(0u, At(folder.Path("folder")).CreatorType());
    EXPECT_THROW(At(folder.Path("missing")).Type(), FailedToGetFileItem);
    EXPECT_THROW(At(folder.Path("missing")).CreatorType(), FailedToGetFileItem);
}

TEST(FileLocations, AreEqualAtOnePlaceOrForOneItem) {
    TemporaryFolder const folder;
    folder.Write("file");
    folder.Link("link", "file");
    EXPECT_TRUE(At(folder.Path("missing")) == At(folder.Path("missing")));
    EXPECT_TRUE(At(folder.Path()) == At(folder.Path() + "/"));
    EXPECT_TRUE(At(folder.Path("file")) == At(folder.Path("link")));
    EXPECT_FALSE(At(folder.Path("file")) == At(folder.Path("missing")));
    EXPECT_TRUE(FileLocation() == FileLocation());
    EXPECT_FALSE(FileLocation() == At("/"));
}

TEST(References, LeadFromUrlsAndBack) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    FSRef const reference = MakeFSRef(At(path).url);
    EXPECT_EQ(path, Path(FileLocation(MakeURL(reference))));
    EXPECT_THROW(MakeFSRef(At(folder.Path("missing")).url), FailedToGetFileItem);
    EXPECT_THROW(MakeURL(FSRef{}), FailedToGetFileItem);
}

TEST(FSSpecs, LeadFromUrlsAndBack) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    FSSpec const fsSpec = MakeFSSpec(At(path).url);
    EXPECT_EQ(path, Path(MacintoshPlatform::MakeFileLocation(fsSpec)));
    unlink(path.c_str());
    EXPECT_THROW(MakeFSSpec(At(path).url), FailedToGetFileItem);
}

TEST(FSSpecs, LeadToPlacesWithoutAnItem) {
    TemporaryFolder const folder;
    folder.MakeFolder("sub");
    std::string const path = folder.Write("sub/file");
    FSSpec const fsSpec = MakeFSSpec(At(path).url);
    unlink(path.c_str());
    EXPECT_EQ(path, Path(MacintoshPlatform::MakeFileLocation(fsSpec)));
    std::filesystem::remove(folder.Path("sub"));
    EXPECT_THROW(MacintoshPlatform::MakeFileLocation(fsSpec), MacintoshPlatform::MakeFileLocationFailed);
}
