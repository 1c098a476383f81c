#pragma once

// A file as a sequence of lines: the line of a number, every line, those that start with or contain a text;
// and of one line its number and its neighbours. How bytes are cut into lines tells FileLineLoop.h. Lines are
// bytes, in whatever encoding.

#include <cstdint>

#include "Evaluator/Fingerprint.h"
#include "Evaluator/Values.h"
#include "content/FileLineLoop.h"
#include "content/FileReading.h"
#include "content/Range.h"
#include "filesystem/FileSystemObject.h"

/// Bytes that the line inspectors look at at one time, and so the longest line.
constexpr std::size_t kLineBufferSize = 2048;

/// A line of a file. A string to whoever wants one. Keeps the file's data fork open, so that its neighbours
/// can be read.
class file_line {
  public:
    /// Copies the text to inspector memory and shares the path. Throws what MakeString does.
    file_line(ConstData text, long long number, Range<unsigned long> range, SharingPtr<FileReadingPath> path);

    inspector_string text;       // first: the value begins as a string does
    std::int64_t number;         // the file's first line is 0
    Range<std::uint32_t> range;  // offsets of the first byte and of the one behind the ending
    SharingPtr<FileReadingPath> path;
};

/// Feeds the text.
Fingerprinter& operator<<(Fingerprinter& print, file_line const& line);

/// The line's number, from 1.
integer LineNumber(Of, file_line const& line);
/// The line of that number, from 1; of a negative number the first line, which then has that number.
/// NoSuchObject for 0 and past the last line. This and the others let the failures of opening and reading
/// through.
file_line NumberedLine(integer const& number, Of, file const& object);
/// The line before; of a longer one, or one joined with others, what lies in the 2048 bytes before the line.
/// NoSuchObject for the first line.
file_line PreviousLine(Of, file_line const& line);
/// The line behind. NoSuchObject for the last: an ending at the end of the file does not begin another line.
file_line NextLine(Of, file_line const& line);

/// The state of an iteration over lines. Each step throws NoSuchObject at the end of the file.
class line_iterator {
  public:
    line_iterator();
    line_iterator(line_iterator const&) = delete;
    line_iterator& operator=(line_iterator const&) = delete;

    file_line First(Of, file const& object);
    file_line Next(Of, file const& object);
    file_line FirstStartingWith(inspector_string const& text, Of, file const& object);
    file_line NextStartingWith(inspector_string const& text, Of, file const& object);
    file_line FirstContaining(inspector_string const& text, Of, file const& object);
    file_line NextContaining(inspector_string const& text, Of, file const& object);

  private:
    void Open(file const& object);
    void Advance();
    file_line Current();
    file_line CurrentStartingWith(inspector_string const& text);
    file_line CurrentContaining(inspector_string const& text);

    SharingPtr<FileReadingPath> path;
    SharingPtr<FileLineLoop> loop;
    unsigned char buffer[kLineBufferSize];
    std::uint32_t offset = 0;  // of the line at hand; once it was given, of the next
    std::int64_t number = 0;
};

/// The character set that the host is to assume for lines: "windows-1252". The text is the library's own.
extern "C" __attribute__((visibility("default"))) char const* GetCurrentCharSet();
