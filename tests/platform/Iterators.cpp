// The items of a folder, in batches.

#include <Platform/Items.h>
#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>

#include "platform/AppleDoubleBuilder.h"
#include "platform/Items.h"
#include "support/Unprivileged.h"

namespace {

using Names = std::set<std::string>;

std::string BytesOf(HFSUniStr255 const& name) {
    Owned<CFStringRef> const text(
        CFStringCreateWithCharacters(kCFAllocatorDefault, name.unicode, name.length));
    return NameBytes(text);
}

struct Child {
    std::string name;
    FSRef reference;
    FSCatalogInfo info;
};

// An iterator over the folder at a path.
class Iterator {
  public:
    explicit Iterator(std::string const& path) {
        Owned<CFURLRef> const url(NewURL(path, true));
        EXPECT_EQ(noErr, PlatformOpenIterator(url, &number)) << path;
    }
    Iterator(Iterator const&) = delete;
    Iterator& operator=(Iterator const&) = delete;
    ~Iterator() {
        if (number != nullptr) Close();
    }
    void Close() {
        EXPECT_EQ(noErr, FSCloseIterator(number));
        number = nullptr;
    }

    // The next items; `result` is the call's.
    std::vector<Child> Read(ItemCount most) {
        std::vector<FSRef> references(most);
        std::vector<FSCatalogInfo> infos(most);
        std::vector<HFSUniStr255> names(most);
        ItemCount count = 77;
        result = FSGetCatalogInfoBulk(number, most, &count, &hasChanged, kFSCatInfoGettableInfo, infos.data(),
                                      references.data(), nullptr, names.data());
        std::vector<Child> children;
        for (ItemCount i = 0; i < count; ++i)
            children.push_back({BytesOf(names[i]), references[i], infos[i]});
        return children;
    }
    // All that is left, in batches; each name must come once.
    std::map<std::string, Child> ReadAll(ItemCount batch = 10) {
        std::map<std::string, Child> all;
        do {
            for (Child const& child : Read(batch))
                EXPECT_TRUE(all.emplace(child.name, child).second) << child.name;
        } while (result == noErr);
        EXPECT_EQ(errFSNoMoreItems, result);
        return all;
    }
    Names ReadNames() {
        Names names;
        for (auto const& [name, child] : ReadAll()) names.insert(name);
        return names;
    }

    FSIterator number = nullptr;
    OSErr result = noErr;
    Boolean hasChanged = false;
};

OSErr OpenError(std::string const& path) {
    Owned<CFURLRef> const url(NewURL(path));
    FSIterator ignored = nullptr;
    return PlatformOpenIterator(url, &ignored);
}

Names MakeFiles(TemporaryFolder const& folder, int count) {
    Names names;
    for (int i = 0; i < count; ++i) {
        std::string const name = "file " + std::to_string(i);
        folder.Write(name);
        names.insert(name);
    }
    return names;
}

}  // namespace

TEST(Iterators, GiveEachItemOnceWhateverTheBatch) {
    TemporaryFolder const folder;
    Names names = MakeFiles(folder, 100);
    folder.MakeFolder("folder");
    folder.Write(".hidden");
    names.insert({"folder", ".hidden"});
    for (ItemCount const batch : {1, 7, 102, 103, 1000}) {
        Iterator iterator(folder.Path());
        Names found;
        for (auto const& [name, child] : iterator.ReadAll(batch)) found.insert(name);
        EXPECT_EQ(names, found) << batch;
    }
}

TEST(Iterators, EmptyFolderHasNoItems) {
    TemporaryFolder const folder;
    Iterator iterator(folder.Path());
    EXPECT_TRUE(iterator.Read(10).empty());
    EXPECT_EQ(errFSNoMoreItems, iterator.result);
    EXPECT_TRUE(iterator.Read(10).empty());
    EXPECT_EQ(errFSNoMoreItems, iterator.result);
}

