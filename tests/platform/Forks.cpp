// How forks are opened and closed.

#include <sys/resource.h>
#include <sys/stat.h>

#include <set>

#include "platform/ForkVerbs.h"
#include "support/Unprivileged.h"

namespace {

class Forks : public ForkTest {};

OSErr OpenNamed(FSRef const& reference, std::u16string const& name) {
    SInt16 number = 0;
    return FSOpenFork(&reference, name.size(), reinterpret_cast<UniChar const*>(name.data()), fsRdPerm,
                      &number);
}

// While one lives, the process may open no more files than it has.
class NoMoreFiles {
  public:
    NoMoreFiles() {
        EXPECT_EQ(0, getrlimit(RLIMIT_NOFILE, &before));
        rlimit const none{0, before.rlim_max};
        EXPECT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));
    }
    ~NoMoreFiles() { EXPECT_EQ(0, setrlimit(RLIMIT_NOFILE, &before)); }

  private:
    rlimit before{};
};

}  // namespace

TEST_F(Forks, NameOfTheDataForkIsEmpty) {
    HFSUniStr255 name;
    name.length = 7;
    EXPECT_EQ(noErr, FSGetDataForkName(&name));
    EXPECT_EQ(0, name.length);
    EXPECT_EQ(paramErr, FSGetDataForkName(nullptr));
}

TEST_F(Forks, OfFilesAreReadUnderTheirNumbers) {
    SInt16 const first = Open(here.Write("first", "one"));
    SInt16 const second = Open(here.Write("second", "two"));
    EXPECT_LT(0, first);
    EXPECT_LT(0, second);
    EXPECT_NE(first, second);
    EXPECT_EQ("one", Whole(first));
    EXPECT_EQ("two", Whole(second));
}

TEST_F(Forks, OfOneFileHaveMarksOfTheirOwn) {
    SInt16 const first = OpenNew("abcdef");
    SInt16 const second = Open(here.Path("file"));
    EXPECT_EQ((Got{noErr, "abc"}), ReadAtMark(first, 3));
    EXPECT_EQ((Got{noErr, "ab"}), ReadAtMark(second, 2));
    EXPECT_EQ((Got{noErr, "def"}), ReadAtMark(first, 3));
}

TEST_F(Forks, NeedAReferenceAndRoomForTheirNumber) {
    FSRef const reference = ReferenceTo(here.Write("file"));
    SInt16 number = kNone;
    EXPECT_EQ(paramErr, FSOpenFork(nullptr, 0, nullptr, fsRdPerm, &number));
    EXPECT_EQ(paramErr, FSOpenFork(&reference, 0, nullptr, fsRdPerm, nullptr));
    EXPECT_EQ(kNone, number);
}

TEST_F(Forks, FoldersHaveNone) {
    EXPECT_EQ(notAFileErr, TryToOpen(here.MakeFolder("folder")));
    EXPECT_EQ(notAFileErr, TryToOpen("/"));
    EXPECT_EQ(notAFileErr, TryToOpen(here.Link("link", "folder")));
}

TEST_F(Forks, OfAFileThatIsGone) {
    FSRef const reference = ReferenceTo(here.Write("file"));
    std::filesystem::remove(here.Path("file"));
    EXPECT_EQ(fnfErr, TryToOpen(reference));
}

TEST_F(Forks, OfAFileWhoseFolderIsGone) {
    here.MakeFolder("folder");
    FSRef const reference = ReferenceTo(here.Write("folder/file"));
    std::filesystem::remove_all(here.Path("folder"));
    EXPECT_EQ(fnfErr, TryToOpen(reference));
}

TEST_F(Forks, OfAFileThatAnotherHasReplaced) {
    FSRef const reference = ReferenceTo(here.Write("file", "one"));
    std::filesystem::rename(here.Write("other", "two"), here.Path("file"));
    EXPECT_EQ(fnfErr, TryToOpen(reference));
    FSRef const anew = ReferenceTo(here.Path("file"));
    std::filesystem::rename(here.Path("file"), here.Path("kept"));  // and with it its inode number
    here.MakeFolder("file");
    EXPECT_EQ(fnfErr, TryToOpen(anew)) << "by a folder";
}

