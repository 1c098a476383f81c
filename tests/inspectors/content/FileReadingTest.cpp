// Open forks, cursors on them, and walks over their bytes.

#include "content/FileReading.h"

#include <Carbon/Carbon.h>
#include <Platform/Items.h>
#include <sys/stat.h>

#include <cstring>
#include <map>
#include <type_traits>

#include "Files.h"
#include "content/ExclusionList.h"
#include "support/Unprivileged.h"

using MacintoshPlatform::FileReader;

namespace {

constexpr signed char kToRead = 1;

class FileReading : public testing::Test {
  protected:
    // What the platform keeps open for itself is open from now on.
    FileReading() { MacintoshPlatform::FileItem const root(At("/")); }
    void OpenNew(FileReadingPath& path, std::string_view bytes) const {
        path.OpenInternal(At(here.Write("file", bytes)), kToRead);
    }
    void Resize(std::uintmax_t size) const { std::filesystem::resize_file(here.Path("file"), size); }

    TemporaryFolder const here;
};

std::string TextOf(ConstData bytes) { return {bytes.begin(), bytes.end()}; }

// What a tolerant read of up to so many bytes delivers.
std::string Tolerant(FileReader const& reader, std::size_t count) {
    std::string room(count, '?');
    Buffer buffer(Data(reinterpret_cast<unsigned char*>(room.data()), count));
    reader >> buffer;
    return TextOf(buffer.Written());
}
std::string Exact(FileReader const& reader, std::size_t count) {
    std::string room(count, '?');
    reader >> Data(reinterpret_cast<unsigned char*>(room.data()), count);
    return room;
}

// Maps from the platform's codes to exceptions, of which any other code is FileIOError. Zero is none.
using ErrorMap = std::map<short, std::string>;

template <class Thrower>
void ExpectMap(ErrorMap const& map, Thrower const& thrower) {
    for (int status = -32768; status <= 32767; ++status) {
        auto const row = map.find(static_cast<short>(status));
        EXPECT_EQ(row != map.end() ? row->second : Name<FileIOError>(),
                  Thrown([&] { thrower.ThrowError(static_cast<short>(status)); }))
            << status;
        try {
            thrower.ThrowError(static_cast<short>(status));
        } catch (FileIOError const& error) {
            EXPECT_EQ(0, error.Detail()) << status;
        } catch (BadFileNameError const&) {
        }
    }
}

}  // namespace

// ---- Maps of errors

TEST_F(FileReading, OpeningHasItsMapOfErrors) {
    ExpectMap({{0, ""},
               {-34, Name<DiskFullError>()},
               {-37, Name<BadFileNameError>()},
               {-43, Name<FileNotFoundError>()},
               {-45, Name<FileLockError>()},
               {-49, Name<FileBusyError>()},
               {-54, Name<FilePermissionError>()},
               {-120, Name<DirectoryNotFoundError>()},
               {-5000, Name<FilePermissionError>()}},
              FileReadingPath());
}

TEST_F(FileReading, ReadingHasAShorterOne) {
    ExpectMap({{0, ""},
               {-39, Name<EndOfFileError>()},
               {-45, Name<FileLockError>()},
               {-5000, Name<FilePermissionError>()}},
              FileReader());
}

// ---- The open fork

TEST_F(FileReading, PathIsClosedAtFirst) {
    FileReadingPath const path;
    EXPECT_FALSE(path.IsOpen());
    EXPECT_EQ(-1, path.ReferenceNumber());
}

TEST_F(FileReading, PathIsANumberAndAFlag) {
    struct {
        std::int16_t number, flag;
    } words;
    static_assert(sizeof(MacintoshPlatform::FileReadingPath) == sizeof words);
    static_assert(sizeof(FileReadingPath) == sizeof words, "it adds no fields");
    static_assert(std::is_same_v<std::uint32_t, decltype(FileReadingPath().Length())>);
    FileReadingPath path;
    std::memcpy(&words, static_cast<void const*>(&path), sizeof words);
    EXPECT_EQ(-1, words.number);
    EXPECT_EQ(0, words.flag);
    OpenNew(path, "text");
    std::memcpy(&words, static_cast<void const*>(&path), sizeof words);
    EXPECT_EQ(path.ReferenceNumber(), words.number);
    EXPECT_EQ(-1, words.flag) << "all bits";
}

