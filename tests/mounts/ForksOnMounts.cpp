// Forks of a file on a mount whose server stops answering, when they are opened, read and closed.

#include "evaluator/Asking.h"
#include "mounts/MountedForks.h"

using namespace Mounts;
using namespace std::chrono_literals;

namespace {

class ForksOnMounts : public MountedForkTest {};

// Bytes of which no two pieces are alike.
std::string Numbers(std::size_t size) {
    std::string bytes;
    for (std::size_t i = 0; bytes.size() < size; ++i) bytes += std::to_string(i) + "\n";
    return bytes.substr(0, size);
}

}  // namespace

TEST_F(ForksOnMounts, AreReadLikeOthers) {
    std::string const bytes = Numbers((3 << 20) + 77);
    ApartWithAServer(bytes, [&](StoppableServer const&) {
        SInt16 const fork = Open(Path());
        EXPECT_EQ(static_cast<SInt64>(bytes.size()), SizeOf(fork));
        EXPECT_EQ((Got{noErr, bytes.substr(0, 10)}), ReadAtMark(fork, 10));
        EXPECT_EQ((Got{noErr, bytes.substr(10, 10)}), ReadAtMark(fork, 10));
        EXPECT_TRUE((Got{noErr, bytes}) == ReadFrom(0, fork, bytes.size())) << "in pieces";
        EXPECT_EQ((Got{eofErr, ""}), ReadAtMark(fork, 1));
        EXPECT_TRUE((Got{eofErr, bytes.substr(1 << 20)}) == ReadFrom(1 << 20, fork, 4 << 20));
        EXPECT_EQ((Got{eofErr, bytes.substr(bytes.size() - 1)}), Read(fork, fsFromLEOF, -1, 2));
        EXPECT_EQ(noErr, FSCloseFork(fork));
    });
}

TEST_F(ForksOnMounts, OpeningIsGivenUpWhenTheHostSaysStop) {
    ApartWithAServer("text", [&](StoppableServer const& server) {
        FSRef const reference = ReferenceTo(Path());
        server.Stop();
        EXPECT_EQ(GivenUp(), Stopped([&] { return TryToOpen(reference); }));
        EXPECT_EQ(volOffLinErr, TryToOpen(reference)) << "at once, as long as the call has not come back";
        EXPECT_EQ("-53 " + here.Path("net"), Unresponsive());
        server.GoOn();
        EXPECT_EQ(noErr, WhenItAnswers([&] { return TryToOpen(reference); }));
    });
}

TEST_F(ForksOnMounts, OpeningByALinkThatStandsForItselfIsGivenUpToo) {
    ApartWithAServer("text", [&](StoppableServer const& server) {
        FSRef link;
        std::string const path = here.Link("link", "net/file");
        ASSERT_EQ(noErr, FSPathMakeRefWithOptions(Bytes(path.c_str()), kFSPathMakeRefDoNotFollowLeafSymlink,
                                                  &link, nullptr));
        server.Stop();
        EXPECT_EQ(GivenUp(), Stopped([&] { return TryToOpen(link); }));
        server.GoOn();
        EXPECT_EQ(noErr, WhenItAnswers([&] { return TryToOpen(link); }));
    });
}

TEST_F(ForksOnMounts, OpeningThatWasGivenUpLeavesNothingOpen) {
    ApartWithAServer("text", [&](StoppableServer const& server) {
        FSRef const reference = ReferenceTo(Path());
        std::ptrdiff_t const before = OpenFiles();
        server.Stop();
        EXPECT_EQ(GivenUp(), Stopped([&] { return TryToOpen(reference); }));
        server.GoOn();
        EXPECT_EQ(noErr, WhenItAnswers([&] {
                      return FSGetCatalogInfo(&reference, 0, nullptr, nullptr, nullptr, nullptr);
                  }));
        EXPECT_EQ(before, OpenFiles());
    });
}

TEST_F(ForksOnMounts, ReadIsGivenUpWhenTheHostSaysStop) {
    ApartWithAServer("abcdef", [&](StoppableServer const& server) {
        SInt16 const fork = Open(Path());
        EXPECT_EQ((Got{noErr, "ab"}), ReadAtMark(fork, 2));
        server.Stop();
        EXPECT_EQ(GivenUp(), Stopped([&] {
                      Got const got = ReadAtMark(fork, 2);
                      EXPECT_EQ("", got.bytes);
                      return got.error;
                  }));
        SInt64 size = 0;
        EXPECT_EQ((Got{volOffLinErr, ""}), ReadAtMark(fork, 2)) << "at once";
        EXPECT_EQ(volOffLinErr, FSGetForkSize(fork, &size));
        EXPECT_EQ(volOffLinErr, FSSetForkPosition(fork, fsFromLEOF, 0));
        server.GoOn();
        Got got;
        EXPECT_EQ(noErr, WhenItAnswers([&] { return (got = ReadAtMark(fork, 2)).error; }));
        EXPECT_EQ("cd", got.bytes) << "the mark has not moved";
    });
}

TEST_F(ForksOnMounts, SizeIsGivenUpWhenTheHostSaysStop) {
    ApartWithAServer("abcdef", [&](StoppableServer const& server) {
        SInt16 const fork = Open(Path());
        server.Stop();
        SInt64 size = -7;
        EXPECT_EQ(GivenUp(), Stopped([&] { return FSGetForkSize(fork, &size); }));
        EXPECT_EQ(-7, size);
        server.GoOn();
    });
}

