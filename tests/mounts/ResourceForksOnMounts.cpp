// Resource files on a mount whose server stops answering, when they are opened, read and closed.

#include "evaluator/Asking.h"
#include "mounts/MountedForks.h"
#include "platform/ResourceVerbs.h"

using namespace Mounts;
using namespace std::chrono_literals;

namespace {

class ResourceForksOnMounts : public MountedForkTest {
  protected:
    template <class Body>
    void ApartWithResources(Body const& body) {
        std::string const fork =
            BuildFork({{"vers", 1, std::string("\x01\x23\x60\x12", 4)}, {"STR ", 1, "text"}}).bytes;
        ApartWithAServer("data", AppleDoubleImage({{2, fork}}), body);
    }
    static OSErr TryToOpen(FSRef const& reference) {
        FSOpenResFile(&reference, fsRdPerm);
        return ResError();
    }
    SInt16 Open() const {
        EXPECT_EQ(noErr, TryToOpen(ReferenceTo(Path())));
        return CurResFile();
    }
    static Handle GetUnread(std::string const& type) {
        SetResLoad(false);
        Handle const resource = Get1Resource(Code(type), 1);
        SetResLoad(true);
        EXPECT_NE(nullptr, resource);
        return resource;
    }
    static OSErr CodeOfGetting(std::string const& type) {
        Handle const resource = Get1Resource(Code(type), 1);
        OSErr const error = ResError();
        EXPECT_EQ(error == noErr, resource != nullptr);
        return error;
    }
};

}  // namespace

TEST_F(ResourceForksOnMounts, AreReadLikeOthers) {
    ApartWithResources([&](StoppableServer const&) {
        SInt16 const file = Open();
        EXPECT_EQ("text", WholeOf(Get1Resource(Code("STR "), 1)));
        EXPECT_EQ((Got{noErr, "ex"}), ReadPart(GetUnread("STR "), 1, 2));
        CloseResFile(file);
        EXPECT_EQ(noErr, ResError());
    });
}

TEST_F(ResourceForksOnMounts, OpeningIsGivenUpWhenTheHostSaysStop) {
    ApartWithResources([&](StoppableServer const& server) {
        FSRef const reference = ReferenceTo(Path());
        std::ptrdiff_t const before = OpenFiles();
        server.Stop();
        EXPECT_EQ(GivenUp(), Stopped([&] { return TryToOpen(reference); }));
        EXPECT_EQ(0, CurResFile());
        EXPECT_EQ(volOffLinErr, TryToOpen(reference)) << "at once, as long as the call has not come back";
        EXPECT_EQ("-53 " + here.Path("net"), Unresponsive());
        server.GoOn();
        EXPECT_EQ(noErr, WhenItAnswers([&] { return TryToOpen(reference); }));
        EXPECT_EQ(1, CurResFile()) << "no number is spent";
        EXPECT_EQ(noErr, CodeOfGetting("vers"));
        CloseResFile(1);
        EXPECT_EQ(noErr, WhenItAnswers([&] {
                      return FSGetCatalogInfo(&reference, 0, nullptr, nullptr, nullptr, nullptr);
                  }));
        EXPECT_EQ(before, OpenFiles());
    });
}

TEST_F(ResourceForksOnMounts, ReadingIsGivenUpWhenTheHostSaysStop) {
    ApartWithResources([&](StoppableServer const& server) {
        SInt16 const file = Open();
        Handle const unread = GetUnread("vers");
        Handle const loaded = Get1Resource(Code("STR "), 1);
        server.Stop();
        EXPECT_EQ(GivenUp(), Stopped([&] { return ReadPart(unread, 0, 1).error; }));
        EXPECT_EQ((Got{volOffLinErr, ""}), ReadPart(unread, 0, 1)) << "at once";
        EXPECT_EQ(volOffLinErr, CodeOfGetting("vers"));
        EXPECT_EQ("text", std::string(*loaded, 4));
        EXPECT_EQ(loaded, Get1Resource(Code("STR "), 1)) << "what is in memory needs no server";
        EXPECT_EQ(4, GetMaxResourceSize(unread)) << "nor does what the map tells";
        server.GoOn();
        Got got;
        EXPECT_EQ(noErr, WhenItAnswers([&] { return (got = ReadPart(unread, 0, 4)).error; }));
        EXPECT_EQ("\x01\x23\x60\x12", got.bytes);
        EXPECT_EQ(noErr, CodeOfGetting("vers"));
        CloseResFile(file);
    });
}

