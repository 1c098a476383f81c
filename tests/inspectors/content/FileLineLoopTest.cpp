// The scanner by itself: where it cuts lines, what it does at the ends of its buffer, and passing many lines.

#include "content/FileLineLoop.h"

#include <gtest/gtest.h>

#include <vector>

#include "Evaluator/Exceptions.h"
#include "Fork.h"
#include "RandomFiles.h"
#include "Transcription.h"

namespace {

struct Cut {
    std::string text;
    std::string ending;

    friend bool operator==(Cut const&, Cut const&) = default;
    friend std::ostream& operator<<(std::ostream& out, Cut const& cut) {
        return out << Dump(cut.text) << " with " << Dump(cut.ending);
    }
};
using Cuts = std::vector<Cut>;

Cut At(FileLineLoop const& loop) { return {TextOf(loop.Line()), TextOf(loop.Ending())}; }

class LineLoop : public testing::Test {
  protected:
    SharingPtr<FileReadingPath> Open(std::string_view bytes) {
        fork.Write(bytes);
        return MakeFileReadingPath(fork.AsFile());
    }
    Data Room(std::size_t size = 2048) {
        memory.assign(size, 0xEE);
        return {memory.data(), size};
    }
    Cuts CutsOf(std::string_view bytes, unsigned long start = 0) {
        auto const path = Open(bytes);
        Cuts cuts;
        for (FileLineLoop loop(Room(), *path, start); !loop.IsExhausted(); ++loop) cuts.push_back(At(loop));
        return cuts;
    }

    Fork fork;
    std::vector<unsigned char> memory;
};

std::string A(std::size_t size) { return std::string(size, 'a'); }

}  // namespace

TEST_F(LineLoop, CutsAtCrAndLfAndPairsOfThem) {
    struct Row {
        char const* bytes;
        Cuts cuts;
    };
    for (Row const& row : std::vector<Row>{
             {"", {}},
             {"a", {{"a", ""}}},
             {"\n", {{"", "\n"}}},
             {"\r", {{"", "\r"}}},
             {"a\n", {{"a", "\n"}}},
             {"a\r", {{"a", "\r"}}},
             {"a\r\nb", {{"a", "\r\n"}, {"b", ""}}},
             {"a\n\rb", {{"a", "\n\r"}, {"b", ""}}},
             {"a\r\rb", {{"a", "\r"}, {"", "\r"}, {"b", ""}}},
             {"a\n\nb", {{"a", "\n"}, {"", "\n"}, {"b", ""}}},
             {"\r\n\r\n", {{"", "\r\n"}, {"", "\r\n"}}},
             {"\r\n\r", {{"", "\r\n"}, {"", "\r"}}},
             {"\n\n\r", {{"", "\n"}, {"", "\n\r"}}},
             {"a\vb\fc\x85", {{"a\vb\fc\x85", ""}}},
         })
        EXPECT_EQ(row.cuts, CutsOf(row.bytes)) << Dump(row.bytes);
}

TEST_F(LineLoop, TakesNulForAByteLikeOthers) {
    std::string const bytes("a\0b\n\0", 5);
    EXPECT_EQ((Cuts{{bytes.substr(0, 3), "\n"}, {bytes.substr(4), ""}}), CutsOf(bytes));
}

TEST_F(LineLoop, CutsLongLinesIntoSegmentsOfTheBuffersSize) {
    EXPECT_EQ((Cuts{{A(2048), ""}, {A(2048), ""}, {A(904), ""}}), CutsOf(A(5000)));
    EXPECT_EQ((Cuts{{A(2048), ""}, {A(952), "\r\n"}, {"b", ""}}), CutsOf(A(3000) + "\r\nb"));
}

TEST_F(LineLoop, GivesTheEndingOfALineThatFillsTheBufferToAnEmptyOne) {
    EXPECT_EQ((Cuts{{A(2048), ""}, {"", "\n"}, {"b", ""}}), CutsOf(A(2048) + "\nb"));
    EXPECT_EQ((Cuts{{A(2048), ""}, {"", "\n"}}), CutsOf(A(2048) + "\n"));
    EXPECT_EQ((Cuts{{A(2048), ""}}), CutsOf(A(2048)));
}

