#pragma once

// Cutting a fork's bytes into lines, in a fixed buffer of the caller's.
//
// Only CR and LF end a line: one of them, or the two in either order, which are one ending. A line longer
// than the buffer comes in segments of the buffer's size, each a line of its own; the last one has the
// ending. Where a line has begun in the buffer and does not end there, its text is moved to the front and the
// buffer is filled up behind it. An ending byte that was the very last byte of a full buffer is lost then: a
// lone one is not seen, and the line goes on with the next; of a pair only the second byte is seen. Offsets
// counted by line lengths are short by one from there on.
//
//     a b CR LF c LF LF d      lines: "ab" (4 bytes with its ending), "c" (2), "" (1), "d" (1)

#include <cstdint>

#include "Evaluator/Values.h"
#include "content/ByteSearch.h"
#include "content/FileReading.h"

/// Lines that were passed over, and their bytes with their endings; offsets are 32 bits wide.
struct PassedLines {
    std::int64_t lines = 0;
    std::uint32_t bytes = 0;
};

/// Steps through the lines of a fork. Fork and buffer must outlive it.
class FileLineLoop {
  public:
    /// On no file: exhausted.
    explicit FileLineLoop(Data buffer);
    /// At the line that begins at `start`. Throws what FileReader's start and tolerant read do, as the other
    /// steps do.
    FileLineLoop(Data buffer, MacintoshPlatform::FileReadingPath const& path, unsigned long start);

    void Start(MacintoshPlatform::FileReadingPath const& path, unsigned long start);
    /// Goes on to the next line.
    FileLineLoop& operator++();

    /// Whether the end of the fork has been reached and there is no line at hand.
    bool IsExhausted() const { return IsAllRead() && line.begin() == dataEnd; }
    /// The line's text without its ending, and the ending: 0, 1 or 2 bytes right behind it. In the buffer;
    /// until the next step.
    ConstData Line() const { return line; }
    ConstData Ending() const { return ending; }

    // The same steps, many at once: what they leave behind, and what they count, is what single ones would.

    /// Goes on by as many lines, or to the end of the fork, and adds those that it went past to `passed`.
    void Pass(std::int64_t lines, PassedLines& passed);
    /// Goes on to the next line that contains the text, which may be the one at hand, or to the end of the
    /// fork, and adds the lines that it went past to `passed`.
    void PassUntil(ConstData text, PassedLines& passed);

  private:
    class ReadAhead;

    void Advance(ReadAhead* ahead);
    void ReadFromFile(Data span, ReadAhead* ahead = nullptr);
    void ScanForLine(unsigned char const* lineStart, unsigned char const* scanFrom);
    static unsigned char const* FindLineEnd(ConstData bytes);
    static ConstData InitialLineEnding(ConstData bytes, bool atEnd);

    /// Whether the buffer has the last bytes of the fork. It may have become shorter than it was at the
    /// start.
    bool IsAllRead() const { return cameToEnd || !reader.HasUnread(); }
    void GoPast(Inspectors::LineEndings const& endings, PassedLines& passed, ReadAhead* ahead);
    void GoPastCurrent(PassedLines& passed, ReadAhead* ahead);
    bool PassBufferful(Inspectors::TextFinder const* finder, PassedLines& passed, ReadAhead* ahead);
    [[gnu::noinline]] void PassFarther(Inspectors::TextFinder const* finder, PassedLines& passed);
    void PassBufferfuls(Inspectors::TextFinder const* finder, std::int64_t most, PassedLines& passed,
                        ReadAhead& ahead);

    Data buffer;
    MacintoshPlatform::FileReader reader;
    unsigned char const* dataEnd;
    ConstData line;
    ConstData ending;
    bool cameToEnd = false;  // the last read was cut short
};

/// A new scanner at the beginning of a fork. Throws as the scanner's constructor does.
SharingPtr<FileLineLoop> MakeFileLineLoop(Data buffer, MacintoshPlatform::FileReadingPath const& path);

/// Bytes of the line at hand with its ending. Both are the same.
std::uint32_t CurrentLineLength(FileLineLoop const& loop);
std::uint32_t LineLength(FileLineLoop const& loop);
