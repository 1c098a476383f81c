// Finder information, fork lengths, dates and locks from each place where they are kept.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/AppleDoubleBuilder.h"
#include "platform/Items.h"

namespace {

std::string TypeOf(FSCatalogInfo const& info) {
    FileInfo const finderInfo = FinderInfoOf(info);
    return BigEndian(finderInfo.fileType, 4) + BigEndian(finderInfo.fileCreator, 4);
}

std::string const kNoType(8, '\0');

std::string DatesEntry(std::uint32_t created, std::uint32_t backedUp) {
    return BigEndian(created, 4) + BigEndian(0, 4) + BigEndian(backedUp, 4) + BigEndian(0, 4);
}

}  // namespace

TEST(Metadata, FinderInformationIsInNativeOrder) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    std::string const stored = "TEXTttxt" + BigEndian(0x4801, 2) + BigEndian(5, 2) + BigEndian(0xFFFF, 2) +
                               BigEndian(7, 2) + std::string(8, '\0') + BigEndian(0x0104, 2) +
                               BigEndian(9, 2) + BigEndian(0x01020304, 4);
    folder.SetAttribute("file", "user.com.apple.FinderInfo", stored);
    FSCatalogInfo const info = CatalogOf(path);
    FileInfo const finderInfo = FinderInfoOf(info);
    EXPECT_EQ(0x54455854u, +finderInfo.fileType);
    EXPECT_EQ(0x74747874u, +finderInfo.fileCreator);
    EXPECT_EQ(0x4801, finderInfo.finderFlags);
    EXPECT_EQ(5, finderInfo.location.v);
    EXPECT_EQ(-1, finderInfo.location.h);
    EXPECT_EQ(7, finderInfo.reservedField);
    ExtendedFileInfo extended;
    std::memcpy(&extended, info.extFinderInfo, sizeof extended);
    EXPECT_EQ(0x0104, extended.extendedFinderFlags);
    EXPECT_EQ(9, extended.reserved2);
    EXPECT_EQ(0x01020304, +extended.putAwayFolderID);
}

TEST(Metadata, OfAFolderHasItsOwnShape) {
    TemporaryFolder const folder;
    folder.MakeFolder("folder");
    std::string const stored = BigEndian(1, 2) + BigEndian(2, 2) + BigEndian(3, 2) + BigEndian(4, 2) +
                               BigEndian(0x0400, 2) + std::string(6, '\0') + BigEndian(8, 2) +
                               BigEndian(9, 2) + std::string(4, '\0') + BigEndian(0x0100, 2) +
                               std::string(2, '\0') + BigEndian(77, 4);
    folder.SetAttribute("folder", "user.com.apple.FinderInfo", stored);
    FSCatalogInfo const info = CatalogOf(folder.Path("folder"));
    FolderInfo finderInfo;
    std::memcpy(&finderInfo, info.finderInfo, sizeof finderInfo);
    EXPECT_EQ(1, finderInfo.windowBounds.top);
    EXPECT_EQ(4, finderInfo.windowBounds.right);
    EXPECT_EQ(0x0400, finderInfo.finderFlags);
    ExtendedFolderInfo extended;
    std::memcpy(&extended, info.extFinderInfo, sizeof extended);
    EXPECT_EQ(8, extended.scrollPosition.v);
    EXPECT_EQ(0x0100, extended.extendedFinderFlags);
    EXPECT_EQ(77, +extended.putAwayFolderID);
}