TEST_F(ResourceForksOnMounts, LoadingIsGivenUpWhenTheHostSaysStop) {
    ApartWithResources([&](StoppableServer const& server) {
        SInt16 const file = Open();
        server.Stop();
        EXPECT_EQ(GivenUp(), Stopped([&] { return CodeOfGetting("vers"); }));
        server.GoOn();
        EXPECT_EQ(noErr, WhenItAnswers([&] { return CodeOfGetting("vers"); }));
        CloseResFile(file);
    });
}

TEST_F(ResourceForksOnMounts, ClosingComesBackSoonAndAsksNobody) {
    ApartWithResources([&](StoppableServer const& server) {
        SInt16 const file = Open();
        HoldClosing(server, [&] {
            CloseResFile(file);
            EXPECT_EQ(noErr, ResError());
            EXPECT_EQ(0, CurResFile());
        });
    });
}

TEST_F(ResourceForksOnMounts, ClosingAfterAReadThatWasGivenUpComesBackSoon) {
    ApartWithResources([&](StoppableServer const& server) {
        SInt16 const file = Open();
        Handle const unread = GetUnread("vers");
        server.Stop();
        EXPECT_EQ(GivenUp(), Stopped([&] { return ReadPart(unread, 0, 1).error; }));
        auto const begun = Clock::now();
        CloseResFile(file);
        EXPECT_GT(1s, Clock::now() - begun);
        server.GoOn();
    });
}

TEST_F(ResourceForksOnMounts, FailWhenTheServerIsGone) {
    Apart([&] {
        std::string const fork = BuildFork({{"vers", 1, "one"}}).bytes;
        auto server = std::make_unique<StoppableServer>(
            here.Path("net"), "data", StoppableServer::Closing::Told, AppleDoubleImage({{2, fork}}));
        SInt16 const file = Open();
        Handle const unread = GetUnread("vers");
        server.reset();
        EXPECT_EQ((Got{ioErr, ""}), ReadPart(unread, 0, 1));
        EXPECT_EQ(ioErr, CodeOfGetting("vers"));
        CloseResFile(file);
        EXPECT_EQ(noErr, ResError());
    });
}

// ---- Versions of files

TEST_F(ResourceForksOnMounts, HoldVersionsLikeOthers) {
    ApartWithResources([&](StoppableServer const&) {
        EXPECT_TRUE(Evaluator::LoadInspectors(Evaluator::StandardInspectorsFolder()).empty());
        EXPECT_EQ("1.2.3b18", Answer("version of file \"" + Path() + "\""));
    });
}

// The consumer stops the server when it gets the first version.
TEST_F(ResourceForksOnMounts, EndAQueryForVersionsAtItsTimeLimit) {
    ApartWithResources([&](StoppableServer const& server) {
        EXPECT_TRUE(Evaluator::LoadInspectors(Evaluator::StandardInspectorsFolder()).empty());
        std::string const object = "file \"" + Path() + "\"";
        auto const compiled = Evaluator::Query::Compile("versions of (" + object + "; " + object + ")");
        ASSERT_TRUE(compiled.query);
        Evaluator::RunOptions options;
        options.limits.time = 300ms;
        int values = 0;
        auto const stopAtFirst = [&](Evaluator::Result const&) {
            if (++values == 1) server.Stop();
            return true;
        };
        auto const begun = Clock::now();
        auto const problem = compiled.query->Run(stopAtFirst, options);
        EXPECT_GT(10s, Clock::now() - begun);
        EXPECT_EQ(1, values);
        ASSERT_TRUE(problem);
        EXPECT_EQ("the time limit of 0.3 s was reached", problem->message);
        EXPECT_EQ("the file system mounted at \"" + here.Path("net") + "\" does not answer", problem->hint);
        EXPECT_EQ(0, CurResFile());
    });
}
