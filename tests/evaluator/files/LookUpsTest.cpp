#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "evaluator/files/Naming.h"

using MacintoshPlatform::FileLocation;
using MacintoshPlatform::MacFileInfo;
using MacintoshPlatform::MakeFileLocation;
using MacintoshPlatform::MakeFileLocationFailed;
using MacintoshPlatform::MakeRelativeFileLocation;

namespace {

constexpr unsigned long kHfsEncoding = 255;

std::string Posix(std::string_view path) {
    return Path(MakeFileLocation(path.data(), path.size(), 0, kCFURLPOSIXPathStyle));
}
std::string Hfs(std::string_view path) {
    return Path(MakeFileLocation(path.data(), path.size(), kHfsEncoding, kCFURLHFSPathStyle));
}

// A tree with a link from one branch into another, and where look-ups below it lead.
class LookUps : public testing::Test {
  protected:
    LookUps() {
        folder.MakeFolder("here/below");
        folder.MakeFolder("there/inner");
        folder.Write("here/file");
        folder.Write("here/a:b");
        folder.Write("here/caf\xC3\xA9");
        folder.Write("here/b\xFF");
        folder.Link("here/link", "../there/inner");
    }

    std::string BelowPosix(char const* path) const {
        return Path(MakeRelativeFileLocation(At(folder.Path("here")), path, 0, kCFURLPOSIXPathStyle));
    }
    std::string BelowHfs(char const* path) const {
        return Path(
            MakeRelativeFileLocation(At(folder.Path("here")), path, kHfsEncoding, kCFURLHFSPathStyle));
    }

    TemporaryFolder folder;
};

}  // namespace

TEST_F(LookUps, OfTheWorldInPosixStyle) {
    EXPECT_EQ("/", Posix("/"));
    EXPECT_EQ(folder.Path("here/file"), Posix(folder.Path("here/file")));
    EXPECT_EQ(folder.Path("here/file"), Posix(folder.Path("here//./below/../file")));
    EXPECT_EQ(folder.Path("here/link"), Posix(folder.Path("here/link")));
    EXPECT_EQ(folder.Path("there"), Posix(folder.Path("here/link/..")));
    EXPECT_EQ(folder.Path("here/b\xFF"), Posix(folder.Path("here/b\xFF")));
}

TEST_F(LookUps, LastComponentMayBeMissing) {
    std::string const path = folder.Path("here/missing");
    FileLocation const location = MakeFileLocation(path.data(), path.size(), 0, kCFURLPOSIXPathStyle);
    EXPECT_FALSE(location.Exists());
    EXPECT_EQ(0u, MacFileInfo(location).valid);
}

TEST_F(LookUps, PathsThatLeadNowhereFail) {
    std::string const paths[] = {"",
                                 folder.Path("missing/file"),
                                 folder.Path("here/file/more"),
                                 folder.Path("here/file/"),
                                 folder.Path("here/file/."),
                                 folder.Path("here/missing/"),
                                 folder.Path("here/missing/.."),
                                 std::string("/etc\0hosts", 10),
                                 "/" + std::string(256, 'x')};
    for (std::string const& path : paths) EXPECT_THROW(Posix(path), MakeFileLocationFailed) << path;
}

TEST_F(LookUps, RelativePathStartsAtTheWorkingDirectory) {
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path("here"));
    EXPECT_EQ(folder.Path("here/file"), Posix("file"));
    EXPECT_EQ(folder.Path("there"), Posix("../there"));
    EXPECT_THROW(Hfs(":file"), MakeFileLocationFailed);
    std::filesystem::current_path(before);
}

TEST_F(LookUps, TildeIsAName) {
    folder.Write("here/~");
    EXPECT_EQ(folder.Path("here/~"), BelowPosix("~"));
}

TEST_F(LookUps, BelowAFolderInPosixStyle) {
    EXPECT_EQ(folder.Path("here/file"), BelowPosix("file"));
    EXPECT_EQ(folder.Path("here"), BelowPosix("."));
    EXPECT_EQ(folder.Path("there/inner"), BelowPosix("../there/inner"));
    EXPECT_EQ(folder.Path("here/a:b"), BelowPosix("a:b"));
    EXPECT_EQ("/etc", BelowPosix("/etc"));
    EXPECT_THROW(BelowPosix(""), MakeFileLocationFailed);
    EXPECT_THROW(BelowPosix("missing/file"), MakeFileLocationFailed);
}

TEST_F(LookUps, BelowAFolderInHfsStyle) {
    EXPECT_EQ(folder.Path("here/file"), BelowHfs("file"));
    EXPECT_EQ(folder.Path("here/file"), BelowHfs(":file"));
    EXPECT_EQ(folder.Path("here/below"), BelowHfs("below:"));
    EXPECT_EQ(folder.Path("here/a:b"), BelowHfs("a/b"));
    EXPECT_EQ(folder.Path("here/caf\xC3\xA9"), BelowHfs("caf\xC3\xA9"));
    EXPECT_EQ(folder.Path("here/b\xFF"), BelowHfs("b\xFF"));
    EXPECT_EQ(folder.Path("there/inner"), BelowHfs("::there:inner"));
    EXPECT_EQ(folder.Path("here/file"), BelowHfs("below::file"));
    EXPECT_EQ(folder.Path("there"), BelowHfs("link::"));
    EXPECT_EQ(folder.Path("here"), BelowHfs(":"));
    for (char const* path : {"", "..", ".", "file:", "missing:file", "below:..:file"}) {
        EXPECT_THROW(BelowHfs(path), MakeFileLocationFailed) << path;
    }
}

TEST_F(LookUps, OfTheWorldInHfsStyleBeginWithAVolume) {
    Owned<CFURLRef> const root(NewURL("/"));
    Owned<CFStringRef> const rootName(CFURLCopyFileSystemPath(root, kCFURLHFSPathStyle));
    EXPECT_EQ("/etc/passwd", Hfs(NameBytes(rootName) + ":etc:passwd"));
    EXPECT_EQ("/", Hfs(NameBytes(rootName)));
    for (char const* path : {"", ":", ":etc", "no volume has this name:etc", "etc"}) {
        EXPECT_THROW(Hfs(path), MakeFileLocationFailed) << path;
    }
}

TEST_F(LookUps, HfsPathIsTextOfItsEncoding) {
    FileLocation const here = At(folder.Path("here"));
    FileLocation const found =
        MakeRelativeFileLocation(here, "caf\x8E", kCFStringEncodingMacRoman, kCFURLHFSPathStyle);
    EXPECT_EQ(folder.Path("here/caf\xC3\xA9"), Path(found));
    EXPECT_THROW(MakeRelativeFileLocation(here, "a", 0x0A01, kCFURLHFSPathStyle), MakeFileLocationFailed);
}

TEST_F(LookUps, WithoutABaseFail) {
    EXPECT_THROW(MakeRelativeFileLocation(FileLocation(), "a", 0, kCFURLPOSIXPathStyle),
                 MakeFileLocationFailed);
}

TEST_F(LookUps, BelowAFileFail) {
    FileLocation const file = At(folder.Path("here/file"));
    EXPECT_THROW(MakeRelativeFileLocation(file, "a", 0, kCFURLPOSIXPathStyle), MakeFileLocationFailed);
    EXPECT_THROW(MakeRelativeFileLocation(file, ".", 0, kCFURLPOSIXPathStyle), MakeFileLocationFailed);
}