TEST_F(LineLoop, LosesAnEndingThatIsTheLastByteOfAFullBuffer) {
    // The line goes on with the next one.
    for (char const* ending : {"\r", "\n"})
        EXPECT_EQ((Cuts{{"x", "\n"}, {A(2045) + "b", "\n"}}), CutsOf("x\n" + A(2045) + ending + "b\n"));
    // Of a pair the second byte is left.
    EXPECT_EQ((Cuts{{"x", "\n"}, {A(2045), "\n"}, {"b", ""}}), CutsOf("x\n" + A(2045) + "\r\nb"));
    EXPECT_EQ((Cuts{{"x", "\n"}, {A(2045), "\r"}, {"b", ""}}), CutsOf("x\n" + A(2045) + "\n\rb"));
}

TEST_F(LineLoop, KeepsAnEndingThatIsTheLastByteOfFileAndBuffer) {
    EXPECT_EQ((Cuts{{"x", "\n"}, {A(2045), "\r"}}), CutsOf("x\n" + A(2045) + "\r"));
    EXPECT_EQ((Cuts{{A(2047), "\n"}}), CutsOf(A(2047) + "\n"));
}

TEST_F(LineLoop, GivesAFirstLineAloneWhoseOneByteEndingIsByte2048) {
    for (char const* ending : {"\r", "\n"})
        EXPECT_EQ((Cuts{{A(2047), ""}, {"b", "\n"}, {"c", ""}}), CutsOf(A(2047) + ending + "b\nc"));
    // The second byte of a pair ends an empty line.
    EXPECT_EQ((Cuts{{A(2047), ""}, {"", "\n"}, {"b", ""}}), CutsOf(A(2047) + "\r\nb"));
}

TEST_F(LineLoop, KeepsAPairThatEndsWithTheBuffer) {
    EXPECT_EQ((Cuts{{A(2046), "\r\n"}, {"b", ""}}), CutsOf(A(2046) + "\r\nb"));
    EXPECT_EQ((Cuts{{"x", "\n"}, {A(2044), "\r\n"}, {"b", ""}}), CutsOf("x\n" + A(2044) + "\r\nb"));
}

TEST_F(LineLoop, StartsAnywhere) {
    EXPECT_EQ((Cuts{{"c", "\n"}, {"d", ""}}), CutsOf("ab\r\nc\nd", 4));
    EXPECT_EQ((Cuts{{"", "\n"}, {"c", ""}}), CutsOf("ab\r\nc", 3));
    EXPECT_EQ(Cuts{}, CutsOf("ab", 2));
    EXPECT_EQ(Cuts{}, CutsOf("ab", 3));
    EXPECT_EQ(Cuts{}, CutsOf("ab", 0xFFFFFFFF));
}

TEST_F(LineLoop, IsExhaustedOnNoFile) {
    FileLineLoop const loop(Room());
    EXPECT_TRUE(loop.IsExhausted());
    EXPECT_TRUE(loop.Line().Empty());
    EXPECT_TRUE(loop.Ending().Empty());
    EXPECT_EQ(0u, CurrentLineLength(loop));
}

TEST_F(LineLoop, StaysExhausted) {
    auto const path = Open("a");
    FileLineLoop loop(Room(), *path, 0);
    for (int i = 0; i < 3; ++i) {
        ++loop;
        EXPECT_TRUE(loop.IsExhausted());
        EXPECT_EQ(0u, CurrentLineLength(loop));
    }
}

TEST_F(LineLoop, IsNotExhaustedWhileTheLastLineIsAtHand) {
    auto const path = Open("a\n");
    FileLineLoop const loop(Room(), *path, 0);
    EXPECT_FALSE(loop.IsExhausted());
}

TEST_F(LineLoop, CanStartAgain) {
    auto const path = Open("a\r\nb");
    FileLineLoop loop(Room(), *path, 0);
    ++loop;
    ++loop;
    ASSERT_TRUE(loop.IsExhausted());
    loop.Start(*path, 1);
    EXPECT_FALSE(loop.IsExhausted());
    EXPECT_EQ((Cut{"", "\r\n"}), At(loop));
}

TEST_F(LineLoop, TellsLengthsWithTheirEndings) {
    auto const path = Open("ab\r\nc\nd");
    auto const loop = MakeFileLineLoop(Room(), *path);
    for (std::uint32_t length : {4u, 2u, 1u}) {
        EXPECT_EQ(length, CurrentLineLength(*loop));
        EXPECT_EQ(length, LineLength(*loop));
        ++*loop;
    }
}

