// How resource files are opened and closed, and which one is current.

#include <malloc.h>
#include <sys/resource.h>

#include <set>

#include "platform/ResourceVerbs.h"

namespace {

class ResourceFiles : public ResourceTest {};

std::string LastFailure() {
    char path[4096];
    OSErr const code = PlatformFileFailure(path, sizeof path);
    return std::to_string(code) + " " + path;
}

// What is asked of a number that belongs to no open file.
void ExpectNoFile(SInt16 number) {
    SInt16 const before = CurResFile();
    UseResFile(number);
    EXPECT_EQ(resFNotFound, ResError()) << number;
    EXPECT_EQ(before, CurResFile()) << number;
    CloseResFile(number);
    EXPECT_EQ(resFNotFound, ResError()) << number;
    EXPECT_EQ(before, CurResFile()) << number;
}

}  // namespace

// ---- Opening

TEST_F(ResourceFiles, NoneIsOpenAtFirst) {
    EXPECT_EQ(0, CurResFile());
    EXPECT_EQ(noErr, ResError());
    EXPECT_EQ(nullptr, Get1Resource(Code("vers"), 1));
    EXPECT_EQ(resFNotFound, ResError());
}

TEST_F(ResourceFiles, AreCurrentWhenTheyAreOpened) {
    SInt16 const first = OpenNew("first", "one");
    EXPECT_EQ(first, CurResFile());
    SInt16 const second = OpenNew("second", "two");
    EXPECT_EQ(second, CurResFile());
    EXPECT_NE(first, second);
    EXPECT_EQ("two", Resource("vers", 1));
}

TEST_F(ResourceFiles, ThatAreOpenHaveTheSameNumberAgain) {
    SInt16 const first = OpenNew("first", "one");
    SInt16 const second = OpenNew("second", "two");
    EXPECT_EQ(first, Open(here.Path("first")));
    EXPECT_EQ(first, CurResFile());
    EXPECT_EQ(second, Open(here.Link("link", "second")));
    CloseResFile(second);
    EXPECT_EQ(noErr, ResError());
    ExpectNoFile(second);
}

TEST_F(ResourceFiles, AreOpenedToBeReadOnly) {
    FSRef const reference = ReferenceTo(Write("file", {}));
    EXPECT_EQ(noErr, TryToOpen(reference, fsCurPerm));
    EXPECT_EQ(noErr, TryToOpen(reference, fsRdPerm));
    for (SInt8 const permission : {fsWrPerm, fsRdWrPerm, fsRdWrShPerm})
        EXPECT_EQ(permErr, TryToOpen(reference, permission)) << +permission;
    for (int const permission : {-128, -1, 5, 127})
        EXPECT_EQ(paramErr, TryToOpen(reference, static_cast<SInt8>(permission))) << permission;
}

TEST_F(ResourceFiles, NeedAReference) {
    EXPECT_EQ(-1, FSOpenResFile(nullptr, fsRdPerm));
    EXPECT_EQ(paramErr, ResError());
    EXPECT_EQ(errFSBadFSRef, TryToOpen(FSRef{}));
    FSRef forged;
    std::memset(&forged, 0x5A, sizeof forged);
    EXPECT_EQ(errFSBadFSRef, TryToOpen(forged));
}

TEST_F(ResourceFiles, ThatAreGone) {
    FSRef const reference = ReferenceTo(Write("file", {}));
    std::filesystem::remove(here.Path("file"));
    EXPECT_EQ(fnfErr, TryToOpen(reference)) << "with its companion still there";
    here.MakeFolder("folder");
    FSRef const inside = ReferenceTo(here.Write("folder/file"));
    std::filesystem::remove_all(here.Path("folder"));
    EXPECT_EQ(fnfErr, TryToOpen(inside));
}

TEST_F(ResourceFiles, ThatAnotherHasReplaced) {
    FSRef const reference = ReferenceTo(Write("file", {}));
    std::filesystem::rename(here.Write("other"), here.Path("file"));
    EXPECT_EQ(fnfErr, TryToOpen(reference));
}

TEST_F(ResourceFiles, WithoutAMapThatMakesSense) {
    std::string const sound = BuildFork({{"vers", 1, "one"}}).bytes;
    for (std::size_t const size : {std::size_t{1}, std::size_t{15}, std::size_t{16}, sound.size() - 1}) {
        EXPECT_EQ(mapReadErr, TryToOpen(WriteFork("cut", sound.substr(0, size)))) << size;
        EXPECT_EQ("-199 " + here.Path("cut"), LastFailure()) << size;
    }
    EXPECT_EQ(mapReadErr, TryToOpen(WriteFork("text", "There is nothing like a header in this text.")));
    EXPECT_EQ(noErr, TryToOpen(Write("empty", {})));
}

