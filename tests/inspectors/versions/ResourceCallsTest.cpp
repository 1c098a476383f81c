// What the version of a file asks of the Resource Manager, call by call. This program stands in for it, and
// answers with codes that real forks do not give.

#include <Carbon/MacErrors.h>
#include <Carbon/Resources.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "Evaluator/Exceptions.h"
#include "filesystem/Asking.h"
#include "versions/VersionResource.h"

namespace {

std::string calls;
SInt16 formerlyCurrent = 0;
OSErr opening = noErr, getting = noErr, reading = noErr;
OSErr lastError = noErr;
bool isFound = true;
SInt32 most = 4;
Ptr resource = nullptr;

void Note(std::string const& call, OSErr error = noErr) {
    calls += call + "\n";
    lastError = error;
}

}  // namespace

OSErr ResError() { return lastError; }
SInt16 CurResFile() {
    Note("current?");
    return formerlyCurrent;
}
void UseResFile(SInt16 refNum) { Note("use " + std::to_string(refNum)); }
void SetResLoad(Boolean load) {
    calls += load != 0 ? "load\n" : "do not load\n";  // and leaves the error alone
}
SInt16 FSOpenResFile(FSRef const*, SInt8 permission) {
    Note("open " + std::to_string(permission), opening);
    return opening == noErr ? 7 : -1;
}
void CloseResFile(SInt16 refNum) { Note("close " + std::to_string(refNum)); }
Handle Get1Resource(ResType theType, SInt16 theID) {
    Note((theType == 0x76657273 ? "get vers " : "get another ") + std::to_string(theID), getting);
    return isFound ? &resource : nullptr;
}
SInt32 GetMaxResourceSize(Handle theResource) {
    Note(theResource == &resource ? "size?" : "size of another?");
    return most;
}
void ReadPartialResource(Handle, SInt32 offset, void* buffer, SInt32 count) {
    Note("read " + std::to_string(count) + " at " + std::to_string(offset), reading);
    std::copy_n("\x10\x23\x60\x04", std::min<SInt32>(count, 4), static_cast<char*>(buffer));
}

namespace {

class ResourceCalls : public FileSystem {
  protected:
    ResourceCalls() {
        calls.clear();
        opening = getting = reading = lastError = noErr;
        isFound = true;
        most = 4;
        formerlyCurrent = 3;
        here.Write("file", "");
    }
    // The text of a version of the file, or what is thrown.
    std::string Version(long long number = 1) {
        try {
            return VersionToString(versionRes_of_file(number, {}, FileAt(here.Path("file"))));
        } catch (NoSuchObject const&) {
            return "none";
        } catch (OSError const& error) {
            return "error " + std::to_string(error.Code());
        }
    }

    std::string const opened = "current?\ndo not load\nopen 1\nload\n";
    std::string const got = opened + "do not load\nget vers 1\nload\n";
    std::string const closed = "close 7\nuse 3\n";
};

}  // namespace

TEST_F(ResourceCalls, ReadFourBytesOfAResourceThatIsNotLoaded) {
    EXPECT_EQ("10.2.3b4", Version());
    EXPECT_EQ(got + "size?\nread 4 at 0\n" + closed, calls);
}

TEST_F(ResourceCalls, AskForTheNumber) {
    Version(-5);
    EXPECT_NE(std::string::npos, calls.find("get vers -5\n"));
}

TEST_F(ResourceCalls, AskNothingForANumberThatNoneHas) {
    EXPECT_EQ("none", Version(32768));
    EXPECT_EQ("none", Version(-32769));
    EXPECT_EQ("", calls);
}

TEST_F(ResourceCalls, EndWithAFailureToOpen) {
    for (OSErr const code : {eofErr, fnfErr, permErr, mapReadErr, tmfoErr}) {
        calls.clear();
        opening = code;
        EXPECT_EQ("none", Version()) << code;
        EXPECT_EQ(opened, calls) << code;
    }
}

TEST_F(ResourceCalls, TellAnAbsentResourceFromAnError) {
    isFound = false;
    for (auto const& [code, answer] : {std::pair<OSErr, std::string>{noErr, "none"},
                                       {resNotFound, "none"},
                                       {resFNotFound, "error -193"},
                                       {memFullErr, "error -108"},
                                       {mapReadErr, "error -199"}}) {
        calls.clear();
        getting = code;
        EXPECT_EQ(answer, Version());
        EXPECT_EQ(got + closed, calls);
    }
}

TEST_F(ResourceCalls, TakeAResourceThatIsThereWhateverTheErrorSays) {
    getting = mapReadErr;
    EXPECT_EQ("10.2.3b4", Version());
}

TEST_F(ResourceCalls, EndWithAFailureToRead) {
    reading = ioErr;
    EXPECT_EQ("none", Version());
    EXPECT_EQ(got + "size?\nread 4 at 0\n" + closed, calls);
}

TEST_F(ResourceCalls, EndWithAResourceThatIsTooSmall) {
    most = 3;
    EXPECT_EQ("none", Version());
    EXPECT_EQ(got + "size?\n" + closed, calls);
}
