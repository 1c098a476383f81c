// URLs: made of paths in both styles, taken apart, compared. None of it looks at the disk.

#include <CoreFoundation/CFURL.h>
#include <gtest/gtest.h>

#include "support/Owned.h"

namespace {

CFURLRef NewURLInStyle(std::string_view path, CFURLPathStyle style, bool isDirectory = false,
                       CFURLRef base = nullptr) {
    Owned<CFStringRef> const text(NewString(path, kCFStringEncodingMacHFS));
    return CFURLCreateWithFileSystemPathRelativeToBase(kCFAllocatorDefault, text, style, isDirectory, base);
}

std::string FromHfs(std::string_view path, CFURLRef base = nullptr) {
    Owned<CFURLRef> const url(NewURLInStyle(path, kCFURLHFSPathStyle, false, base));
    return PathOf(url);
}

std::string FromPosix(std::string_view path, CFURLRef base = nullptr) {
    Owned<CFURLRef> const url(NewURLInStyle(path, kCFURLPOSIXPathStyle, false, base));
    return PathOf(url);
}

std::string InStyle(std::string_view posixPath, CFURLPathStyle style) {
    Owned<CFURLRef> const url(NewURL(posixPath));
    Owned<CFStringRef> const path(CFURLCopyFileSystemPath(url, style));
    return NameBytes(path);
}

// The root's name in HFS style.
std::string RootName() { return InStyle("/", kCFURLHFSPathStyle); }

}  // namespace

TEST(UrlPaths, PosixPathsStayAsTheyAre) {
    for (char const* path : {"/", "/a", "/a/b", "a", "a/b", "/a/../b", "./a", "//a//b", "/a\xFF", "/a:b"}) {
        EXPECT_EQ(path, FromPosix(path));
    }
}

TEST(UrlPaths, SeparatorAtTheEndMakesADirectoryUrl) {
    EXPECT_EQ("/a/", FromPosix("/a/"));
    Owned<CFURLRef> const file(NewURL("/a"));
    Owned<CFURLRef> const folder(NewURL("/a", true));
    Owned<CFURLRef> const dots(NewURL("/a/.."));
    EXPECT_FALSE(CFURLHasDirectoryPath(file));
    EXPECT_TRUE(CFURLHasDirectoryPath(folder));
    EXPECT_TRUE(CFURLHasDirectoryPath(dots));
}

TEST(UrlPaths, WhatIsNoPathMakesNoUrl) {
    EXPECT_EQ("(null)", FromPosix(""));
    EXPECT_EQ("(null)", FromHfs(""));
    EXPECT_EQ("(null)", FromPosix(std::string_view("/a\0b", 4)));
    Owned<CFURLRef> const nul(NewURL(std::string_view("/a\0b", 4)));
    EXPECT_EQ(nullptr, nul);
    Owned<CFURLRef> const windows(NewURLInStyle("c:\\", kCFURLWindowsPathStyle));
    EXPECT_EQ(nullptr, windows);
    EXPECT_EQ(nullptr, CFURLCreateFromFileSystemRepresentation(kCFAllocatorDefault, Bytes("/a"), -1, false));
}

TEST(UrlPaths, RelativePathGoesOnFromItsBase) {
    Owned<CFURLRef> const base(NewURL("/base", true));
    Owned<CFURLRef> const plainBase(NewURL("/base"));
    EXPECT_EQ("/base/a/b", FromPosix("a/b", base));
    EXPECT_EQ("/base/a/b", FromPosix("a/b", plainBase));
    EXPECT_EQ("/a/b", FromPosix("/a/b", base));
    EXPECT_EQ("/base/a", FromHfs(":a", base));
}

TEST(UrlPaths, HfsNamesExchangeColonAndSlash) {
    Owned<CFURLRef> const base(NewURL("/base", true));
    EXPECT_EQ("/base/a:b/c", FromHfs(":a/b:c", base));
    EXPECT_EQ(":a/b:c", InStyle("a:b/c", kCFURLHFSPathStyle));
}

