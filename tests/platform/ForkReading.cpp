// Where reads of forks begin and end, and that they show the file as it is.

#include <fcntl.h>

#include <limits>

#include "platform/ForkVerbs.h"

namespace {

class ForkReading : public ForkTest {
  protected:
    static OSErr MoveMark(SInt16 number, UInt16 mode, SInt64 offset) {
        return FSSetForkPosition(number, mode, offset);
    }
    // Writes bytes at an offset of a file that is there.
    void Overwrite(std::string const& path, std::string_view bytes, off_t offset) const {
        int const file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
        EXPECT_EQ(static_cast<ssize_t>(bytes.size()), pwrite(file, bytes.data(), bytes.size(), offset));
        close(file);
    }
};

constexpr SInt64 kFarthest = std::numeric_limits<SInt64>::max();
constexpr SInt64 kLowest = std::numeric_limits<SInt64>::min();

}  // namespace

TEST_F(ForkReading, BeginsAtTheStartAndGoesOnAtTheMark) {
    SInt16 const fork = OpenNew("abcdef");
    EXPECT_EQ((Got{noErr, "ab"}), ReadAtMark(fork, 2));
    EXPECT_EQ((Got{noErr, "cd"}), ReadAtMark(fork, 2));
    EXPECT_EQ((Got{noErr, "ef"}), ReadAtMark(fork, 2)) << "all that was asked for is there";
    EXPECT_EQ((Got{eofErr, ""}), ReadAtMark(fork, 2));
}

TEST_F(ForkReading, MarkIgnoresTheOffset) {
    SInt16 const fork = OpenNew("abcdef");
    ASSERT_EQ(noErr, MoveMark(fork, fsFromStart, 2));
    EXPECT_EQ((Got{noErr, "c"}), Read(fork, fsAtMark, 3, 1));
    EXPECT_EQ((Got{noErr, "d"}), Read(fork, fsAtMark, -100, 1));
    EXPECT_EQ(noErr, MoveMark(fork, fsAtMark, 1));
    EXPECT_EQ(noErr, MoveMark(fork, fsAtMark, kLowest));
    EXPECT_EQ((Got{noErr, "e"}), ReadAtMark(fork, 1));
}

TEST_F(ForkReading, BeginsWhereItsModeSays) {
    SInt16 const fork = OpenNew("abcdef");
    struct Row {
        UInt16 mode;
        SInt64 offset;
        Got got;
    };
    for (Row const& row : {Row{fsFromStart, 0, {noErr, "ab"}},
                           {fsFromStart, 5, {eofErr, "f"}},
                           {fsFromStart, 6, {eofErr, ""}},
                           {fsFromStart, kFarthest, {eofErr, ""}},
                           {fsFromStart, kFarthest - 1, {eofErr, ""}},
                           {fsFromStart, -1, {posErr, ""}},
                           {fsFromStart, kLowest, {posErr, ""}},
                           {fsFromLEOF, -6, {noErr, "ab"}},
                           {fsFromLEOF, -1, {eofErr, "f"}},
                           {fsFromLEOF, 0, {eofErr, ""}},
                           {fsFromLEOF, 3, {eofErr, ""}},
                           {fsFromLEOF, -7, {posErr, ""}},
                           {fsFromLEOF, kFarthest, {posErr, ""}},
                           {fsFromLEOF, kLowest, {posErr, ""}},
                           {fsFromMark, 0, {noErr, "cd"}},
                           {fsFromMark, 1, {noErr, "de"}},
                           {fsFromMark, -2, {noErr, "ab"}},
                           {fsFromMark, 4, {eofErr, ""}},
                           {fsFromMark, -3, {posErr, ""}},
                           {fsFromMark, kFarthest, {posErr, ""}},
                           {fsFromMark, kLowest, {posErr, ""}}}) {
        ASSERT_EQ(noErr, MoveMark(fork, fsFromStart, 2));
        EXPECT_EQ(row.got, Read(fork, row.mode, row.offset, 2)) << row.mode << " " << row.offset;
    }
}