TEST_F(ResourceFiles, ThatCannotBeOpenedAreTold) {
    EXPECT_EQ(notAFileErr, TryToOpen(here.MakeFolder("folder")));
    EXPECT_EQ("-1302 " + here.Path("folder"), LastFailure());
}

TEST_F(ResourceFiles, AreNotOpenedWhenTheHostSaysStop) {
    FSRef const reference = ReferenceTo(Write("file", {}));
    std::ptrdiff_t const before = OpenFiles();
    PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
    EXPECT_EQ(userCanceledErr, TryToOpen(reference));
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(ResourceFiles, AreAsBeforeWhenAnotherCannotBeOpened) {
    SInt16 const first = OpenNew("first", "one");
    SInt16 const second = OpenNew("second", "two");
    UseResFile(first);
    Handle const resource = Get1Resource(Code("vers"), 1);
    for (std::string const& path : {here.Write("none"), here.MakeFolder("folder"), WriteFork("cut", "cut"),
                                    here.Link("dangling", "missing")})
        EXPECT_NE(noErr, TryToOpen(path));
    EXPECT_EQ("one", Resource("vers", 1));
    EXPECT_EQ("one", WholeOf(resource));
    EXPECT_EQ(second + 1, OpenNew("third", "three")) << "no number is spent";
    CloseResFile(CurResFile());
    EXPECT_EQ(second, CurResFile());
}

// ---- Which one is current

TEST_F(ResourceFiles, AreUsedByTheirNumbers) {
    SInt16 const first = OpenNew("first", "one");
    SInt16 const second = OpenNew("second", "two");
    UseResFile(first);
    EXPECT_EQ(noErr, ResError());
    EXPECT_EQ(first, CurResFile());
    EXPECT_EQ("one", Resource("vers", 1));
    UseResFile(second);
    EXPECT_EQ("two", Resource("vers", 1));
    UseResFile(0);
    EXPECT_EQ(noErr, ResError());
    EXPECT_EQ(0, CurResFile());
    EXPECT_EQ("error -193", Resource("vers", 1));
}

TEST_F(ResourceFiles, NumbersOfNoneAreRefused) {
    SInt16 const open = OpenNew("open", "one");
    SInt16 const closed = OpenNew("closed", "two");
    CloseResFile(closed);
    for (int const number : {+closed, open + 2, -1, -open, -32768, 32767})
        ExpectNoFile(static_cast<SInt16>(number));
    CloseResFile(0);
    EXPECT_EQ(resFNotFound, ResError());
    EXPECT_EQ(open, CurResFile());
}

TEST_F(ResourceFiles, OneThatWasOpenedBeforeIsCurrentWhenTheCurrentIsClosed) {
    SInt16 const first = OpenNew("first", "one");
    SInt16 const second = OpenNew("second", "two");
    SInt16 const third = OpenNew("third", "three");
    UseResFile(second);
    CloseResFile(second);
    EXPECT_EQ(noErr, ResError());
    EXPECT_EQ(first, CurResFile());
    CloseResFile(first);
    EXPECT_EQ(0, CurResFile()) << "there was none before";
    UseResFile(third);
    EXPECT_EQ("three", Resource("vers", 1)) << "it is open all the same";
}

TEST_F(ResourceFiles, CurrentStaysWhenAnotherIsClosed) {
    SInt16 const first = OpenNew("first", "one");
    SInt16 const second = OpenNew("second", "two");
    SInt16 const third = OpenNew("third", "three");
    UseResFile(second);
    CloseResFile(third);
    EXPECT_EQ(second, CurResFile());
    CloseResFile(first);
    EXPECT_EQ(second, CurResFile());
    EXPECT_EQ("two", Resource("vers", 1));
}

TEST_F(ResourceFiles, NoneStaysCurrentWhenOneIsClosed) {
    OpenNew("first", "one");
    SInt16 const second = OpenNew("second", "two");
    UseResFile(0);
    CloseResFile(second);
    EXPECT_EQ(0, CurResFile());
}

TEST_F(ResourceFiles, OpeningAgainDoesNotChangeTheOrder) {
    SInt16 const first = OpenNew("first", "one");
    SInt16 const second = OpenNew("second", "two");
    EXPECT_EQ(first, Open(here.Path("first")));
    CloseResFile(first);
    EXPECT_EQ(0, CurResFile());
    UseResFile(second);
    EXPECT_EQ("two", Resource("vers", 1));
}

// ---- Results

TEST_F(ResourceFiles, EveryCallHasItsResult) {
    SInt16 const number = OpenNew("file", "one");
    auto const fails = [] {
        UseResFile(4711);
        return ResError() == resFNotFound;
    };
    ASSERT_TRUE(fails());
    EXPECT_EQ(resFNotFound, ResError()) << "asking does not change it";
    CurResFile();
    EXPECT_EQ(noErr, ResError());
    ASSERT_TRUE(fails());
    SetResLoad(true);
    EXPECT_EQ(noErr, ResError());
    ASSERT_TRUE(fails());
    UseResFile(number);
    EXPECT_EQ(noErr, ResError());
    ASSERT_TRUE(fails());
    Handle const resource = Get1Resource(Code("vers"), 1);
    EXPECT_EQ(noErr, ResError());
    ASSERT_TRUE(fails());
    GetMaxResourceSize(resource);
    EXPECT_EQ(noErr, ResError());
    ASSERT_TRUE(fails());
    char byte = 0;
    ReadPartialResource(resource, 0, &byte, 1);
    EXPECT_EQ(noErr, ResError());
    ASSERT_TRUE(fails());
    Open(here.Path("file"));
    EXPECT_EQ(noErr, ResError());
    ASSERT_TRUE(fails());
    CloseResFile(number);
    EXPECT_EQ(noErr, ResError());
}

// ---- What they need

TEST_F(ResourceFiles, NumbersAreUsedAgain) {
    SInt16 const first = OpenNew("first", "one");
    SInt16 const second = OpenNew("second", "two");
    SInt16 const third = OpenNew("third", "three");
    EXPECT_EQ((std::set<SInt16>{1, 2, 3}), (std::set<SInt16>{first, second, third}));
    CloseResFile(second);
    CloseResFile(first);
    EXPECT_EQ(first, Open(here.Path("second"))) << "the least that is free";
    EXPECT_EQ(second, Open(here.Path("first")));
    EXPECT_EQ("one", Resource("vers", 1));
}

TEST_F(ResourceFiles, InCompanionsHaveAnOpenFileEach) {
    FSRef const reference = ReferenceTo(Write("file", {}));
    std::ptrdiff_t const before = OpenFiles();
    SInt16 const number = Open(reference);
    EXPECT_EQ(before + 1, OpenFiles());
    EXPECT_EQ(number, Open(reference));
    EXPECT_EQ(before + 1, OpenFiles()) << "one for both";
    CloseResFile(number);
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(ResourceFiles, InAttributesNeedNoOpenFile) {
    std::string const path = here.Write("file");
    here.SetAttribute("file", "user.com.apple.ResourceFork", BuildFork({{"vers", 1, "one"}}).bytes);
    std::ptrdiff_t const before = OpenFiles();
    Open(path);
    EXPECT_EQ(before, OpenFiles());
    std::filesystem::remove(path);
    EXPECT_EQ("one", Resource("vers", 1)) << "they were read when they were opened";
}

TEST_F(ResourceFiles, ThatCannotBeOpenedLeaveNothingOpen) {
    WriteFork("cut", "cut");
    WriteFork("empty", std::string{});
    here.Write("none");
    here.MakeFolder("folder");
    std::ptrdiff_t const before = OpenFiles();
    for (char const* name : {"cut", "empty", "none", "folder"}) EXPECT_NE(noErr, TryToOpen(here.Path(name)));
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(ResourceFiles, TakeNoMoreMemoryHoweverOftenTheyAreOpened) {
    FSRef const good = ReferenceTo(Write("good", {{"vers", 1, std::string(1000, 'x')}}));
    FSRef const bad = ReferenceTo(WriteFork("bad", "bad"));
    std::ptrdiff_t const files = OpenFiles();
    auto const open = [&](int times) {
        for (int i = 0; i < times; ++i) {
            SInt16 const number = FSOpenResFile(&good, fsRdPerm);
            if (Get1Resource(Code("vers"), 1) == nullptr) ADD_FAILURE() << ResError();
            if (FSOpenResFile(&bad, fsRdPerm) != -1) ADD_FAILURE() << "opened";
            CloseResFile(number);
        }
    };
    open(100);
    std::size_t const before = mallinfo2().uordblks;
    open(10'000);
    EXPECT_GE(before + 4096, mallinfo2().uordblks);
    EXPECT_EQ(files, OpenFiles());
}

#ifndef ZELQ_ADDRESS_SANITIZER  // with which it takes minutes
// Those in attributes need no open file.
TEST_F(ResourceFiles, AreTooManyBeyond32767) {
    constexpr int most = 32767;
    std::string const fork = BuildFork({}).bytes;
    auto const write = [&](int i) {
        std::string const name = std::to_string(i);
        std::string path = here.Write(name);
        here.SetAttribute(name, "user.com.apple.ResourceFork", fork);
        return path;
    };
    for (int i = 1; i <= most; ++i) {
        FSRef const reference = ReferenceTo(write(i));
        ASSERT_EQ(i, FSOpenResFile(&reference, fsRdPerm)) << ResError();
    }
    EXPECT_EQ(tmfoErr, TryToOpen(write(0)));
    EXPECT_EQ(most, CurResFile());
    CloseResFile(4711);
    EXPECT_EQ(4711, Open(here.Path("0"))) << "the only one that is free";
    for (int i = most; i > 0; --i) CloseResFile(static_cast<SInt16>(i));
}
#endif