TEST_F(FileReading, PathIsOpenUntilItIsClosed) {
    std::ptrdiff_t const before = OpenFiles();
    FileReadingPath path;
    OpenNew(path, "12345");
    EXPECT_TRUE(path.IsOpen());
    EXPECT_LT(0, path.ReferenceNumber());
    EXPECT_EQ(5u, path.Length());
    EXPECT_EQ(before + 1, OpenFiles());
    path.Close();
    EXPECT_FALSE(path.IsOpen());
    EXPECT_EQ(-1, path.ReferenceNumber());
    EXPECT_EQ(before, OpenFiles());
    path.Close();
    EXPECT_FALSE(path.IsOpen()) << "closing again is nothing";
}

TEST_F(FileReading, PathClosesAtItsEnd) {
    std::ptrdiff_t const before = OpenFiles();
    {
        FileReadingPath path;
        OpenNew(path, "12345");
        EXPECT_EQ(before + 1, OpenFiles());
    }
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(FileReading, OpeningAgainClosesTheFirst) {
    FileReadingPath path;
    OpenNew(path, "12345");
    std::ptrdiff_t const before = OpenFiles();
    path.OpenInternal(At(here.Write("other", "123")), kToRead);
    EXPECT_EQ(before, OpenFiles());
    EXPECT_EQ(3u, path.Length());
}

// What one of these throws, a folder of the test or an item in it being opened.
TEST_F(FileReading, WhatCannotBeOpened) {
    here.MakeFolder("folder");
    here.Write("file");
    here.Write("forbidden", "secret");
    here.Write("folder/hidden", "secret");
    here.Link("dangling", "missing");
    here.Link("link", "folder");
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(here.Path("folder").c_str(), 0));
    ASSERT_EQ(0, chmod(here.Path("forbidden").c_str(), 0));
    struct Row {
        std::string name;
        std::string exception;
    };
    std::ptrdiff_t const before = OpenFiles();
    {
        Unprivileged const nobody;
        for (Row const& row : {Row{"missing", Name<FileNotFoundError>()},
                               {"missing/file", Name<FileNotFoundError>()},
                               {"file/file", Name<FileNotFoundError>()},
                               {"dangling", Name<FileNotFoundError>()},
                               {"folder", Name<NotAFileError>()},
                               {"link", Name<NotAFileError>()},
                               {"forbidden", Name<FilePermissionError>()},
                               {"folder/hidden", Name<FilePermissionError>()}}) {
            FileReadingPath path;
            EXPECT_EQ(row.exception, Thrown([&] { path.OpenInternal(At(here.Path(row.name)), kToRead); }))
                << row.name;
            EXPECT_FALSE(path.IsOpen()) << row.name;
            EXPECT_EQ(-1, path.ReferenceNumber()) << row.name;
        }
    }
    EXPECT_EQ(before, OpenFiles());
    chmod(here.Path("folder").c_str(), 0755);
}

TEST_F(FileReading, FolderIsToldByThePlatformsCode) {
    FileReadingPath path;
    try {
        path.OpenInternal(At(here.Path()), kToRead);
        ADD_FAILURE() << "it was opened";
    } catch (NotAFileError const& error) {
        EXPECT_EQ(-1302, error.Code());
    }
}

TEST_F(FileReading, OpeningToWriteIsNotPermitted) {
    FileReadingPath path;
    std::string const file = here.Write("file");
    for (signed char const permission : {2, 3, 4})
        EXPECT_EQ(Name<FilePermissionError>(), Thrown([&] { path.OpenInternal(At(file), permission); }))
            << +permission;
    EXPECT_EQ(Name<FileIOError>(), Thrown([&] { path.OpenInternal(At(file), 5); }));
}

// What is there is looked at first, then the open fork is closed.
TEST_F(FileReading, OpenForkStaysWhereThereIsNoFileToOpenInstead) {
    FileReadingPath path;
    OpenNew(path, "12345");
    EXPECT_EQ(Name<FileNotFoundError>(), Thrown([&] { path.OpenInternal(At(here.Path("x")), kToRead); }));
    EXPECT_EQ(Name<NotAFileError>(), Thrown([&] { path.OpenInternal(At(here.Path()), kToRead); }));
    EXPECT_EQ(5u, path.Length());
}