TEST(UrlPaths, EachColonBeyondOneGoesUp) {
    struct {
        char const* hfs;
        char const* posix;
    } const rows[] = {{":a", "/base/a"},         {":a:b", "/base/a/b"},
                      {":a::b", "/base/a/../b"}, {":a:::b", "/base/a/../../b"},
                      {"::b", "/base/../b"},     {":a:", "/base/a/"},
                      {":a::", "/base/a/../"},   {":a:::", "/base/a/../../"},
                      {":", "/base/./"},         {"::", "/base/../"}};
    Owned<CFURLRef> const base(NewURL("/base", true));
    for (auto const& row : rows) EXPECT_EQ(row.posix, FromHfs(row.hfs, base)) << row.hfs;
}

TEST(UrlPaths, HfsPathOfTheWorldBeginsWithAVolume) {
    EXPECT_EQ("/etc/hosts", FromHfs(RootName() + ":etc:hosts"));
    EXPECT_EQ("/", FromHfs(RootName()));
    EXPECT_EQ("/", FromHfs(RootName() + ":"));
    EXPECT_EQ("/etc/hosts", FromHfs("/:etc:hosts"));
    EXPECT_EQ("(null)", FromHfs("no volume has this name:etc"));
    EXPECT_EQ("(null)", FromHfs("etc"));
}

TEST(UrlPaths, DotsAreNoNamesInHfsStyle) {
    EXPECT_EQ("(null)", FromHfs(":.."));
    EXPECT_EQ("(null)", FromHfs(":a:.:b"));
    EXPECT_EQ("...", FromHfs(":..."));
}

TEST(UrlPaths, HfsFormLeadsBack) {
    for (std::string const path : {"/", "/etc", "/etc/a:b", "/a/../b", "/a/..", "/a/../..", "/proc/self"}) {
        std::string const hfs = InStyle(path, kCFURLHFSPathStyle);
        Owned<CFURLRef> const url(NewURLInStyle(hfs, kCFURLHFSPathStyle));
        Owned<CFStringRef> const back(CFURLCopyFileSystemPath(url, kCFURLPOSIXPathStyle));
        EXPECT_EQ(path, NameBytes(back)) << hfs;
    }
    EXPECT_NE("(null)", RootName());
}

TEST(UrlPaths, RelativeHfsFormLeadsBack) {
    for (std::string const path : {"a", "a/b", "../a", "a/../b", "..", "../..", "."}) {
        std::string const hfs = InStyle(path, kCFURLHFSPathStyle);
        ASSERT_EQ(':', hfs[0]) << path;
        Owned<CFURLRef> const url(NewURLInStyle(hfs, kCFURLHFSPathStyle));
        Owned<CFStringRef> const back(CFURLCopyFileSystemPath(url, kCFURLPOSIXPathStyle));
        EXPECT_EQ(path, NameBytes(back)) << hfs;
    }
}

TEST(UrlPaths, CopiedPathHasNoSeparatorAtItsEnd) {
    EXPECT_EQ("/a", InStyle("/a/", kCFURLPOSIXPathStyle));
    EXPECT_EQ("/", InStyle("/", kCFURLPOSIXPathStyle));
    EXPECT_EQ("(null)", InStyle("/a", kCFURLWindowsPathStyle));
}

TEST(UrlPaths, CopiedPathOfARelativeUrlIsItsOwn) {
    Owned<CFURLRef> const base(NewURL("/base", true));
    Owned<CFURLRef> const url(NewURLInStyle("a", kCFURLPOSIXPathStyle, false, base));
    Owned<CFStringRef> const path(CFURLCopyFileSystemPath(url, kCFURLPOSIXPathStyle));
    EXPECT_EQ("a", NameBytes(path));
    UInt8 buffer[8];
    EXPECT_TRUE(CFURLGetFileSystemRepresentation(url, false, buffer, sizeof buffer));
    EXPECT_STREQ("a", reinterpret_cast<char*>(buffer));
    EXPECT_FALSE(CFURLGetFileSystemRepresentation(url, true, buffer, 7));
    EXPECT_TRUE(CFURLGetFileSystemRepresentation(url, true, buffer, 8));
    EXPECT_STREQ("/base/a", reinterpret_cast<char*>(buffer));
}

