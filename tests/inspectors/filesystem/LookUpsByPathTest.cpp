#include <sys/stat.h>
#include <unistd.h>

#include "Asking.h"

namespace {

file RelativeFile(std::string_view path, folder const& base) {
    return posix_relative_file_of(Bytes(path), path.size(), base);
}
folder RelativeFolder(std::string_view path, folder const& base) {
    return posix_relative_folder_of(Bytes(path), path.size(), base);
}
file RelativeHfsFile(std::string_view path, folder const& base) {
    return hfs_relative_file_of(Bytes(path), path.size(), base);
}
folder RelativeHfsFolder(std::string_view path, folder const& base) {
    return hfs_relative_folder_of(Bytes(path), path.size(), base);
}

std::string HfsPath(std::string_view posixPath) {
    Owned<CFURLRef> const url(NewURL(posixPath));
    Owned<CFStringRef> const path(CFURLCopyFileSystemPath(url, kCFURLHFSPathStyle));
    return NameBytes(path);
}

class LookUpsByPath : public FileSystem {
  protected:
    LookUpsByPath() {
        here.MakeFolder("a/b");
        here.Write("a/b/file");
    }
};

}  // namespace

TEST_F(LookUpsByPath, BelowAFolder) {
    EXPECT_EQ(here.Path("a/b/file"), Path(RelativeFile("a/b/file", Here())));
    EXPECT_EQ(here.Path("a/b"), Path(RelativeFolder("a/b", Here())));
    EXPECT_EQ(here.Path("a/b"), Path(RelativeFolder("b/../b/.", FolderAt(here.Path("a")))));
}

TEST_F(LookUpsByPath, BelowAFolderInHfsStyle) {
    EXPECT_EQ(here.Path("a/b/file"), Path(RelativeHfsFile("a:b:file", Here())));
    EXPECT_EQ(here.Path("a/b"), Path(RelativeHfsFolder(":a:b:", Here())));
    EXPECT_EQ(here.Path("a"), Path(RelativeHfsFolder("a:b::", Here())));
}

TEST_F(LookUpsByPath, OfTheWorld) {
    std::string const hfs = HfsPath(here.Path("a/b"));
    std::string const hfsFile = hfs + ":file";
    EXPECT_EQ(here.Path("a/b/file"), Path(FileAt(here.Path("a/b/file"))));
    EXPECT_EQ(here.Path("a/b"), Path(FolderAt(here.Path("a/b/"))));
    EXPECT_EQ("/", Path(FolderAt("/")));
    EXPECT_EQ(here.Path("a/b/file"), Path(hfs_file_of_world(Bytes(hfsFile), hfsFile.size())));
    EXPECT_EQ(here.Path("a/b"), Path(hfs_folder_of_world(Bytes(hfs), hfs.size())));
}

TEST_F(LookUpsByPath, WrongKindIsNoSuchObject) {
    EXPECT_THROW(RelativeFile("a/b", Here()), NoSuchObject);
    EXPECT_THROW(RelativeFolder("a/b/file", Here()), NoSuchObject);
    EXPECT_THROW(FileAt(here.Path("a")), NoSuchObject);
    EXPECT_THROW(FolderAt(here.Path("a/b/file")), NoSuchObject);
}

TEST_F(LookUpsByPath, PathThatLeadsNowhereIsNoSuchObject) {
    for (std::string const path : {"", "missing", "missing/file", "a/b/file/more", "a/b/file/"}) {
        EXPECT_THROW(RelativeFile(path, Here()), NoSuchObject) << path;
        EXPECT_THROW(RelativeFolder(path, Here()), NoSuchObject) << path;
        EXPECT_THROW(FileAt(path.empty() ? path : here.Path(path)), NoSuchObject) << path;
    }
    EXPECT_THROW(FolderAt(""), NoSuchObject);
    for (std::string const path : {"", "no volume has this name:etc", ":etc", "missing"}) {
        EXPECT_THROW(hfs_file_of_world(Bytes(path), path.size()), NoSuchObject) << path;
        EXPECT_THROW(hfs_folder_of_world(Bytes(path), path.size()), NoSuchObject) << path;
        EXPECT_THROW(RelativeHfsFile(path, Here()), NoSuchObject) << path;
    }
}