TEST_F(LineLoop, LengthsAreOneShortFromALostEndingOn) {
    auto const path = Open("x\n" + A(2045) + "\rb\nc");
    std::uint32_t offset = 0;
    FileLineLoop loop(Room(), *path, 0);
    for (; TextOf(loop.Line()) != "c"; ++loop) offset += CurrentLineLength(loop);
    EXPECT_EQ(2049u, offset);  // "c" is byte 2050
}

TEST_F(LineLoop, PointsIntoItsBufferAndWritesNowhereElse) {
    auto const path = Open("b\n" + A(5000));
    Data const room = Room(2048 + 16);
    for (FileLineLoop loop(Data(room.begin() + 8, 2048u), *path, 0); !loop.IsExhausted(); ++loop) {
        EXPECT_GE(loop.Line().begin(), room.begin() + 8);
        EXPECT_LE(loop.Ending().end(), room.end() - 8);
        EXPECT_EQ(loop.Line().end(), loop.Ending().begin());
    }
    EXPECT_EQ(std::string(8, '\xEE'), TextOf({room.begin(), 8u}));
    EXPECT_EQ(std::string(8, '\xEE'), TextOf({room.end() - 8, 8u}));
}

TEST_F(LineLoop, DoesWithABufferOfAnySizeFromTwoOn) {
    RandomFiles random(3);
    for (int i = 0; i < 3000; ++i) {
        std::size_t const size = 2 + random.Below(70);
        std::string const bytes = random.Small();
        auto const start = static_cast<std::uint32_t>(random.Below(bytes.size() + 2));
        auto const path = Open(bytes);
        FileLineLoop loop(Room(size), *path, start);
        Transcription::Scanner scanner(bytes, size, start);
        for (; !scanner.IsExhausted(); ++loop, ++scanner) {
            ASSERT_EQ((Cut{scanner.Line(), scanner.Ending()}), At(loop)) << Dump(bytes) << " in " << size;
            ASSERT_EQ(scanner.CurrentLineLength(), CurrentLineLength(loop));
            ASSERT_FALSE(loop.IsExhausted()) << Dump(bytes) << " in " << size;
        }
    }
}

TEST_F(LineLoop, RefusesAClosedFork) {
    FileReadingPath const closed;
    EXPECT_THROW(FileLineLoop(Room(), closed, 0), FileNotOpenError);
    FileLineLoop loop(Room());
    EXPECT_THROW(loop.Start(closed, 0), FileNotOpenError);
}

TEST_F(LineLoop, ComesToTheEndOfAFileThatBecameShorter) {
    auto const path = Open(A(2000) + "\n" + A(3000));
    FileLineLoop loop(Room(), *path, 0);
    fork.Write(A(2000) + "\n" + A(50));
    ++loop;
    EXPECT_EQ((Cut{A(50), ""}), At(loop));
    ++loop;
    EXPECT_TRUE(loop.IsExhausted());
}

TEST_F(LineLoop, ReadsNoMoreOfAFileThatBecameLongerThanTheBufferTook) {
    auto const path = Open("a\nb");
    FileLineLoop loop(Room(), *path, 0);
    fork.Write("a\nb\nc");
    ++loop;
    EXPECT_EQ((Cut{"b", ""}), At(loop));
    ++loop;
    EXPECT_TRUE(loop.IsExhausted());
}

// ---- Many lines at once

TEST_F(LineLoop, PassesAsManyLinesAsAreAsked) {
    auto const path = Open("a\r\nb\n\nc");
    std::int64_t count = 0;
    for (std::uint32_t const bytes : {0, 3, 5, 6, 7, 7}) {
        FileLineLoop loop(Room(), *path, 0);
        PassedLines passed;
        loop.Pass(count, passed);
        EXPECT_EQ(std::min<std::int64_t>(count, 4), passed.lines);
        EXPECT_EQ(bytes, passed.bytes);
        EXPECT_EQ(count >= 4, loop.IsExhausted());
        ++count;
    }
}

TEST_F(LineLoop, AddsToWhatWasPassed) {
    auto const path = Open("a\nb\nc\nd");
    FileLineLoop loop(Room(), *path, 0);
    PassedLines passed;
    loop.Pass(1, passed);
    loop.Pass(2, passed);
    EXPECT_EQ(3, passed.lines);
    EXPECT_EQ(6u, passed.bytes);
    EXPECT_EQ("d", At(loop).text);
}