TEST_F(Forks, OfAFileThatMayNotBeRead) {
    std::string const path = here.Write("file", "secret");
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(path.c_str(), 0));
    Unprivileged const nobody;
    EXPECT_EQ(afpAccessDenied, TryToOpen(path));
}

TEST_F(Forks, OfAFileInAFolderThatMayNotBeEntered) {
    here.MakeFolder("folder");
    FSRef const reference = ReferenceTo(here.Write("folder/file", "secret"));
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(here.Path("folder").c_str(), 0));
    {
        Unprivileged const nobody;
        EXPECT_EQ(afpAccessDenied, TryToOpen(reference));
    }
    chmod(here.Path("folder").c_str(), 0755);
}

TEST_F(Forks, OfLinksAreThoseOfWhatTheyLeadTo) {
    here.Write("file", "text");
    here.Link("link", "file");
    EXPECT_EQ("text", Whole(Open(here.Link("to a link", "link"))));
}

TEST_F(Forks, OfLinksThatLeadNowhere) {
    EXPECT_EQ(fnfErr, TryToOpen(here.Link("dangling", "missing")));
    here.Link("ring", "gnir");
    EXPECT_EQ(fnfErr, TryToOpen(here.Link("gnir", "ring")));
    here.Write("file");
    EXPECT_EQ(dirNFErr, TryToOpen(here.Link("through a file", "file/x")));
}

TEST_F(Forks, OfALinkThatHasComeToLeadSomewhere) {
    FSRef const reference = ReferenceTo(here.Link("link", "file"));
    EXPECT_EQ(fnfErr, TryToOpen(reference));
    here.Write("file", "now");
    EXPECT_EQ(fnfErr, TryToOpen(reference)) << "the reference is to the link itself";
    EXPECT_EQ("now", Whole(Open(here.Path("link"))));
}

TEST_F(Forks, OfALinkThatLeadsElsewhereNow) {
    here.Write("a", "text of a");
    here.Write("b", "text of b");
    FSRef const reference = ReferenceTo(here.Link("link", "a"));
    std::filesystem::remove(here.Path("link"));
    here.Link("link", "b");
    EXPECT_EQ(fnfErr, TryToOpen(reference));
}

TEST_F(Forks, OfAReferenceThatWasNeverMade) {
    EXPECT_EQ(errFSBadFSRef, TryToOpen(FSRef{}));
    FSRef forged;
    std::memset(&forged, 0x5A, sizeof forged);
    EXPECT_EQ(errFSBadFSRef, TryToOpen(forged));
}

TEST_F(Forks, AreFoundByTheEmptyNameAlone) {
    FSRef const reference = ReferenceTo(here.Write("file"));
    EXPECT_EQ(errFSForkNotFound, OpenNamed(reference, u"RESOURCE_FORK"));
    EXPECT_EQ(errFSForkNotFound, OpenNamed(reference, u"x"));
    EXPECT_EQ(errFSForkNotFound, OpenNamed(reference, std::u16string(255, u'x')));
    EXPECT_EQ(errFSBadForkName, OpenNamed(reference, std::u16string(256, u'x')));
    SInt16 number = kNone;
    EXPECT_EQ(errFSBadForkName, FSOpenFork(&reference, 1, nullptr, fsRdPerm, &number));
    EXPECT_EQ(kNone, number);
}

TEST_F(Forks, AreOpenedToBeReadOnly) {
    std::string const path = here.Write("file");
    EXPECT_EQ(noErr, TryToOpen(path, fsCurPerm));
    EXPECT_EQ(noErr, TryToOpen(path, fsRdPerm));
    for (SInt8 const permission : {fsWrPerm, fsRdWrPerm, fsRdWrShPerm})
        EXPECT_EQ(permErr, TryToOpen(path, permission)) << +permission;
    for (int const permission : {-128, -1, 5, 127})
        EXPECT_EQ(paramErr, TryToOpen(path, static_cast<SInt8>(permission))) << permission;
}

