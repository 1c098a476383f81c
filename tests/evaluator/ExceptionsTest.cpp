#include "Evaluator/Exceptions.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>

TEST(Exceptions, TellTheNameOfTheirOwnClass) {
    EXPECT_STREQ("NoSuchObject", NoSuchObject().what());
    EXPECT_STREQ("DebuggableException", DebuggableException().what());
    EXPECT_STREQ("FileIOError", FileIOError().what());
    EXPECT_STREQ("EndOfFileError", EndOfFileError().what());
    EXPECT_STREQ("ArithmeticOverflow", ArithmeticOverflow().what());
}

TEST(Exceptions, TellTheirNameThroughTheStandardRootAfterCopies) {
    try {
        ParsingFailure const original;
        throw original;
    } catch (std::exception const& caught) {
        EXPECT_STREQ("ParsingFailure", caught.what());
    }
}

namespace {
__attribute__((noinline)) NoSuchObject Make() { return NoSuchObject(); }
}  // namespace

TEST(Exceptions, RememberTheCodeThatConstructedThem) {
    NoSuchObject const failure = Make();
    Dl_info info;
    ASSERT_NE(0, dladdr(failure.Origin(), &info));
    Dl_info own;
    ASSERT_NE(0, dladdr(reinterpret_cast<void const*>(&Make), &own));
    EXPECT_STREQ(own.dli_fname, info.dli_fname);

    NoSuchObject const copy = failure;
    EXPECT_EQ(failure.Origin(), copy.Origin());
    DebuggableException assigned;
    assigned = copy;
    EXPECT_EQ(failure.Origin(), assigned.Origin());
}

namespace {
template <class Base, class... Classes>
constexpr bool isBaseOfAll = (std::is_base_of_v<Base, Classes> && ...);

// A class of its own: derived from neither root.
template <class... Classes>
constexpr bool standAlone = ((!std::is_base_of_v<std::exception, Classes> &&
                              !std::is_base_of_v<OSError, Classes>)&&...);
}  // namespace

TEST(Exceptions, OfTheEvaluatorHaveOneRoot) {
    EXPECT_TRUE((std::is_base_of_v<std::exception, DebuggableException>));
    EXPECT_TRUE((std::is_base_of_v<MacintoshPlatform::ExceptionDebuggingInfo, DebuggableException>));
    EXPECT_TRUE((isBaseOfAll<DebuggableException, NoSuchObject, FileIOError, DataOverflow, ParsingFailure,
                             StringyLengthTooLong, ArithmeticOverflow, DivisionByZero>));
}

TEST(Exceptions, OfThePlatformHaveAnother) {
    EXPECT_TRUE((isBaseOfAll<OSError, MemoryError, FileError, ProcessError>));
    EXPECT_TRUE((std::is_base_of_v<MemoryError, MemoryFullError>));
    EXPECT_TRUE((std::is_base_of_v<FileError, NotAFileError>));
    EXPECT_FALSE((std::is_base_of_v<std::exception, OSError>));
}

TEST(Exceptions, OfReadingFilesHaveTheirOwn) {
    EXPECT_TRUE(
        (isBaseOfAll<FileIOError, FileNotFoundError, DirectoryNotFoundError, FileNotOpenError, DiskFullError,
                     FileLockError, FilePermissionError, FileBusyError, EndOfFileError>));
}

TEST(Exceptions, OfThePlatformsServicesAndOfInspectorsStandAlone) {
    EXPECT_TRUE(
        (standAlone<BadFileNameError, IllegalFileName, IllegalFileNameLength,
                    CFURLCopyLastPathComponentFailed, CFURLCreateWithFileSystemPathFailed,
                    CFURLCreateCopyDeletingLastPathComponentFailed, MacintoshPlatform::MakeFileLocationFailed,
                    MacintoshPlatform::FailedToGetFileItem, MacintoshPlatform::CannotCreateSpecialFolder>));
    EXPECT_TRUE((
        standAlone<CFBundleGetInfoDictionaryFailed, CFBundleGetLocalInfoDictionaryFailed,
                   CFDictionaryGetValueIfPresentFailed, DictionaryCreateFromXMLDataFailed, GenericCFCastError,
                   KeyNotFoundInLine, FileReadingLoopEndOfFileError, VersionDataOutOfBounds>));
}

TEST(CFCastErrors, AreCaughtWhateverTheTypeThatWasWanted) {
    EXPECT_THROW(throw CFCastError<struct __CFString const*>(), GenericCFCastError);
}

TEST(FileIOErrors, CarryADetailWord) {
    EXPECT_EQ(0, DiskFullError().Detail());
    EXPECT_EQ(-7, FilePermissionError(-7).Detail());
}

namespace {
template <class Expected>
int CodeThrownFor(long code) {
    try {
        ThrowRealOSError(code);
    } catch (OSError const& error) {
        EXPECT_EQ(typeid(Expected), typeid(error)) << code;
        return error.Code();
    }
}
}  // namespace

TEST(ThrowRealOSError, ThrowsTheClassOfTheCode) {
    EXPECT_EQ(-108, CodeThrownFor<MemoryFullError>(-108));
    EXPECT_EQ(-1302, CodeThrownFor<NotAFileError>(-1302));
    EXPECT_EQ(-43, CodeThrownFor<OSError>(-43));
    EXPECT_EQ(0, CodeThrownFor<OSError>(0));
}

TEST(BadFileNameError, CanBeThrownAndCaughtByName) {
    EXPECT_THROW(throw BadFileNameError(), BadFileNameError);
}