TEST_F(LookUpsByPath, LinksAreFollowedUnlessTheyLeadNowhere) {
    here.Link("to folder", "a/b");
    here.Link("to file", "to folder/file");
    here.Link("dangling", "missing");
    here.Link("loop", "loop");
    EXPECT_EQ(here.Path("to file"), Path(RelativeFile("to file", Here())));
    EXPECT_EQ(here.Path("to folder/file"), Path(RelativeFile("to folder/file", Here())));
    EXPECT_EQ(here.Path("to folder"), Path(RelativeFolder("to folder/", Here())));
    EXPECT_EQ(here.Path("a"), Path(RelativeFolder("to folder/..", Here())));
    for (std::string const link : {"dangling", "loop"}) {
        EXPECT_EQ(here.Path(link), Path(RelativeFile(link, Here())));
        for (char const* end : {"/", "/.", "/..", "/file"})
            EXPECT_THROW(RelativeFile(link + end, Here()), NoSuchObject) << link << end;
    }
}

// What cannot be opened without waiting is looked up all the same.
TEST_F(LookUpsByPath, PipesSocketsAndDevicesAreFiles) {
    ASSERT_EQ(0, mkfifo(here.Path("pipe").c_str(), 0600));
    ASSERT_EQ(0, mknod(here.Path("socket").c_str(), S_IFSOCK | 0600, 0));
    for (std::string const& path : {here.Path("pipe"), here.Path("socket"), std::string("/dev/null")}) {
        file const item = FileAt(path);
        EXPECT_EQ(path, Path(item));
        EXPECT_EQ(0u, type_of(item).code);
    }
}

TEST_F(LookUpsByPath, FolderThatMayNotBeSearchedHasNoFiles) {
    TemporaryFolder const outside;
    outside.MakeFolder("closed");
    outside.Write("closed/file");
    ASSERT_EQ(0, chmod(outside.Path("closed").c_str(), 0));
    uid_t const user = geteuid();
    if (user == 0) {
        ASSERT_EQ(0, chmod(outside.Path().c_str(), 0755));
        ASSERT_EQ(0, seteuid(65534));
    }
    folder const closed = FolderAt(outside.Path("closed"));
    EXPECT_THROW(FileAt(outside.Path("closed/file")), NoSuchObject);
    EXPECT_THROW(RelativeFile("file", closed), NoSuchObject);
    EXPECT_THROW(FileNamed("file", closed), NoSuchObject);
    EXPECT_THROW(ItemNamed("file", closed), FailedToGetFileItem);
    if (user == 0) {
        ASSERT_EQ(0, seteuid(user));
    }
    ASSERT_EQ(0, chmod(outside.Path("closed").c_str(), 0700));
}

TEST_F(LookUpsByPath, NulEndsAPath) {
    std::string const file = here.Path("a/b/file");
    std::string const more = file + std::string("\0more", 5);
    EXPECT_EQ(file, Path(FileAt(more)));
    EXPECT_EQ(here.Path("a"), Path(FolderAt(here.Path("a") + std::string("\0more", 5))));
    EXPECT_EQ(file, Path(RelativeFile(std::string("a/b/file\0more", 13), Here())));
}

TEST_F(LookUpsByPath, StyleAndEncodingCanBeChosen) {
    std::string const path = here.Path("a/b/file");
    EXPECT_EQ(path,
              Path(file_of_world(Bytes(path), path.size(), kCFStringEncodingUTF8, kCFURLPOSIXPathStyle)));
    here.Write("caf\xC3\xA9");
    EXPECT_EQ(
        here.Path("caf\xC3\xA9"),
        Path(relative_file_of(Bytes("caf\x8E"), 4, Here(), kCFStringEncodingMacRoman, kCFURLHFSPathStyle)));
    EXPECT_EQ(here.Path("a"), Path(relative_folder_of(Bytes("a"), 1, Here(), 0, kCFURLPOSIXPathStyle)));
    std::string const root = HfsPath("/");
    EXPECT_EQ("/", Path(folder_of_world(Bytes(root), root.size(), 255, kCFURLHFSPathStyle)));
}