TEST(Iterators, TellOfItemsWhatLookUpsTell) {
    TemporaryFolder const folder;
    folder.Write("file", "12345");
    folder.MakeFolder("folder/inner");
    folder.SetAttribute("file", "user.com.apple.FinderInfo", FinderInformation("TEXTttxt", 0x4800));
    folder.SetAttribute("file", "user.com.apple.ResourceFork", "fork");
    Iterator iterator(folder.Path());
    auto children = iterator.ReadAll();
    ASSERT_EQ(2u, children.size());
    for (auto& [name, child] : children) {
        FSRef const lookedUp = ReferenceTo(folder.Path(name));
        FSCatalogInfo expected = CatalogOf(lookedUp);
        expected.accessDate = child.info.accessDate = {};  // counting a folder's items is access
        EXPECT_EQ(0, std::memcmp(&expected, &child.info, sizeof expected)) << name;
        EXPECT_EQ(noErr, FSCompareFSRefs(&lookedUp, &child.reference)) << name;
        EXPECT_EQ(folder.Path(name), PathOf(child.reference));
        FSCatalogInfo byReference = CatalogOf(child.reference);
        byReference.accessDate = {};
        EXPECT_EQ(0, std::memcmp(&expected, &byReference, sizeof expected)) << name;
    }
    EXPECT_EQ(4u, +children.at("file").info.rsrcLogicalSize);
    EXPECT_EQ(1u, +children.at("folder").info.valence);
}

TEST(Iterators, GiveOnlyWhatIsAskedFor) {
    TemporaryFolder const folder;
    folder.Write("file", "12345");
    Iterator iterator(folder.Path());
    ItemCount count = 0;
    FSCatalogInfo info;
    FSSpec spec;
    ASSERT_EQ(errFSNoMoreItems, FSGetCatalogInfoBulk(iterator.number, 5, &count, nullptr, kFSCatInfoNodeFlags,
                                                     &info, nullptr, &spec, nullptr));
    EXPECT_EQ(1u, count);
    EXPECT_EQ(0u, +info.dataLogicalSize);
    EXPECT_EQ(4, spec.name[0]);
    FSRef reference;
    ASSERT_EQ(noErr, FSpMakeFSRef(&spec, &reference));
    EXPECT_EQ(folder.Path("file"), PathOf(reference));
}

TEST(Iterators, RefuseWhatMakesNoSense) {
    TemporaryFolder const folder;
    folder.Write("file");
    ItemCount count = 0;
    auto const bulk = [&](FSIterator number, ItemCount most, ItemCount* actual, FSCatalogInfoBitmap which) {
        return FSGetCatalogInfoBulk(number, most, actual, nullptr, which, nullptr, nullptr, nullptr, nullptr);
    };
    Iterator iterator(folder.Path());
    FSIterator const closed = iterator.number;
    EXPECT_EQ(errFSBadItemCount, bulk(iterator.number, 0, &count, 0));
    EXPECT_EQ(paramErr, bulk(iterator.number, 1, nullptr, 0));
    EXPECT_EQ(errFSBadInfoBitmap, bulk(iterator.number, 1, &count, 0x80000000));
    EXPECT_EQ(errFSNoMoreItems, bulk(iterator.number, 1, &count, 0))
        << "nothing was taken by the calls above";
    EXPECT_EQ(1u, count);
    iterator.Close();
    EXPECT_EQ(errFSIteratorNotFound, bulk(closed, 1, &count, 0));
    EXPECT_EQ(errFSIteratorNotFound, FSCloseIterator(closed));
    EXPECT_EQ(errFSIteratorNotFound, FSCloseIterator(nullptr));
    EXPECT_EQ(paramErr, PlatformOpenIterator(nullptr, nullptr));
}