#ifndef ZELQ_ADDRESS_SANITIZER  // which opens files itself, to look at objects
TEST_F(Forks, AreTooManyWhenTheProcessMayOpenNoMoreFiles) {
    FSRef const reference = ReferenceTo(here.Write("file", "text"));
    EXPECT_EQ("text", Whole(Open(reference)));
    OSErr error = noErr;
    SInt16 number = kNone;
    {
        NoMoreFiles const limit;
        error = FSOpenFork(&reference, 0, nullptr, fsRdPerm, &number);
    }
    EXPECT_EQ(tmfoErr, error);
    EXPECT_EQ(kNone, number);
    EXPECT_EQ("text", Whole(Open(reference)));
}
#endif

// Those of devices need no open file.
TEST_F(Forks, AreTooManyBeyond32767) {
    FSRef const device = ReferenceTo("/dev/null");
    std::ptrdiff_t const files = OpenFiles();
    OSErr error = noErr;
    std::set<SInt16> numbers;
    while (error == noErr) {
        SInt16 number = 0;
        error = FSOpenFork(&device, 0, nullptr, fsRdPerm, &number);
        if (error == noErr) numbers.insert(number);
    }
    EXPECT_EQ(tmfoErr, error);
    ASSERT_EQ(32767u, numbers.size()) << "each has another number";
    EXPECT_EQ(1, *numbers.begin());
    EXPECT_EQ(32767, *numbers.rbegin());
    std::string const path = here.Write("file", "text");
    EXPECT_EQ(tmfoErr, TryToOpen(path));
    EXPECT_EQ(files, OpenFiles()) << "the file for which there was no number is closed";
    EXPECT_EQ(noErr, FSCloseFork(4711));
    numbers.erase(4711);
    EXPECT_EQ(4711, Open(path)) << "the only one that is free";
    EXPECT_EQ("text", Whole(4711));
    for (SInt16 const number : numbers) EXPECT_EQ(noErr, FSCloseFork(number));
}

TEST_F(Forks, NumbersAreUsedAgain) {
    std::string const path = here.Write("file", "text");
    std::set<SInt16> numbers;
    for (int i = 0; i < 100; ++i) {
        SInt16 const number = Open(path);
        numbers.insert(number);
        EXPECT_EQ(noErr, FSCloseFork(number));
    }
    EXPECT_EQ(1u, numbers.size());
}

TEST_F(Forks, NumbersOfNoneAreRefused) {
    SInt16 const closed = OpenNew("text");
    ASSERT_EQ(noErr, FSCloseFork(closed));
    for (int const value : {+closed, 0, -1, -32768, 32767}) {
        auto const number = static_cast<SInt16>(value);
        SInt64 size = 0;
        EXPECT_EQ((Got{rfNumErr, ""}), ReadAtMark(number, 1)) << number;
        EXPECT_EQ(rfNumErr, FSSetForkPosition(number, fsFromStart, 0)) << number;
        EXPECT_EQ(rfNumErr, FSGetForkSize(number, &size)) << number;
        EXPECT_EQ(rfNumErr, FSCloseFork(number)) << number;
    }
}

TEST_F(Forks, CloseTheirFiles) {
    std::ptrdiff_t const before = OpenFiles();
    SInt16 const number = OpenNew("text");
    EXPECT_EQ(before + 1, OpenFiles());
    EXPECT_EQ(noErr, FSCloseFork(number));
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(Forks, ThatCannotBeOpenedLeaveNothingOpen) {
    std::ptrdiff_t const before = OpenFiles();
    EXPECT_NE(noErr, TryToOpen(here.MakeFolder("folder")));
    EXPECT_NE(noErr, TryToOpen(here.Link("dangling", "missing")));
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(Forks, AreNotOpenedWhenTheHostSaysStop) {
    FSRef const reference = ReferenceTo(here.Write("file"));
    PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
    EXPECT_EQ(userCanceledErr, TryToOpen(reference));
}