TEST(Metadata, FinderInformationFromEachAttribute) {
    std::string const info = FinderInformation("TEXTttxt");
    std::pair<char const*, std::string> const attributes[] = {
        {"user.com.apple.FinderInfo", info},
        {"user.AFP_AfpInfo", AfpInfo(5, info)},
        {"user.DosStream.AFP_AfpInfo:$DATA", AfpInfo(5, info) + std::string(1, '\0')},
        {"user.org.netatalk.Metadata", AppleDoubleImage({{9, info}, {8, DatesEntry(1, 5)}})}};
    for (auto const& [name, value] : attributes) {
        TemporaryFolder const folder;
        std::string const path = folder.Write("file");
        folder.SetAttribute("file", name, value);
        EXPECT_EQ("TEXTttxt", TypeOf(CatalogOf(path))) << name;
        bool const hasBackupDate = value.size() != 32;
        EXPECT_EQ(hasBackupDate ? 946'684'805 : -2'082'844'800, FixedPoint(CatalogOf(path).backupDate) >> 16)
            << name;
    }
}

TEST(Metadata, ForkLengthFromEachAttribute) {
    struct {
        char const* name;
        UInt64 length;
    } const attributes[] = {{"user.com.apple.ResourceFork", 10},
                            {"user.AFP_Resource", 10},
                            {"user.org.netatalk.ResourceFork", 10},
                            {"user.DosStream.AFP_Resource:$DATA", 9}};
    for (auto const& attribute : attributes) {
        TemporaryFolder const folder;
        std::string const path = folder.Write("file");
        folder.SetAttribute("file", attribute.name, "0123456789");
        EXPECT_EQ(attribute.length, +CatalogOf(path).rsrcLogicalSize) << attribute.name;
    }
}

TEST(Metadata, PhysicalForkLengthIsInWholeBlocks) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    folder.SetAttribute("file", "user.com.apple.ResourceFork", "0123456789");
    struct stat status {};
    ASSERT_EQ(0, stat(path.c_str(), &status));
    EXPECT_EQ(static_cast<UInt64>(status.st_blksize), +CatalogOf(path).rsrcPhysicalSize);
}

TEST(Metadata, FirstStoreWins) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    folder.Write("._file", AppleDoubleImage({{9, FinderInformation("LASTlast")}, {2, "12"}}));
    EXPECT_EQ("LASTlast", TypeOf(CatalogOf(path)));
    folder.MakeFolder(".AppleDouble");
    folder.Write(".AppleDouble/file", AppleDoubleImage({{9, FinderInformation("DOUBdoub")}, {2, "123"}}));
    EXPECT_EQ("DOUBdoub", TypeOf(CatalogOf(path)));
    EXPECT_EQ(2u, +CatalogOf(path).rsrcLogicalSize);
    folder.SetAttribute("file", "user.org.netatalk.Metadata",
                        AppleDoubleImage({{9, FinderInformation("SERVserv")}}));
    EXPECT_EQ("SERVserv", TypeOf(CatalogOf(path)));
    folder.SetAttribute("file", "user.AFP_AfpInfo", AfpInfo(0, FinderInformation("NTFSntfs")));
    EXPECT_EQ("NTFSntfs", TypeOf(CatalogOf(path)));
    folder.SetAttribute("file", "user.com.apple.FinderInfo", FinderInformation("COPYcopy"));
    folder.SetAttribute("file", "user.com.apple.ResourceFork", "1");
    EXPECT_EQ("COPYcopy", TypeOf(CatalogOf(path)));
    EXPECT_EQ(1u, +CatalogOf(path).rsrcLogicalSize);
}

TEST(Metadata, CompanionsOfFiles) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    folder.Write("._file",
                 AppleDoubleImage({{9, FinderInformation("TEXTttxt", kIsStationery)}, {2, "fork"}}));
    EXPECT_EQ("TEXTttxt", TypeOf(CatalogOf(path)));
    EXPECT_EQ(kIsStationery, FinderInfoOf(CatalogOf(path)).finderFlags);
    EXPECT_EQ(4u, +CatalogOf(path).rsrcLogicalSize);
}

