// How a symbolic link at the end of a path is described.

#include <unistd.h>

#include "platform/Items.h"

namespace {

constexpr FSCatalogInfoBitmap kMost = kFSCatInfoGettableInfo;

FSRef ReferenceToLink(std::string const& path) {
    FSRef reference{};
    EXPECT_EQ(noErr, FSPathMakeRefWithOptions(Bytes(path.c_str()), kFSPathMakeRefDoNotFollowLeafSymlink,
                                              &reference, nullptr));
    return reference;
}

}  // namespace

TEST(SymbolicLinks, ToAFileHasItsSizeAndDatesAndTheAliasFlag) {
    TemporaryFolder const folder;
    std::string const target = folder.Write("target", "12345");
    folder.SetAttribute("target", "user.com.apple.FinderInfo", std::string("TEXTttxt").append(24, '\0'));
    FSCatalogInfo const info = CatalogOf(folder.Link("link", "target"), kMost);
    EXPECT_EQ(5u, +info.dataLogicalSize);
    EXPECT_EQ(+CatalogOf(target).nodeID, +info.nodeID);
    EXPECT_EQ(FixedPoint(CatalogOf(target).contentModDate), FixedPoint(info.contentModDate));
    EXPECT_EQ(kIsAlias, FinderInfoOf(info).finderFlags);
    EXPECT_EQ(0x54455854u, +FinderInfoOf(info).fileType);
    EXPECT_EQ(0, FinderInfoOf(CatalogOf(target)).finderFlags);
}

TEST(SymbolicLinks, ToAFolderIsAFolderWithTheAliasFlag) {
    TemporaryFolder const folder;
    folder.MakeFolder("target");
    FSCatalogInfo const info = CatalogOf(folder.Link("link", "target"), kMost);
    EXPECT_EQ(kFSNodeIsDirectoryMask, info.nodeFlags);
    FolderInfo finderInfo;
    std::memcpy(&finderInfo, info.finderInfo, sizeof finderInfo);
    EXPECT_EQ(kIsAlias, finderInfo.finderFlags);
}

TEST(SymbolicLinks, ThatDangleAreFilesDescribedByThemselves) {
    TemporaryFolder const folder;
    for (std::string const target : {"missing", "loop"}) {
        FSCatalogInfo const info = CatalogOf(folder.Link(target == "loop" ? "loop" : "link", target), kMost);
        EXPECT_EQ(0, info.nodeFlags);
        EXPECT_EQ(target.size(), +info.dataLogicalSize);
        EXPECT_EQ(kIsAlias, FinderInfoOf(info).finderFlags);
        EXPECT_EQ(static_cast<OSType>(kSymLinkFileType), +FinderInfoOf(info).fileType);
        EXPECT_EQ(static_cast<OSType>(kSymLinkCreator), +FinderInfoOf(info).fileCreator);
    }
}

TEST(SymbolicLinks, NotFollowedAreDescribedByThemselves) {
    TemporaryFolder const folder;
    folder.MakeFolder("target");
    FSRef const link = ReferenceToLink(folder.Link("link", "target"));
    FSCatalogInfo const info = CatalogOf(link, kMost);
    EXPECT_EQ(0, info.nodeFlags);
    EXPECT_EQ(6u, +info.dataLogicalSize);
    FSRef const followed = ReferenceTo(folder.Path("link"));
    EXPECT_EQ(errFSRefsDifferent, FSCompareFSRefs(&link, &followed));
}

TEST(SymbolicLinks, FollowedCountAsTheirTarget) {
    TemporaryFolder const folder;
    FSRef const target = ReferenceTo(folder.Write("target"));
    FSRef const link = ReferenceTo(folder.Link("link", "target"));
    folder.Link("chain", "link");
    FSRef const chain = ReferenceTo(folder.Path("chain"));
    EXPECT_EQ(noErr, FSCompareFSRefs(&target, &link));
    EXPECT_EQ(noErr, FSCompareFSRefs(&target, &chain));
}

TEST(SymbolicLinks, ThatDangleDifferFromOneAnother) {
    TemporaryFolder const folder;
    FSRef const one = ReferenceTo(folder.Link("one", "missing"));
    FSRef const other = ReferenceTo(folder.Link("other", "missing"));
    EXPECT_EQ(errFSRefsDifferent, FSCompareFSRefs(&one, &other));
}

TEST(SymbolicLinks, KeepTheirNamesAndPlaces) {
    TemporaryFolder const folder;
    folder.Write("target");
    FSRef const link = ReferenceTo(folder.Link("link", "target"));
    HFSUniStr255 name;
    ASSERT_EQ(noErr, FSGetCatalogInfo(&link, 0, nullptr, &name, nullptr, nullptr));
    EXPECT_EQ(u"link", std::u16string(name.unicode, name.unicode + name.length));
    EXPECT_EQ(folder.Path("link"), PathOf(link));
}

TEST(SymbolicLinks, CompanionFileOfTheTargetCounts) {
    TemporaryFolder const folder;
    folder.MakeFolder("elsewhere");
    folder.Write("elsewhere/target");
    folder.SetAttribute("elsewhere/target", "user.com.apple.ResourceFork", "1234567");
    EXPECT_EQ(7u, +CatalogOf(folder.Link("link", "elsewhere/target"), kMost).rsrcLogicalSize);
}

TEST(SymbolicLinks, AlongTheWayChangeNothing) {
    TemporaryFolder const folder;
    folder.MakeFolder("real");
    FSRef const direct = ReferenceTo(folder.Write("real/file"));
    folder.Link("link", "real");
    FSRef const throughLink = ReferenceTo(folder.Path("link/file"));
    EXPECT_EQ(noErr, FSCompareFSRefs(&direct, &throughLink));
    EXPECT_EQ(0, FinderInfoOf(CatalogOf(throughLink)).finderFlags);
}