TEST_F(ForkReading, MarkIsMovedAsItsModeSays) {
    SInt16 const fork = OpenNew("abcdef");
    struct Row {
        UInt16 mode;
        SInt64 offset;
        std::string next;
    };
    for (Row const& row : {Row{fsFromStart, 1, "b"},
                           {fsFromStart, 6, ""},
                           {fsFromLEOF, -1, "f"},
                           {fsFromLEOF, 4, ""},
                           {fsFromMark, 1, "d"},
                           {fsFromMark, -2, "a"}}) {
        ASSERT_EQ(noErr, MoveMark(fork, fsFromStart, 2));
        EXPECT_EQ(noErr, MoveMark(fork, row.mode, row.offset));
        EXPECT_EQ(row.next, ReadAtMark(fork, 1).bytes) << row.mode << " " << row.offset;
    }
}

TEST_F(ForkReading, MarkMayStandBehindTheEnd) {
    SInt16 const fork = OpenNew("abc");
    EXPECT_EQ(noErr, MoveMark(fork, fsFromStart, 5));
    EXPECT_EQ((Got{eofErr, ""}), ReadAtMark(fork, 1));
    EXPECT_EQ(noErr, MoveMark(fork, fsFromMark, -3)) << "it stayed where it was put";
    EXPECT_EQ((Got{noErr, "c"}), ReadAtMark(fork, 1));
    EXPECT_EQ(noErr, MoveMark(fork, fsFromStart, kFarthest));
    EXPECT_EQ((Got{eofErr, ""}), ReadAtMark(fork, 1));
}

TEST_F(ForkReading, MarkThatCannotBeMovedStays) {
    SInt16 const fork = OpenNew("abcdef");
    struct Row {
        UInt16 mode;
        SInt64 offset;
        OSErr error;
    };
    for (Row const& row : {Row{fsFromStart, -1, posErr},
                           {fsFromMark, -3, posErr},
                           {fsFromMark, kFarthest, posErr},
                           {fsFromLEOF, -7, posErr},
                           {fsFromLEOF, kFarthest, posErr},
                           {0x80, 1, errFSBadPosMode}}) {
        ASSERT_EQ(noErr, MoveMark(fork, fsFromStart, 2));
        EXPECT_EQ(row.error, MoveMark(fork, row.mode, row.offset)) << row.mode << " " << row.offset;
        EXPECT_EQ((Got{noErr, "c"}), ReadAtMark(fork, 1)) << row.mode << " " << row.offset;
    }
}

TEST_F(ForkReading, MarkStandsBehindWhatWasRead) {
    SInt16 const fork = OpenNew("abcdef");
    EXPECT_EQ((Got{noErr, "bc"}), ReadFrom(1, fork, 2));
    EXPECT_EQ((Got{noErr, "d"}), ReadAtMark(fork, 1));
    EXPECT_EQ((Got{eofErr, "ef"}), ReadFrom(4, fork, 10)) << "up to the end";
    EXPECT_EQ((Got{noErr, "f"}), Read(fork, fsFromMark, -1, 1));
}

TEST_F(ForkReading, TakesHintsThatChangeNothing) {
    SInt16 const fork = OpenNew("abcdef");
    for (int const hint : {+pleaseCacheMask, +noCacheMask, +rdVerifyMask, 0x70}) {
        auto const with = [&](int mode) { return static_cast<UInt16>(hint | mode); };
        EXPECT_EQ(noErr, MoveMark(fork, with(fsFromStart), 1)) << hint;
        EXPECT_EQ((Got{noErr, "b"}), Read(fork, with(fsAtMark), 0, 1)) << hint;
        EXPECT_EQ((Got{noErr, "a"}), Read(fork, with(fsFromStart), 0, 1)) << hint;
        EXPECT_EQ((Got{noErr, "c"}), Read(fork, with(fsFromMark), 1, 1)) << hint;
        EXPECT_EQ((Got{noErr, "f"}), Read(fork, with(fsFromLEOF), -1, 1)) << hint;
    }
}