TEST_F(FileReading, OpenForkIsClosedWhenAnotherCannotBeOpenedInstead) {
    FileReadingPath path;
    OpenNew(path, "12345");
    std::ptrdiff_t const before = OpenFiles();
    EXPECT_EQ(Name<FilePermissionError>(), Thrown([&] { path.OpenInternal(At(here.Path("file")), 2); }));
    EXPECT_FALSE(path.IsOpen());
    EXPECT_EQ(-1, path.ReferenceNumber());
    EXPECT_EQ(before - 1, OpenFiles());
}

// A fork that was closed behind the path's back cannot be closed, or asked.
TEST_F(FileReading, PathThatCannotBeClosedCountsAsOpen) {
    FileReadingPath path;
    OpenNew(path, "12345");
    SInt16 const number = path.ReferenceNumber();
    ASSERT_EQ(noErr, FSCloseFork(number));
    EXPECT_EQ(Name<FileIOError>(), Thrown([&] { path.Close(); }));
    EXPECT_TRUE(path.IsOpen());
    EXPECT_EQ(number, path.ReferenceNumber());
    EXPECT_EQ(Name<FileIOError>(), Thrown([&] { path.Length(); }));
    EXPECT_EQ(Name<FileIOError>(), Thrown([&] { OpenNew(path, "123"); })) << "nor reopened";
}  // and its end throws nothing

TEST_F(FileReading, LengthIsThatOfAnOpenFork) {
    FileReadingPath path;
    EXPECT_EQ(Name<FileNotOpenError>(), Thrown([&] { path.Length(); }));
    OpenNew(path, "12345");
    EXPECT_EQ(5u, path.Length());
    Resize(7);
    EXPECT_EQ(7u, path.Length()) << "now";
    path.Close();
    EXPECT_EQ(Name<FileNotOpenError>(), Thrown([&] { path.Length(); }));
}

TEST_F(FileReading, LengthIsModuloFourGibibytes) {
    FileReadingPath path;
    std::string const file = here.Write("file");
    path.OpenInternal(At(file), kToRead);
    std::uintmax_t const whole = std::uintmax_t{1} << 32;
    Resize(whole - 1);
    EXPECT_EQ(0xFFFFFFFFu, path.Length());
    Resize(whole);
    EXPECT_EQ(0u, path.Length());
    Resize(whole + 5);
    EXPECT_EQ(5u, path.Length());
}