TEST_F(ForksOnMounts, ClosingComesBackSoonAndAsksNobody) {
    ApartWithAServer("abcdef", [&](StoppableServer const& server) {
        SInt16 const fork = Open(Path());
        HoldClosing(server, [&] {
            EXPECT_EQ(noErr, FSCloseFork(fork));
            EXPECT_EQ(rfNumErr, FSCloseFork(fork)) << "the number is free";
        });
    });
}

TEST_F(ForksOnMounts, ClosingAfterAReadThatWasGivenUpComesBackSoon) {
    ApartWithAServer("abcdef", [&](StoppableServer const& server) {
        SInt16 const fork = Open(Path());
        server.Stop();
        EXPECT_EQ(GivenUp(), Stopped([&] { return ReadAtMark(fork, 2).error; }));
        auto const begun = Clock::now();
        EXPECT_EQ(noErr, FSCloseFork(fork));
        EXPECT_GT(1s, Clock::now() - begun);
    });
}

// Nobody is left who could wait for it: the file stays open.
TEST_F(ForksOnMounts, ClosingAfterAnotherCallThatWasGivenUpComesBackSoon) {
    ApartWithAServer("abcdef", [&](StoppableServer const& server) {
        SInt16 const fork = Open(Path());
        FSRef const reference = ReferenceTo(Path());
        std::ptrdiff_t const before = OpenFiles();
        server.Stop();
        EXPECT_EQ(GivenUp(), Stopped([&] {
                      return FSGetCatalogInfo(&reference, kFSCatInfoDataSizes, nullptr, nullptr, nullptr,
                                              nullptr);
                  }));
        auto const begun = Clock::now();
        EXPECT_EQ(noErr, FSCloseFork(fork));
        EXPECT_GT(1s, Clock::now() - begun);
        EXPECT_EQ(rfNumErr, FSCloseFork(fork));
        EXPECT_EQ(before, OpenFiles());
        server.GoOn();
    });
}

TEST_F(ForksOnMounts, FailWhenTheServerIsGone) {
    Apart([&] {
        auto server = std::make_unique<StoppableServer>(here.Path("net"), "abcdef");
        SInt16 const fork = Open(Path());
        server.reset();
        Got const got = ReadAtMark(fork, 2);
        EXPECT_EQ((Got{ioErr, ""}), got);
        char path[4096];
        EXPECT_EQ(ioErr, PlatformFileFailure(path, sizeof path));
        EXPECT_EQ(Path(), path);
        EXPECT_EQ(noErr, FSCloseFork(fork));
    });
}

// With a read that does not come back.
TEST_F(ForksOnMounts, DoNotKeepTheProcessFromEnding) {
    Apart([&] {
        StoppableServer const server(here.Path("net"), "abcdef", StoppableServer::Closing::Untold);
        EXPECT_TRUE(std::ifstream(Path()).is_open());
        int toParent[2], toChild[2];
        ASSERT_EQ(0, pipe(toParent));
        ASSERT_EQ(0, pipe(toChild));
        char byte = '!';
        pid_t const child = fork();
        if (child == 0) {
            SInt16 const fork = Open(Path());
            EXPECT_EQ(1, write(toParent[1], &byte, 1));
            EXPECT_EQ(1, read(toChild[0], &byte, 1)) << "no request is in the server's hands now";
            EXPECT_EQ(GivenUp(), Stopped([&] { return ReadAtMark(fork, 1).error; }));
            FSCloseFork(fork);
            int const status = testing::Test::HasFailure() ? 1 : 0;
#ifdef ZELQ_ADDRESS_SANITIZER
            // A search for leaks would stop all threads first, and wait for the one that waits for the
            // server.
            _exit(status);
#endif
            std::exit(status);
        }
        EXPECT_EQ(1, read(toParent[0], &byte, 1));
        server.Stop();
        EXPECT_EQ(1, write(toChild[1], &byte, 1));
        int status = -1;
        auto const deadline = Clock::now() + 10s;
        while (waitpid(child, &status, WNOHANG) == 0 && Clock::now() < deadline)
            std::this_thread::sleep_for(10ms);
        EXPECT_EQ(0, status);
        kill(child, SIGKILL);
    });
}

// The consumer stops the server when it gets the first line; those of the first buffer are there already.
TEST_F(ForksOnMounts, EndALineByLineQueryAtItsTimeLimit) {
    ApartWithAServer(Numbers(100'000), [&](StoppableServer const& server) {
        EXPECT_TRUE(Evaluator::LoadInspectors(Evaluator::StandardInspectorsFolder()).empty());
        std::string const query = "lines of file \"" + Path() + "\"";
        auto const compiled = Evaluator::Query::Compile(query);
        ASSERT_TRUE(compiled.query);
        Evaluator::RunOptions options;
        options.limits.time = 300ms;
        int values = 0;
        auto const stopAtFirst = [&](Evaluator::Result const&) {
            if (++values == 1) server.Stop();
            return true;
        };
        auto const problem = compiled.query->Run(stopAtFirst, options);
        EXPECT_LT(1, values);
        ASSERT_TRUE(problem);
        EXPECT_EQ("the time limit of 0.3 s was reached", problem->message);
        EXPECT_EQ("the file system mounted at \"" + here.Path("net") + "\" does not answer", problem->hint);
    });
}