TEST_F(ForkReading, RefusesModesThatMeanNothing) {
    SInt16 const fork = OpenNew("abcdef");
    for (unsigned const bit : {0x04u, 0x08u, 0x80u, 0x100u, 0x0D80u, 0x8000u}) {
        auto const mode = static_cast<UInt16>(bit | fsFromStart);
        EXPECT_EQ((Got{errFSBadPosMode, ""}), Read(fork, mode, 0, 1)) << bit;
        EXPECT_EQ(errFSBadPosMode, MoveMark(fork, mode, 0)) << bit;
    }
}

TEST_F(ForkReading, OfNothingSucceedsAnywhere) {
    SInt16 const fork = OpenNew("abc");
    for (SInt64 const offset : {SInt64{0}, SInt64{3}, SInt64{100}, kFarthest})
        EXPECT_EQ((Got{noErr, ""}), ReadFrom(offset, fork, 0)) << offset;
    EXPECT_EQ((Got{posErr, ""}), ReadFrom(-1, fork, 0)) << "but not before the start";
    ByteCount actual = 7;
    EXPECT_EQ(noErr, FSReadFork(fork, fsFromStart, 0, 0, nullptr, &actual)) << "and without a buffer";
    EXPECT_EQ(0u, actual);
}

TEST_F(ForkReading, NeedsABuffer) {
    SInt16 const fork = OpenNew("abc");
    ByteCount actual = 7;
    EXPECT_EQ(errFSBadBuffer, FSReadFork(fork, fsAtMark, 0, 1, nullptr, &actual));
    EXPECT_EQ(0u, actual);
    EXPECT_EQ((Got{noErr, "a"}), ReadAtMark(fork, 1)) << "the mark has not moved";
}

TEST_F(ForkReading, NeedNotTellHowMuch) {
    SInt16 const fork = OpenNew("abc");
    char buffer[4] = "---";
    EXPECT_EQ(noErr, FSReadFork(fork, fsFromStart, 1, 2, buffer, nullptr));
    EXPECT_STREQ("bc-", buffer);
    EXPECT_EQ(eofErr, FSReadFork(fork, fsFromStart, 2, 2, buffer, nullptr));
    EXPECT_EQ(rfNumErr, FSReadFork(0, fsFromStart, 2, 2, buffer, nullptr));
}

TEST_F(ForkReading, OfAnEmptyFile) {
    SInt16 const fork = OpenNew("");
    EXPECT_EQ(0, SizeOf(fork));
    EXPECT_EQ((Got{eofErr, ""}), ReadAtMark(fork, 1));
    EXPECT_EQ((Got{noErr, ""}), ReadAtMark(fork, 0));
}

TEST_F(ForkReading, SizeWantsAPlace) {
    SInt16 const fork = OpenNew("abc");
    EXPECT_EQ(paramErr, FSGetForkSize(fork, nullptr));
    EXPECT_EQ(3, SizeOf(fork));
}

// ---- Files that change

TEST_F(ForkReading, SeesAFileGrow) {
    SInt16 const fork = OpenNew("abc");
    EXPECT_EQ((Got{eofErr, "abc"}), ReadAtMark(fork, 10));
    Overwrite(here.Path("file"), "def", 3);
    EXPECT_EQ(6, SizeOf(fork));
    EXPECT_EQ((Got{eofErr, "def"}), ReadAtMark(fork, 10));
    EXPECT_EQ((Got{eofErr, "ef"}), Read(fork, fsFromLEOF, -2, 3));
}