TEST_F(FileReading, MadePathIsOpenUntilItsLastOwnerLetsGo) {
    std::ptrdiff_t const before = OpenFiles();
    SharingPtr<FileReadingPath>* first =
        new SharingPtr<FileReadingPath>(MakeFileReadingPath(At(here.Write("file", "12345"))));
    {
        SharingPtr<FileReadingPath> const second(*first);
        delete first;
        EXPECT_EQ(5u, second->Length());
        EXPECT_EQ(before + 1, OpenFiles());
    }
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(FileReading, PathThatCannotBeMadeIsFreed) {
    std::ptrdiff_t const before = OpenFiles();
    EXPECT_EQ(Name<FileNotFoundError>(), Thrown([&] { MakeFileReadingPath(At(here.Path("missing"))); }));
    EXPECT_EQ(Name<NotAFileError>(), Thrown([&] { MakeFileReadingPath(At(here.Path())); }));
    EXPECT_EQ(before, OpenFiles());
}

// ---- The cursor

TEST_F(FileReading, ReaderTakesTheLengthWhenItStarts) {
    FileReadingPath path;
    FileReader reader;
    EXPECT_EQ(Name<FileNotOpenError>(), Thrown([&] { reader.Start(path, 0); }));
    OpenNew(path, "12345");
    EXPECT_EQ(5u, reader.Start(path, 4));
    static_assert(std::is_same_v<std::uint32_t, decltype(reader.Start(path, 4))>);
    static_assert(std::is_same_v<long long, decltype(reader.Position())>);
    EXPECT_EQ(4, reader.Position());
    EXPECT_TRUE(reader.HasUnread());
    EXPECT_EQ(5u, reader.Start(path, 5));
    Resize(100);
    EXPECT_FALSE(reader.HasUnread()) << "the length it had";
}

TEST_F(FileReading, TolerantReadTakesWhatThereIs) {
    FileReadingPath path;
    OpenNew(path, "abcde");
    FileReader reader;
    reader.Start(path, 1);
    EXPECT_EQ("bc", Tolerant(reader, 2));
    EXPECT_EQ(3, reader.Position());
    EXPECT_EQ("de", Tolerant(reader, 4));
    EXPECT_EQ(5, reader.Position());
    EXPECT_EQ("", Tolerant(reader, 4)) << "at the end";
    EXPECT_EQ(5, reader.Position());
    EXPECT_EQ("", Tolerant(reader, 0));
    reader.Start(path, 100);
    EXPECT_EQ("", Tolerant(reader, 4)) << "past the end";
    EXPECT_EQ(100, reader.Position());
    reader.Start(path, (1LL << 32) + 1);
    EXPECT_EQ("", Tolerant(reader, 4)) << "past the end by all 64 bits";
}

TEST_F(FileReading, TolerantReadFillsWhatRoomIsLeft) {
    FileReadingPath path;
    OpenNew(path, "abcde");
    FileReader reader;
    reader.Start(path, 0);
    unsigned char room[7] = "------";
    Buffer buffer(Data(room, 6));
    buffer << "12";
    reader >> buffer;
    EXPECT_EQ("12abcd", TextOf(buffer.Written()));
    reader >> buffer;
    EXPECT_EQ("12abcd", TextOf(buffer.Written())) << "none is left";
    EXPECT_EQ(4, reader.Position());
}

TEST_F(FileReading, ExactReadTakesAllOrThrows) {
    FileReadingPath path;
    OpenNew(path, "abcde");
    FileReader reader;
    reader.Start(path, 1);
    EXPECT_EQ("bc", Exact(reader, 2));
    EXPECT_EQ("de", Exact(reader, 2)) << "up to the end";
    EXPECT_EQ(Name<EndOfFileError>(), Thrown([&] { Exact(reader, 1); })) << "at the end";
    reader.Start(path, 3);
    EXPECT_EQ(Name<EndOfFileError>(), Thrown([&] { Exact(reader, 3); })) << "short";
    reader.Start(path, 6);
    EXPECT_EQ(Name<EndOfFileError>(), Thrown([&] { Exact(reader, 1); })) << "past the end";
    EXPECT_EQ("", Exact(reader, 0));
}

TEST_F(FileReading, ReadsWherePlatformsPositionsHave64Bits) {
    FileReadingPath path;
    std::uintmax_t const size = (std::uintmax_t{1} << 32) + 5;
    path.OpenInternal(At(WriteSparse(here, size, "tails")), kToRead);
    FileReader reader;
    EXPECT_EQ(5u, reader.Start(path, 1LL << 32));
    EXPECT_FALSE(reader.HasUnread());
    EXPECT_EQ("tail", Exact(reader, 4));
    EXPECT_EQ((1LL << 32) + 4, reader.Position());
    reader.Start(path, (1LL << 32) - 2);
    EXPECT_EQ(std::string("\0\0ta", 4), Tolerant(reader, 4)) << "across the boundary";
    EXPECT_EQ((1LL << 32) + 2, reader.Position());
}

TEST_F(FileReading, PositionBeforeTheStartIsUnreadAndCannotBeRead) {
    FileReadingPath path;
    OpenNew(path, "abcde");
    FileReader reader;
    reader.Start(path, -1);
    EXPECT_TRUE(reader.HasUnread());
    EXPECT_EQ(Name<FileIOError>(), Thrown([&] { Tolerant(reader, 1); }));
    EXPECT_EQ(Name<FileIOError>(), Thrown([&] { Exact(reader, 1); }));
}

TEST_F(FileReading, FailureToReadIsThrown) {
    FileReadingPath path;
    OpenNew(path, "abcde");
    FileReader reader;
    reader.Start(path, 0);
    PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
    EXPECT_EQ(Name<FileIOError>(), Thrown([&] { Tolerant(reader, 1); }));
    EXPECT_EQ(Name<FileIOError>(), Thrown([&] { Exact(reader, 1); }));
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ("a", Exact(reader, 1)) << "the cursor has not moved";
    FSCloseFork(path.ReferenceNumber());
    EXPECT_EQ(Name<FileIOError>(), Thrown([&] { Tolerant(reader, 1); }));
}

TEST_F(FileReading, SeveralReadersShareAFork) {
    FileReadingPath path;
    OpenNew(path, "abcdefgh");
    FileReader first, second;
    first.Start(path, 0);
    second.Start(path, 4);
    EXPECT_EQ("ab", Exact(first, 2));
    EXPECT_EQ("ef", Tolerant(second, 2));
    EXPECT_EQ("cd", Tolerant(first, 2));
    EXPECT_EQ("gh", Exact(second, 2));
}

// ---- The walk

namespace {

class FileReadingLoops : public FileReading {
  protected:
    Data Room(std::size_t size) { return {room, size}; }
    // All chunks of a walk, each with what remained at it.
    static std::string Walk(FileReadingLoop& loop) {
        std::string chunks;
        for (; loop.Remaining() != 0; ++loop)
            chunks += TextOf(loop.Chunk()) + std::to_string(loop.Remaining()) + " ";
        return chunks;
    }
    // How often the host is asked, as it is before each read.
    template <class Call>
    static int Reads(Call const& call) {
        static int asked;
        asked = 0;
        PlatformSetCheckIn([](UInt32) -> Boolean { return ++asked != 0; });
        call();
        PlatformSetCheckIn(nullptr);
        return asked;
    }

    FileReadingPath path;
    unsigned char room[100];
};

}  // namespace

TEST_F(FileReadingLoops, OverNothing) {
    FileReadingLoop const loop(Room(2));
    EXPECT_EQ(0u, loop.Remaining());
    EXPECT_TRUE(loop.Chunk().Empty());
    static_assert(std::is_same_v<std::uint32_t, decltype(loop.Remaining())>);
}

TEST_F(FileReadingLoops, ComeInChunksOfTheBuffersSize) {
    OpenNew(path, "abcdefg");
    FileReadingLoop all(Room(3), path, 0);
    EXPECT_EQ("abc7 def4 g1 ", Walk(all));
    FileReadingLoop fromThere(Room(3), path, 4);
    EXPECT_EQ("efg3 ", Walk(fromThere));
    FileReadingLoop part(Room(3), path, 1, 6);
    EXPECT_EQ("bcd5 ef2 ", Walk(part));
    FileReadingLoop range(Room(4), path, Range<unsigned long>(1, 5));
    EXPECT_EQ("bcde4 ", Walk(range));
}

TEST_F(FileReadingLoops, BeginAnew) {
    OpenNew(path, "abcdefg");
    FileReadingLoop loop(Room(3));
    loop.Start(path, 5);
    EXPECT_EQ("fg2 ", Walk(loop));
    loop.Start(path, 0, 2);
    EXPECT_EQ("ab2 ", Walk(loop));
    loop.Start(path, Range<unsigned long>(2, 6));
    EXPECT_EQ("cde4 f1 ", Walk(loop));
}

TEST_F(FileReadingLoops, ChunkLiesAtTheFrontOfTheBuffer) {
    OpenNew(path, "abcde");
    FileReadingLoop loop(Room(3), path, 0);
    EXPECT_EQ(room, loop.Chunk().begin());
    ++loop;
    EXPECT_EQ(room, loop.Chunk().begin());
    EXPECT_EQ("de", TextOf(loop.Chunk()));
}

TEST_F(FileReadingLoops, LastChunkStaysAtTheEnd) {
    OpenNew(path, "abcde");
    FileReadingLoop loop(Room(3), path, 0);
    ++loop;
    EXPECT_EQ(0, Reads([&] { ++loop; }));
    EXPECT_EQ(0u, loop.Remaining());
    EXPECT_EQ("de", TextOf(loop.Chunk()));
}

TEST_F(FileReadingLoops, OverAnEmptyRangeReadNothing) {
    OpenNew(path, "abcde");
    ASSERT_EQ(noErr, FSSetForkPosition(path.ReferenceNumber(), fsFromStart, 3));
    EXPECT_EQ(0, Reads([&] {
                  for (unsigned long const at : {0ul, 2ul, 5ul, 100ul}) {
                      FileReadingLoop const loop(Room(2), path, at, at);
                      EXPECT_EQ(0u, loop.Remaining());
                      EXPECT_TRUE(loop.Chunk().Empty());
                  }
                  FileReadingLoop const atTheEnd(Room(2), path, 5);
                  EXPECT_EQ(0u, atTheEnd.Remaining());
              }));
    char byte = 0;
    ASSERT_EQ(noErr, FSReadFork(path.ReferenceNumber(), fsAtMark, 0, 1, &byte, nullptr));
    EXPECT_EQ('d', byte) << "the mark has not moved";
    EXPECT_EQ(1, Reads([&] { FileReadingLoop const loop(Room(2), path, 0, 1); })) << "others do";
}

TEST_F(FileReadingLoops, OverAnEmptyRangeWantAnOpenFork) {
    EXPECT_EQ(Name<FileNotOpenError>(), Thrown([&] { FileReadingLoop(Room(2), path, 0, 0); }));
    EXPECT_EQ(Name<FileNotOpenError>(), Thrown([&] { FileReadingLoop(Room(2), path, 0); }));
}

TEST_F(FileReadingLoops, BeyondTheEndThrowAfterTheLastByte) {
    OpenNew(path, "abcde");
    FileReadingLoop loop(Room(2), path, 1, 6);
    EXPECT_EQ("bc", TextOf(loop.Chunk()));
    ++loop;
    EXPECT_EQ("de", TextOf(loop.Chunk()));
    EXPECT_EQ(3u, loop.Remaining());
    EXPECT_EQ(Name<FileReadingLoopEndOfFileError>(), Thrown([&] { ++loop; }));
    FileReadingLoop shortChunk(Room(4), path, 3, 7);
    EXPECT_EQ("de", TextOf(shortChunk.Chunk()));
    EXPECT_EQ(Name<FileReadingLoopEndOfFileError>(), Thrown([&] { ++shortChunk; }));
}

TEST_F(FileReadingLoops, ThatBeginBeyondTheEndThrowAtOnce) {
    OpenNew(path, "abcde");
    std::string const end = Name<FileReadingLoopEndOfFileError>();
    EXPECT_EQ(end, Thrown([&] { FileReadingLoop(Room(2), path, 5, 6); }));
    EXPECT_EQ(end, Thrown([&] { FileReadingLoop(Room(2), path, 7); })) << "to an end before it";
    EXPECT_EQ(end, Thrown([&] { FileReadingLoop(Room(2), path, 1ul << 32, (1ul << 32) + 1); }));
}

// The count of bytes is one of 32 bits.
TEST_F(FileReadingLoops, ThatEndBeforeTheirBeginGoOnToTheEndOfTheFork) {
    OpenNew(path, "abcde");
    FileReadingLoop loop(Room(10), path, 3, 1);
    EXPECT_EQ(0xFFFFFFFEu, loop.Remaining());
    EXPECT_EQ("de", TextOf(loop.Chunk()));
    EXPECT_EQ(Name<FileReadingLoopEndOfFileError>(), Thrown([&] { ++loop; }));
}

TEST_F(FileReadingLoops, OverAFileThatShrinksComeToAnEmptyChunk) {
    OpenNew(path, "abcdefgh");
    FileReadingLoop loop(Room(3), path, 0);
    Resize(5);
    ++loop;
    EXPECT_EQ("de", TextOf(loop.Chunk()));
    EXPECT_EQ(5u, loop.Remaining());
    ++loop;
    EXPECT_EQ("", TextOf(loop.Chunk()));
    EXPECT_EQ(3u, loop.Remaining());
}

TEST_F(FileReadingLoops, OverAFileThatGrowsEndWhereItEnded) {
    OpenNew(path, "abcde");
    FileReadingLoop loop(Room(3), path, 0);
    std::ofstream(here.Path("file"), std::ios::app) << "fgh";
    EXPECT_EQ("abc5 de2 ", Walk(loop));
}

TEST_F(FileReadingLoops, SeeLongForksModuloFourGibibytes) {
    std::uintmax_t const whole = std::uintmax_t{1} << 32;
    OpenNew(path, "abcdefgh");
    Resize(whole);
    FileReadingLoop none(Room(3), path, 0);
    EXPECT_EQ(0u, none.Remaining());
    Resize(whole + 5);
    FileReadingLoop five(Room(3), path, 0);
    EXPECT_EQ("abc5 de2 ", Walk(five));
}

TEST_F(FileReadingLoops, PassFailuresToReadOn) {
    OpenNew(path, "abcde");
    FileReadingLoop loop(Room(3), path, 0);
    PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
    EXPECT_EQ(Name<FileIOError>(), Thrown([&] { ++loop; }));
    PlatformSetCheckIn(nullptr);
}

// ---- Files that are not read

TEST_F(FileReading, NoFileIsExcluded) {
    EXPECT_EQ(nullptr, gFileExclusionList);
    EXPECT_EQ(0u, gFileExclusionListLength);
    EXPECT_FALSE(DoNotReadFile(FileAt(here.Write("file"))));
    EXPECT_FALSE(DoNotReadFile(FileAt("/etc/passwd")));
    EXPECT_FALSE(DoNotReadFile(file(MissingItem())));
}