TEST_F(LineLoop, PassesUntilTheTextWhichMayBeInTheLineAtHand) {
    auto const path = Open("abc\nxbx\nc");
    FileLineLoop loop(Room(), *path, 0);
    PassedLines passed;
    loop.PassUntil(DataOf("b"), passed);
    EXPECT_EQ(0, passed.lines);
    ++loop;
    loop.PassUntil(DataOf("b"), passed);
    EXPECT_EQ(0, passed.lines);
    ++loop;
    loop.PassUntil(DataOf("b"), passed);
    EXPECT_EQ(1, passed.lines);
    EXPECT_TRUE(loop.IsExhausted());
}

TEST_F(LineLoop, PassingWholeBufferfulsEndsBeforeALineThatFillsTheNext) {
    for (std::int64_t bufferfuls = 1; bufferfuls < 40; ++bufferfuls) {
        std::string bytes;
        for (std::int64_t lines = 128 * bufferfuls; lines > 0; --lines) bytes += A(14) + "\r\n";
        auto const path = Open(bytes + std::string(5000, 'b'));
        FileLineLoop loop(Room(), *path, 0);
        PassedLines passed;
        loop.Pass(128 * bufferfuls, passed);
        EXPECT_EQ(128 * bufferfuls, passed.lines);
        EXPECT_EQ(2048 * bufferfuls, passed.bytes);
        EXPECT_EQ((Cut{std::string(2048, 'b'), ""}), At(loop));
    }
}

TEST_F(LineLoop, PassingLeavesTheSameAsSingleSteps) {
    RandomFiles random(4);
    for (int i = 0; i < 2000 && !HasFailure(); ++i) {
        std::string const bytes = random.OneIn(4) ? random.EndingAtBufferEnds(100) : random.Small();
        std::size_t const size = 20 + random.Below(90);
        auto const path = Open(bytes);
        FileLineLoop loop(Room(size), *path, 0);
        Transcription::Scanner scanner(bytes, size, 0);
        while (!scanner.IsExhausted() && !HasFailure()) {
            auto const count = static_cast<std::int64_t>(random.Below(random.OneIn(2) ? 3 : 40));
            PassedLines passed, expected;
            for (; expected.lines < count && !scanner.IsExhausted(); ++scanner) {
                ++expected.lines;
                expected.bytes += scanner.CurrentLineLength();
            }
            loop.Pass(count, passed);
            EXPECT_EQ(expected.lines, passed.lines) << Dump(bytes) << " in " << size;
            EXPECT_EQ(expected.bytes, passed.bytes) << Dump(bytes) << " in " << size;
            EXPECT_EQ((Cut{scanner.Line(), scanner.Ending()}), At(loop)) << Dump(bytes) << " in " << size;
        }
        EXPECT_TRUE(loop.IsExhausted());
    }
}

TEST_F(LineLoop, PassingUntilATextLeavesTheSameAsSingleSteps) {
    RandomFiles random(5);
    for (int i = 0; i < 3000 && !HasFailure(); ++i) {
        std::string const bytes = random.OneIn(2) ? random.EndingAtBufferEnds(100) : random.Small();
        std::string const text = random.TextFor(bytes);
        std::size_t const size = 20 + random.Below(90);
        auto const path = Open(bytes);
        FileLineLoop loop(Room(size), *path, 0);
        Transcription::Scanner scanner(bytes, size, 0);
        while (!scanner.IsExhausted() && !HasFailure()) {
            PassedLines passed, expected;
            for (; !scanner.IsExhausted() && scanner.Line().find(text) == std::string::npos; ++scanner) {
                ++expected.lines;
                expected.bytes += scanner.CurrentLineLength();
            }
            loop.PassUntil(DataOf(text), passed);
            EXPECT_EQ(expected.lines, passed.lines) << Dump(text) << ", " << Dump(bytes) << " in " << size;
            EXPECT_EQ(expected.bytes, passed.bytes) << Dump(text) << ", " << Dump(bytes) << " in " << size;
            EXPECT_EQ((Cut{scanner.Line(), scanner.Ending()}), At(loop)) << Dump(bytes) << " in " << size;
            ++scanner;
            ++loop;
        }
        EXPECT_TRUE(loop.IsExhausted());
    }
}
