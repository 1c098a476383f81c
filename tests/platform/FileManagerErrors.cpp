// What the File Manager answers when something is not right.

#include <sys/stat.h>
#include <unistd.h>

#include <Platform/Items.h>

#include "platform/Items.h"

namespace {

OSErr LookUpName(FSRef const& folder, std::u16string_view name) {
    FSRef found;
    std::vector<UniChar> const units(name.begin(), name.end());
    return FSMakeFSRefUnicode(&folder, units.size(), units.data(), 0xFFFF, &found);
}

OSStatus LookUpPath(std::string const& path) {
    FSRef found;
    return FSPathMakeRef(Bytes(path.c_str()), &found, nullptr);
}

Boolean SayStop(UInt32) { return false; }

}  // namespace

TEST(FileManagerErrors, LookUpByNameFindsAndMisses) {
    TemporaryFolder const folder;
    folder.Write("caf\xC3\xA9");
    FSRef const reference = ReferenceTo(folder.Path());
    EXPECT_EQ(noErr, LookUpName(reference, u"caf\u00e9"));
    EXPECT_EQ(fnfErr, LookUpName(reference, u"cafe\u0301"));
    EXPECT_EQ(fnfErr, LookUpName(reference, u"CAF\u00c9"));
}

TEST(FileManagerErrors, NamesThatNoFileHas) {
    TemporaryFolder const folder;
    FSRef const reference = ReferenceTo(folder.Path());
    EXPECT_EQ(errFSMissingName, LookUpName(reference, u""));
    EXPECT_EQ(bdNamErr, LookUpName(reference, u"."));
    EXPECT_EQ(bdNamErr, LookUpName(reference, u".."));
    EXPECT_EQ(bdNamErr, LookUpName(reference, u"a/b"));
    EXPECT_EQ(bdNamErr, LookUpName(reference, std::u16string_view(u"a\0", 2)));
    EXPECT_EQ(bdNamErr, LookUpName(reference, std::u16string(1, static_cast<char16_t>(0xD800))));
    EXPECT_EQ(fnfErr, LookUpName(reference, u"a:b"));
}

TEST(FileManagerErrors, NamesHaveAtMost255Bytes) {
    TemporaryFolder const folder;
    FSRef const reference = ReferenceTo(folder.Path());
    folder.Write(std::string(255, 'x'));
    EXPECT_EQ(noErr, LookUpName(reference, std::u16string(255, u'x')));
    EXPECT_EQ(errFSNameTooLong, LookUpName(reference, std::u16string(256, u'x')));
    EXPECT_EQ(errFSNameTooLong, LookUpName(reference, std::u16string(128, u'\u00e9')));
}

TEST(FileManagerErrors, NameInAFileIsNotFoundAsAFolderIsMissing) {
    TemporaryFolder const folder;
    FSRef const file = ReferenceTo(folder.Write("file"));
    EXPECT_EQ(dirNFErr, LookUpName(file, u"a"));
}

TEST(FileManagerErrors, PathsThatLeadNowhere) {
    TemporaryFolder const folder;
    folder.Write("file");
    EXPECT_EQ(paramErr, LookUpPath(""));
    EXPECT_EQ(fnfErr, LookUpPath(folder.Path("missing")));
    EXPECT_EQ(fnfErr, LookUpPath(folder.Path("missing/file")));
    EXPECT_EQ(dirNFErr, LookUpPath(folder.Path("file/more")));
    EXPECT_EQ(dirNFErr, LookUpPath(folder.Path("file/")));
    EXPECT_EQ(dirNFErr, LookUpPath(folder.Path("file/.")));
    EXPECT_EQ(errFSNameTooLong, LookUpPath(folder.Path(std::string(256, 'x'))));
}

TEST(FileManagerErrors, FolderThatMayNotBeSearchedDeniesAccess) {
    TemporaryFolder const folder;
    folder.MakeFolder("closed");
    std::string const file = folder.Write("closed/file");
    ASSERT_EQ(0, chmod(folder.Path("closed").c_str(), 0));
    uid_t const user = geteuid();
    if (user == 0) {
        ASSERT_EQ(0, seteuid(65534));
    }
    OSStatus const status = LookUpPath(file);
    if (user == 0) {
        ASSERT_EQ(0, seteuid(user));
    }
    ASSERT_EQ(0, chmod(folder.Path("closed").c_str(), 0700));
    EXPECT_EQ(afpAccessDenied, status);
}

TEST(FileManagerErrors, NullArgumentsAreRefused) {
    FSRef const root = ReferenceTo("/");
    FSRef other;
    EXPECT_EQ(paramErr, FSGetCatalogInfo(nullptr, 0, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(paramErr, FSPathMakeRef(nullptr, &other, nullptr));
    EXPECT_EQ(paramErr, FSPathMakeRef(Bytes("/"), nullptr, nullptr));
    EXPECT_EQ(paramErr, FSPathMakeRefWithOptions(Bytes("/"), 2, &other, nullptr));
    EXPECT_EQ(paramErr, FSMakeFSRefUnicode(&root, 1, nullptr, 0, &other));
    EXPECT_EQ(paramErr, FSMakeFSRefUnicode(nullptr, 0, nullptr, 0, &other));
    EXPECT_EQ(paramErr, FSCompareFSRefs(&root, nullptr));
    EXPECT_EQ(paramErr, FSRefMakePath(&root, nullptr, 1));
    EXPECT_EQ(paramErr, FSpMakeFSRef(nullptr, &other));
    EXPECT_EQ(paramErr, FSMakeFSSpec(0, 2, nullptr, nullptr));
    EXPECT_EQ(paramErr, PlatformGetItem(nullptr, 0, &other, nullptr));
}

TEST(FileManagerErrors, LookUpsStopWhenTheCheckInFunctionSaysSo) {
    FSRef const root = ReferenceTo("/");
    EXPECT_EQ(nullptr, PlatformSetCheckIn(SayStop));
    OSStatus const byPath = LookUpPath("/");
    OSErr const byReference = FSGetCatalogInfo(&root, 0, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(SayStop, PlatformSetCheckIn(nullptr));
    EXPECT_EQ(userCanceledErr, byPath);
    EXPECT_EQ(userCanceledErr, byReference);
    EXPECT_EQ(noErr, LookUpPath("/"));
}

TEST(FileManagerErrors, ItemAndItsInformationInOneStep) {
    TemporaryFolder const folder;
    folder.Write("file", "123");
    Owned<CFURLRef> const url(NewURL(folder.Path("file")));
    Owned<CFURLRef> const missing(NewURL(folder.Path("missing")));
    FSRef reference;
    FSCatalogInfo info;
    ASSERT_EQ(noErr, PlatformGetItem(url, kFSCatInfoDataSizes, &reference, &info));
    EXPECT_EQ(3u, +info.dataLogicalSize);
    EXPECT_EQ(folder.Path("file"), PathOf(reference));
    EXPECT_EQ(fnfErr, PlatformGetItem(missing, kFSCatInfoDataSizes, &reference, &info));
    EXPECT_EQ(errFSBadInfoBitmap, PlatformGetItem(url, 0x00040000, &reference, &info));
}