TEST(UrlPaths, LastComponent) {
    struct {
        char const* path;
        char const* name;
    } const rows[] = {{"/a/b", "b"}, {"/a/b/", "b"}, {"/a/b//", "b"}, {"/", "/"},
                      {"//", "/"},   {"a", "a"},     {"/a/..", ".."}};
    for (auto const& row : rows) {
        Owned<CFURLRef> const url(NewURL(row.path));
        Owned<CFStringRef> const name(CFURLCopyLastPathComponent(url));
        EXPECT_EQ(row.name, NameBytes(name)) << row.path;
    }
}

TEST(UrlPaths, DeletingTheLastComponent) {
    struct {
        char const* path;
        char const* folder;
    } const rows[] = {{"/a/b", "/a/"},      {"/a/b/", "/a/"}, {"/a//b", "/a/"}, {"/a", "/"},  {"/", "/../"},
                      {"/a/.", "/a/./../"}, {"..", "../../"}, {"a", "./"},      {"a/b", "a/"}};
    for (auto const& row : rows) {
        Owned<CFURLRef> const url(NewURL(row.path));
        Owned<CFURLRef> const folder(CFURLCreateCopyDeletingLastPathComponent(kCFAllocatorDefault, url));
        EXPECT_EQ(row.folder, PathOf(folder)) << row.path;
        EXPECT_TRUE(CFURLHasDirectoryPath(folder));
    }
}

TEST(UrlPaths, DeletingTheLastComponentKeepsTheBase) {
    Owned<CFURLRef> const base(NewURL("/base", true));
    Owned<CFURLRef> const url(NewURLInStyle("a/b", kCFURLPOSIXPathStyle, false, base));
    Owned<CFURLRef> const folder(CFURLCreateCopyDeletingLastPathComponent(kCFAllocatorDefault, url));
    EXPECT_EQ("/base/a/", PathOf(folder));
}

TEST(UrlPaths, AppendingAComponent) {
    Owned<CFURLRef> const root(NewURL("/"));
    Owned<CFURLRef> const folder(NewURL("/a"));
    Owned<CFStringRef> const name(NewString("b\xFF", kCFStringEncodingMacHFS));
    Owned<CFStringRef> const empty(NewString(""));
    Owned<CFURLRef> const inRoot(
        CFURLCreateCopyAppendingPathComponent(kCFAllocatorDefault, root, name, false));
    Owned<CFURLRef> const inFolder(
        CFURLCreateCopyAppendingPathComponent(kCFAllocatorDefault, folder, name, true));
    EXPECT_EQ("/b\xFF", PathOf(inRoot));
    EXPECT_EQ("/a/b\xFF/", PathOf(inFolder));
    EXPECT_EQ(nullptr, CFURLCreateCopyAppendingPathComponent(kCFAllocatorDefault, folder, empty, false));
}

TEST(UrlPaths, EqualityIsThatOfPathsAndBases) {
    Owned<CFURLRef> const base(NewURL("/a", true));
    Owned<CFURLRef> const relative(NewURLInStyle("b", kCFURLPOSIXPathStyle, false, base));
    Owned<CFURLRef> const sameRelative(NewURLInStyle("b", kCFURLPOSIXPathStyle, false, base));
    Owned<CFURLRef> const absolute(NewURL("/a/b"));
    Owned<CFURLRef> const sameAbsolute(NewURL("/a/b"));
    Owned<CFURLRef> const folder(NewURL("/a/b", true));
    EXPECT_TRUE(CFEqual(relative, sameRelative));
    EXPECT_EQ(CFHash(relative), CFHash(sameRelative));
    EXPECT_TRUE(CFEqual(absolute, sameAbsolute));
    EXPECT_FALSE(CFEqual(relative, absolute));
    EXPECT_FALSE(CFEqual(absolute, folder));
}