TEST(Metadata, CompanionsOfFolders) {
    TemporaryFolder const folder;
    folder.MakeFolder("one/.AppleDouble");
    folder.Write("one/.AppleDouble/.Parent", AppleDoubleImage({{8, DatesEntry(1, 5)}}));
    EXPECT_EQ(946'684'805, FixedPoint(CatalogOf(folder.Path("one")).backupDate) >> 16);
    folder.MakeFolder("two");
    folder.Write("._two", AppleDoubleImage({{8, DatesEntry(1, 6)}}));
    EXPECT_EQ(946'684'806, FixedPoint(CatalogOf(folder.Path("two")).backupDate) >> 16);
}

TEST(Metadata, CompanionHasNoCompanion) {
    TemporaryFolder const folder;
    std::string const companion = folder.Write("._file", "no image");
    folder.Write("._._file", AppleDoubleImage({{9, FinderInformation("TEXTttxt")}}));
    EXPECT_EQ(kNoType, TypeOf(CatalogOf(companion)));
}

TEST(Metadata, CompanionThatIsNoImageCountsAsAbsent) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    folder.Write("._file", "not an image at all");
    EXPECT_EQ(kNoType, TypeOf(CatalogOf(path)));
    std::filesystem::remove(folder.Path("._file"));
    ASSERT_EQ(0, mkfifo(folder.Path("._file").c_str(), 0600));
    EXPECT_EQ(kNoType, TypeOf(CatalogOf(path)));
    std::filesystem::remove(folder.Path("._file"));
    folder.MakeFolder("._file");
    EXPECT_EQ(kNoType, TypeOf(CatalogOf(path)));
}

TEST(Metadata, MalformedAttributesCountAsAbsent) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    folder.SetAttribute("file", "user.com.apple.FinderInfo", "short");
    folder.SetAttribute("file", "user.AFP_AfpInfo", "short");
    folder.SetAttribute("file", "user.org.netatalk.Metadata", "short");
    folder.SetAttribute("file", "user.DosStream.AFP_Resource:$DATA", "");
    EXPECT_EQ(kNoType, TypeOf(CatalogOf(path)));
    EXPECT_EQ(0u, +CatalogOf(path).rsrcLogicalSize);
}

TEST(Metadata, LockedBitLocks) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    EXPECT_EQ(0, CatalogOf(path).nodeFlags);
    folder.SetAttribute("file", "user.org.netatalk.Metadata", AppleDoubleImage({{14, BigEndian(0x20, 4)}}));
    EXPECT_EQ(kFSNodeLockedMask, CatalogOf(path).nodeFlags);
}

TEST(Metadata, CreationDateGivesWayToTheBirthTime) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    std::int64_t const before = FixedPoint(CatalogOf(path).createDate) >> 16;
    struct statx status;
    ASSERT_EQ(0, statx(AT_FDCWD, path.c_str(), 0, STATX_BTIME, &status));
    folder.SetAttribute("file", "user.org.netatalk.Metadata",
                        AppleDoubleImage({{8, DatesEntry(0, 0x80000000)}}));
    bool const hasBirthTime = (status.stx_mask & STATX_BTIME) != 0;
    EXPECT_EQ(hasBirthTime ? before : 946'684'800, FixedPoint(CatalogOf(path).createDate) >> 16);
}

TEST(Metadata, InvisibleFlagOfTheMetadataMakesInvisible) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    folder.SetAttribute("file", "user.com.apple.FinderInfo", FinderInformation("TEXTttxt", kIsInvisible));
    EXPECT_EQ(kIsInvisible, FinderInfoOf(CatalogOf(path)).finderFlags);
}

TEST(Metadata, ManyOtherAttributesDoNotHideIt) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    for (int i = 0; i < 12; ++i) {
        std::string const name =
            "user.an-attribute-with-a-very-long-name-" + std::string(150, 'x') + std::to_string(i);
        folder.SetAttribute("file", name.c_str(), "");
    }
    folder.SetAttribute("file", "user.com.apple.ResourceFork", "123");
    EXPECT_EQ(3u, +CatalogOf(path).rsrcLogicalSize);
}
