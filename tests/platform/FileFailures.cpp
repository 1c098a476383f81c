// What is told of the last file that could not be looked up, opened or read.

#include <sys/stat.h>

#include <thread>

#include "platform/ForkVerbs.h"
#include "support/Unprivileged.h"

namespace {

std::string LastFailure() {
    char buffer[4096] = "?";
    OSErr const code = PlatformFileFailure(buffer, sizeof buffer);
    return std::to_string(code) + " " + buffer;
}

class FileFailures : public ForkTest {
  protected:
    FileFailures() {
        PlatformSetCheckIn(nullptr);
        EXPECT_EQ(0, chmod(here.Path().c_str(), 0755));
    }
    // Fails with the access denied; returns the path.
    std::string OpenForbidden(std::string const& name) {
        std::string const path = here.Write(name);
        EXPECT_EQ(0, chmod(path.c_str(), 0));
        Unprivileged const nobody;
        EXPECT_EQ(afpAccessDenied, TryToOpen(path));
        return path;
    }
};

}  // namespace

TEST_F(FileFailures, AreNoneAtFirst) { EXPECT_EQ("0 ", LastFailure()); }

TEST_F(FileFailures, HaveTheirCodeAndTheirFile) {
    std::string const path = OpenForbidden("first");
    EXPECT_EQ("-5000 " + path, LastFailure());
    EXPECT_EQ("-5000 " + path, LastFailure()) << "also when asked again";
    std::string const second = OpenForbidden("second");
    EXPECT_EQ("-5000 " + second, LastFailure());
    EXPECT_EQ(notAFileErr, TryToOpen(here.MakeFolder("folder")));
    EXPECT_EQ("-1302 " + here.Path("folder"), LastFailure());
}

TEST_F(FileFailures, OfAFileThatIsNotKnownHaveTheirCode) {
    EXPECT_EQ(errFSBadFSRef, TryToOpen(FSRef{}));
    EXPECT_EQ("-1401 ", LastFailure());
}

TEST_F(FileFailures, AreThoseOfLookUpsToo) {
    std::string const path = here.Path("missing");
    Owned<CFURLRef> const url(NewURL(path));
    FSRef reference;
    EXPECT_EQ(fnfErr, PlatformGetItem(url, kFSCatInfoNone, &reference, nullptr));
    EXPECT_EQ("-43 " + path, LastFailure());
}

TEST_F(FileFailures, AreForgotten) {
    OpenForbidden("file");
    PlatformForgetFileFailure();
    EXPECT_EQ("0 ", LastFailure());
}

TEST_F(FileFailures, StayUntilTheNext) {
    std::string const path = OpenForbidden("file");
    EXPECT_EQ("text", Whole(Open(here.Write("other", "text"))));
    EXPECT_EQ("-5000 " + path, LastFailure()) << "neither success nor the end of a fork is one";
}

TEST_F(FileFailures, AreNeitherTheEndNorAStop) {
    SInt16 const fork = OpenNew("text");
    FSRef const reference = ReferenceTo(here.Path("file"));
    EXPECT_EQ((Got{eofErr, "text"}), ReadAtMark(fork, 10));
    EXPECT_EQ("0 ", LastFailure());
    PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
    EXPECT_EQ((Got{userCanceledErr, ""}), ReadFrom(0, fork, 1));
    EXPECT_EQ("0 ", LastFailure());
    EXPECT_EQ(userCanceledErr, TryToOpen(reference));
    EXPECT_EQ("0 ", LastFailure());
}

TEST_F(FileFailures, AreForgottenWithTheNextCheckIn) {
    OpenForbidden("file");
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ("0 ", LastFailure());
}

TEST_F(FileFailures, AreCutToTheirBuffer) {
    OpenForbidden("file");
    char buffer[5] = "----";
    EXPECT_EQ(afpAccessDenied, PlatformFileFailure(buffer, sizeof buffer));
    EXPECT_EQ(here.Path().substr(0, 4), buffer);
    EXPECT_EQ(afpAccessDenied, PlatformFileFailure(nullptr, 0));
}

TEST_F(FileFailures, AreThoseOfTheThread) {
    OpenForbidden("file");
    std::thread([] { EXPECT_EQ("0 ", LastFailure()); }).join();
}