TEST_F(ForkReading, SeesAFileShrink) {
    SInt16 const fork = OpenNew("abcdef");
    EXPECT_EQ((Got{noErr, "abcd"}), ReadAtMark(fork, 4));
    std::filesystem::resize_file(here.Path("file"), 2);
    EXPECT_EQ(2, SizeOf(fork));
    EXPECT_EQ((Got{eofErr, ""}), ReadAtMark(fork, 1));
    EXPECT_EQ((Got{eofErr, "ab"}), ReadFrom(0, fork, 6));
    std::filesystem::resize_file(here.Path("file"), 0);
    EXPECT_EQ((Got{eofErr, ""}), ReadFrom(0, fork, 6));
}

TEST_F(ForkReading, SeesAFileWrittenToInPlace) {
    SInt16 const fork = OpenNew("abcdef");
    EXPECT_EQ((Got{noErr, "abcd"}), ReadAtMark(fork, 4));
    Overwrite(here.Path("file"), "XY", 3);
    EXPECT_EQ((Got{noErr, "abcXYf"}), ReadFrom(0, fork, 6));
}

TEST_F(ForkReading, OfAFileThatHasLostItsNameGoesOnToItsEnd) {
    SInt16 const fork = OpenNew("abcdef");
    EXPECT_EQ((Got{noErr, "abc"}), ReadAtMark(fork, 3));
    std::filesystem::remove(here.Path("file"));
    EXPECT_EQ((Got{eofErr, "def"}), ReadAtMark(fork, 10));
    EXPECT_EQ(6, SizeOf(fork));
}

TEST_F(ForkReading, OfAFileThatWasReplacedStaysWithTheFirst) {
    SInt16 const fork = OpenNew("first");
    std::filesystem::rename(here.Write("other", "second"), here.Path("file"));
    EXPECT_EQ("first", Whole(fork));
}

TEST_F(ForkReading, OfMoreThanFourGibibytes) {
    constexpr SInt64 size = (SInt64{1} << 32) + 5;
    std::string const path = here.Write("file", "head");
    std::filesystem::resize_file(path, size);
    Overwrite(path, "tails", size - 5);
    SInt16 const fork = Open(path);
    EXPECT_EQ(size, SizeOf(fork));
    EXPECT_EQ((Got{noErr, "head"}), ReadFrom(0, fork, 4));
    EXPECT_EQ((Got{eofErr, "tails"}), ReadFrom(size - 5, fork, 6));
    EXPECT_EQ((Got{noErr, "tai"}), Read(fork, fsFromLEOF, -5, 3));
    EXPECT_EQ((Got{eofErr, "ls"}), ReadAtMark(fork, 3));
    EXPECT_EQ((Got{noErr, std::string("\0t", 2)}), ReadFrom(size - 6, fork, 2)) << "across the boundary";
    EXPECT_EQ((Got{noErr, "head"}), Read(fork, fsFromMark, -(size - 4), 4)) << "and back";
}

// ---- When the host says stop

TEST_F(ForkReading, EndsWhenTheHostSaysStop) {
    SInt16 const fork = OpenNew("abc");
    PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
    EXPECT_EQ((Got{userCanceledErr, ""}), ReadAtMark(fork, 1));
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ((Got{noErr, "a"}), ReadAtMark(fork, 1));
}

TEST_F(ForkReading, EndsBetweenPiecesOfALargeRead) {
    constexpr ByteCount size = 40 << 20;
    std::string const path = here.Write("file");
    std::filesystem::resize_file(path, size);
    SInt16 const fork = Open(path);
    static int asked;
    asked = 0;
    PlatformSetCheckIn([](UInt32) -> Boolean { return ++asked < 3; });
    std::vector<char> buffer(size);
    ByteCount actual = 0;
    EXPECT_EQ(userCanceledErr, FSReadFork(fork, fsAtMark, 0, size, buffer.data(), &actual));
    EXPECT_LT(0u, actual);
    EXPECT_LT(actual, size);
    PlatformSetCheckIn(nullptr);
    Overwrite(path, "x", static_cast<off_t>(actual));
    EXPECT_EQ((Got{noErr, "x"}), ReadAtMark(fork, 1)) << "the mark stands behind what there is";
}