TEST(Iterators, SayWhyAFolderCannotBeOpened) {
    TemporaryFolder const folder;
    std::string const file = folder.Write("file");
    std::string const locked = folder.MakeFolder("locked");
    ASSERT_EQ(0, chmod(folder.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(locked.c_str(), 0));
    EXPECT_EQ(fnfErr, OpenError(folder.Path("missing")));
    EXPECT_EQ(fnfErr, OpenError(folder.Path("missing/inner")));
    EXPECT_EQ(dirNFErr, OpenError(file));
    EXPECT_EQ(fnfErr, OpenError("no such folder here/.."));
    Unprivileged const now;
    EXPECT_EQ(afpAccessDenied, OpenError(locked));
}

TEST(Iterators, ItemThatMayNotBeLookedAtIsGivenWithoutInformation) {
    TemporaryFolder const folder;
    std::string const inner = folder.MakeFolder("inner");
    folder.Write("inner/file");
    ASSERT_EQ(0, chmod(folder.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(inner.c_str(), 0744));  // names may be read, nothing may be looked up
    Unprivileged const now;
    Iterator iterator(inner);
    auto const children = iterator.Read(10);
    ASSERT_EQ(1u, children.size());
    EXPECT_EQ("file", children[0].name);
    FSCatalogInfo const nothing{};
    EXPECT_EQ(0, std::memcmp(&nothing, &children[0].info, sizeof nothing));
    EXPECT_EQ(inner + "/file", PathOf(children[0].reference));
    FSCatalogInfo info;
    EXPECT_EQ(afpAccessDenied, FSGetCatalogInfo(&children[0].reference, 0, &info, nullptr, nullptr, nullptr));
}

TEST(Iterators, NamesAreBytes) {
    TemporaryFolder const folder;
    Names const names = {"caf\xC3\xA9", "bad \xFF\x80", "a:b", "new\nline", std::string(255, 'n')};
    for (std::string const& name : names) folder.Write(name);
    Iterator iterator(folder.Path());
    EXPECT_EQ(names, iterator.ReadNames());
}

TEST(Iterators, LinkIsDescribedByItsTargetUnlessThatIsAFolder) {
    TemporaryFolder const folder;
    folder.Write("file", "12345");
    folder.MakeFolder("inner");
    folder.Link("to file", "file");
    folder.Link("to folder", folder.Path("inner"));
    folder.Link("to nothing", "nothing");
    folder.Link("to itself", "to itself");
    Iterator iterator(folder.Path());
    auto children = iterator.ReadAll();
    ASSERT_EQ(6u, children.size());
    for (char const* name : {"to file", "to folder", "to nothing", "to itself"}) {
        FSCatalogInfo const& info = children[name].info;
        EXPECT_EQ(0, info.nodeFlags & kFSNodeIsDirectoryMask) << name;
        EXPECT_EQ(kIsAlias, FinderInfoOf(info).finderFlags) << name;
        bool const isFile = name == std::string("to file");
        EXPECT_EQ(isFile ? 0u : OSType{kSymLinkFileType}, +FinderInfoOf(info).fileType) << name;
        EXPECT_EQ(isFile, info.dataLogicalSize == 5) << name;
    }
    EXPECT_EQ(noErr, FSCompareFSRefs(&children["to file"].reference, &children["file"].reference));
    EXPECT_EQ(errFSRefsDifferent,
              FSCompareFSRefs(&children["to folder"].reference, &children["inner"].reference));
}

// The item's location keeps how it is described.
TEST(Iterators, LinkToAFolderStaysAFileForWhoeverUsesItsReference) {
    TemporaryFolder const folder;
    folder.MakeFolder("inner");
    std::string const there = folder.MakeFolder("there");
    folder.Link("there/link", "../inner");
    Iterator iterator(there);
    auto const children = iterator.Read(10);
    ASSERT_EQ(1u, children.size());
    Owned<CFURLRef> const url(CFURLCreateFromFSRef(kCFAllocatorDefault, &children[0].reference));
    FSRef reference;
    FSCatalogInfo info;
    ASSERT_EQ(noErr, PlatformGetItem(url, kFSCatInfoNodeFlags, &reference, &info));
    EXPECT_EQ(0, info.nodeFlags);
    FSIterator ignored;
    EXPECT_EQ(dirNFErr, PlatformOpenIterator(url, &ignored)) << "it is not entered";
}

// ---- Companions

TEST(IteratorsAndCompanions, CompanionsAreNoItems) {
    TemporaryFolder const folder;
    std::string const image = AppleDoubleImage({{9, FinderInformation("TEXTttxt")}, {2, "resource fork"}});
    folder.Write("file");
    folder.Write("._file", image);
    folder.Write("._lonely", image);
    folder.Write("other");
    folder.Write("._other", "no such image");
    folder.Write("linked");
    folder.Link("._linked", "._file");
    folder.Write("._");
    folder.MakeFolder("inner");
    folder.Write("._inner", image);
    folder.MakeFolder(".AppleDouble");
    folder.Write(".AppleDouble/other", image);
    Iterator iterator(folder.Path());
    auto children = iterator.ReadAll();
    Names names;
    for (auto const& [name, child] : children) names.insert(name);
    EXPECT_EQ((Names{"file", "._lonely", "other", "._other", "linked", "._linked", "._", "inner"}), names);
    EXPECT_EQ(13u, +children["file"].info.rsrcLogicalSize);
    EXPECT_EQ(13u, +children["other"].info.rsrcLogicalSize);
    EXPECT_EQ(0u, +children["linked"].info.rsrcLogicalSize);
    FolderInfo window;
    std::memcpy(&window, children["inner"].info.finderInfo, sizeof window);
    EXPECT_EQ(0x5445, window.windowBounds.top);
}

TEST(IteratorsAndCompanions, FileOfThatNameIsAnItem) {
    TemporaryFolder const folder;
    folder.Write(".AppleDouble");
    Iterator iterator(folder.Path());
    EXPECT_EQ(Names{".AppleDouble"}, iterator.ReadNames());
}

// A listing of the folder that holds it does not show it.
TEST(IteratorsAndCompanions, FoldersOwnIsFoundWithinIt) {
    TemporaryFolder const folder;
    folder.MakeFolder("inner/.AppleDouble");
    folder.Write("inner/file");
    folder.Write("inner/.AppleDouble/.Parent",
                 AppleDoubleImage({{9, FinderInformation("\1\2\3\4\5\6\7\x8", 0x4000)}}));
    Iterator iterator(folder.Path());
    auto const children = iterator.Read(10);
    ASSERT_EQ(1u, children.size());
    EXPECT_EQ(kIsInvisible, FinderInfoOf(children[0].info).finderFlags);
}

// Thousands of entries are more than are read at one time: the companion of the first may stand behind them.
TEST(IteratorsAndCompanions, AreFoundHoweverFarBehindTheyAre) {
    TemporaryFolder const folder;
    Names const names = MakeFiles(folder, 3000);
    std::string const image = AppleDoubleImage({{2, "resource fork"}});
    for (std::string const name : {"file 0", "file 1500", "file 2999"}) folder.Write("._" + name, image);
    Iterator iterator(folder.Path());
    auto children = iterator.ReadAll(64);
    EXPECT_EQ(names.size(), children.size());
    for (auto const& [name, child] : children) {
        bool const hasFork = name == "file 0" || name == "file 1500" || name == "file 2999";
        EXPECT_EQ(hasFork ? 13u : 0u, +child.info.rsrcLogicalSize) << name;
    }
}

// ---- Changes meanwhile

TEST(ChangingFolders, WhatHasGoneBeforeItWasLookedAtIsLeftOut) {
    TemporaryFolder const folder;
    MakeFiles(folder, 100);
    Iterator iterator(folder.Path());
    auto const first = iterator.Read(10);
    EXPECT_FALSE(iterator.hasChanged);
    ASSERT_EQ(10u, first.size());
    for (auto const& entry : std::filesystem::directory_iterator(folder.Path())) remove(entry.path());
    EXPECT_TRUE(iterator.Read(10).empty());
    EXPECT_EQ(errFSNoMoreItems, iterator.result);
    EXPECT_TRUE(iterator.hasChanged);
}

TEST(ChangingFolders, FolderThatWasRemovedIsNotThereAnyMore) {
    TemporaryFolder const folder;
    std::string const inner = folder.MakeFolder("inner");
    folder.Write("inner/file");
    Iterator iterator(inner);
    std::filesystem::remove_all(inner);
    EXPECT_TRUE(iterator.Read(10).empty());
    EXPECT_EQ(fnfErr, iterator.result);
}

TEST(ChangingFolders, MovedFolderIsReadOn) {
    TemporaryFolder const folder;
    std::string const inner = folder.MakeFolder("inner");
    for (int i = 0; i < 50; ++i) folder.Write("inner/" + std::to_string(i));
    Iterator iterator(inner);
    std::size_t const first = iterator.Read(10).size();
    std::filesystem::rename(inner, folder.Path("moved"));
    EXPECT_EQ(50u, first + iterator.ReadAll().size());
}

// ---- Stopping

TEST(Iterators, StopWhenTheCheckInFunctionSaysSoAndGoOnLater) {
    TemporaryFolder const folder;
    MakeFiles(folder, 20);
    static int allowed = 0;
    allowed = 5;
    Iterator iterator(folder.Path());
    PlatformSetCheckIn([](UInt32 items) -> Boolean { return (allowed -= static_cast<int>(items)) >= 0; });
    std::size_t const first = iterator.Read(10).size();
    EXPECT_EQ(noErr, iterator.result);
    EXPECT_EQ(5u, first);
    EXPECT_TRUE(iterator.Read(10).empty());
    EXPECT_EQ(userCanceledErr, iterator.result);
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ(15u, iterator.ReadAll().size());
}

// ---- Many at one time

namespace {

// Lets the process open no more than so many files for a while.
class FewDescriptors {
  public:
    explicit FewDescriptors(rlim_t most) {
        getrlimit(RLIMIT_NOFILE, &before);
        rlimit const limit{most, before.rlim_max};
        EXPECT_EQ(0, setrlimit(RLIMIT_NOFILE, &limit));
    }
    FewDescriptors(FewDescriptors const&) = delete;
    FewDescriptors& operator=(FewDescriptors const&) = delete;
    ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &before); }

  private:
    rlimit before;
};

int OpenDescriptors() {
    int count = 0;
    for ([[maybe_unused]] auto const& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
    return count;
}

}  // namespace

// Folders large enough that their entries are not all read at one time.
TEST(ManyIterators, FewFoldersAreOpenAndAllAreReadOn) {
    TemporaryFolder const folder;
    constexpr int many = 50;
    constexpr std::size_t files = 1500;
    for (int i = 0; i < many; ++i) {
        std::string const name = std::to_string(i);
        folder.MakeFolder(name);
        std::string const first = folder.Write(name + "/0 with a name that takes some room");
        for (std::size_t j = 1; j < files; ++j)
            ASSERT_EQ(0,
                      link(first.c_str(),
                           folder.Path(name + "/" + std::to_string(j) + " with a name that takes some room")
                               .c_str()));
    }
    CatalogOf("/");  // opens what watches the mounts
    int const before = OpenDescriptors();
    FewDescriptors const limit(64);
    std::vector<std::unique_ptr<Iterator>> iterators;
    std::vector<Names> found(many);
    for (int i = 0; i < many; ++i)
        iterators.push_back(std::make_unique<Iterator>(folder.Path(std::to_string(i))));
    for (bool more = true; more;) {
        more = false;
        for (std::size_t i = 0; i < many; ++i) {
            for (Child const& child : iterators[i]->Read(400))
                EXPECT_TRUE(found[i].insert(child.name).second);
            more |= iterators[i]->result == noErr;
        }
        EXPECT_LE(OpenDescriptors(), before + 33);
    }
    for (std::size_t i = 0; i < many; ++i) EXPECT_EQ(files, found[i].size()) << i;
    iterators.clear();
    EXPECT_EQ(before, OpenDescriptors());
}

TEST(ManyIterators, FolderThatWasReplacedMeanwhileIsNotTakenForTheOld) {
    TemporaryFolder const folder;
    std::string const inner = folder.MakeFolder("inner");
    for (int i = 0; i < 10; ++i) folder.Write("inner/" + std::to_string(i));
    Iterator iterator(inner);
    EXPECT_EQ(5u, iterator.Read(5).size());
    std::filesystem::rename(inner, folder.Path("moved"));
    folder.MakeFolder("inner");
    folder.Write("inner/another");
    std::vector<std::unique_ptr<Iterator>> others;
    for (int i = 0; i < 40; ++i) others.push_back(std::make_unique<Iterator>(folder.Path()));
    EXPECT_TRUE(iterator.Read(10).empty());
    EXPECT_EQ(fnfErr, iterator.result);
}

// Where the way back to a folder is long, the one below it that is left shows it.
TEST(ManyIterators, FolderThatWasClosedIsOpenedAgainFromTheOneBelow) {
    TemporaryFolder const folder;
    std::string const outer = folder.MakeFolder("outer");
    folder.MakeFolder("outer/inner");
    for (int i = 0; i < 20; ++i) folder.Write("outer/" + std::to_string(i));
    Iterator above(outer);
    Names names;
    FSRef inner{};
    auto const take = [&](std::vector<Child> const& children) {
        for (Child const& child : children) {
            EXPECT_TRUE(names.insert(child.name).second);
            if (child.name == "inner") inner = child.reference;
        }
    };
    take(above.Read(1));
    for (FSRef const none{}; std::memcmp(&inner, &none, sizeof inner) == 0;) take(above.Read(1));
    Owned<CFURLRef> const url(CFURLCreateFromFSRef(kCFAllocatorDefault, &inner));
    FSIterator below;
    ASSERT_EQ(noErr, PlatformOpenIterator(url, &below));
    {
        std::vector<std::unique_ptr<Iterator>> others;
        for (int i = 0; i < 31; ++i) others.push_back(std::make_unique<Iterator>(folder.Path()));
    }
    std::filesystem::rename(outer, folder.Path("moved"));  // no path leads there any more
    EXPECT_EQ(noErr, FSCloseIterator(below));
    if (above.result == noErr) {
        do take(above.Read(5));
        while (above.result == noErr);
    }
    EXPECT_EQ(errFSNoMoreItems, above.result);
    EXPECT_EQ(21u, names.size());
}
