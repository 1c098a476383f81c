#include "content/FileLines.h"

#include <algorithm>
#include <string>
#include <utility>

#include "Evaluator/Exceptions.h"
#include "Evaluator/Text.h"

namespace {

// A number that is one more, or one less; beyond the largest comes the smallest.
std::int64_t Neighbour(std::int64_t number, std::int64_t distance) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(number) +
                                     static_cast<std::uint64_t>(distance));
}

// The line that the scanner is at, as the file's line of that number at that offset.
file_line LineAt(FileLineLoop const& loop, std::int64_t number, std::uint32_t offset,
                 SharingPtr<FileReadingPath> const& path) {
    std::uint32_t const end = offset + CurrentLineLength(loop);
    return {loop.Line(), number, {offset, end}, path};
}

inspector_string AsString(ConstData line) { return {line.begin(), static_cast<std::uint32_t>(line.Size())}; }

}  // namespace

file_line::file_line(ConstData itsText, long long itsNumber, Range<unsigned long> itsRange,
                     SharingPtr<FileReadingPath> itsPath)
    : text(MakeString(itsText)), number(itsNumber), range(itsRange), path(std::move(itsPath)) {}

Fingerprinter& operator<<(Fingerprinter& print, file_line const& line) { return print << line.text; }

integer LineNumber(Of, file_line const& line) { return Neighbour(line.number, 1); }

file_line NumberedLine(integer const& number, Of, file const& object) {
    if (number == 0) throw NoSuchObject();
    SharingPtr<FileReadingPath> const path = MakeFileReadingPath(object);
    unsigned char buffer[kLineBufferSize];
    FileLineLoop loop(Data(buffer, sizeof buffer), *path, 0);
    PassedLines before;
    if (number > 1) loop.Pass(number - 1, before);
    if (loop.IsExhausted()) throw NoSuchObject();
    return LineAt(loop, Neighbour(number, -1), before.bytes, path);
}

file_line PreviousLine(Of, file_line const& line) {
    if (line.number == 0) throw NoSuchObject();
    std::uint32_t const begin = line.range.begin;
    std::uint32_t offset = begin - std::min<std::uint32_t>(kLineBufferSize, begin);
    unsigned char buffer[kLineBufferSize];
    FileLineLoop loop(Data(buffer, sizeof buffer), *line.path, offset);
    while (offset + CurrentLineLength(loop) < begin && !loop.IsExhausted()) {
        offset += CurrentLineLength(loop);
        ++loop;
    }
    // The file has become shorter since the line was read.
    if (loop.IsExhausted()) throw NoSuchObject();
    return LineAt(loop, Neighbour(line.number, -1), offset, line.path);
}

file_line NextLine(Of, file_line const& line) {
    unsigned char buffer[kLineBufferSize];
    FileLineLoop const loop(Data(buffer, sizeof buffer), *line.path, line.range.end);
    if (loop.IsExhausted()) throw NoSuchObject();
    return LineAt(loop, Neighbour(line.number, 1), line.range.end, line.path);
}

// ---- The iteration

line_iterator::line_iterator() : path(nullptr), loop(nullptr) {}

void line_iterator::Open(file const& object) {
    offset = 0;
    number = 0;
    path = MakeFileReadingPath(object);
    loop = MakeFileLineLoop(Data(buffer, sizeof buffer), *path);
}

void line_iterator::Advance() {
    ++*loop;
    ++number;
}

file_line line_iterator::Current() {
    if (loop->IsExhausted()) throw NoSuchObject();
    file_line const line = LineAt(*loop, number, offset, path);
    offset = line.range.end;
    return line;
}

file_line line_iterator::CurrentStartingWith(inspector_string const& text) {
    while (!loop->IsExhausted() && !StartsWith(AsString(loop->Line()), text)) {
        offset += CurrentLineLength(*loop);
        Advance();
    }
    return Current();
}

file_line line_iterator::CurrentContaining(inspector_string const& text) {
    PassedLines passed;
    loop->PassUntil(text, passed);
    number += passed.lines;
    offset += passed.bytes;
    return Current();
}

file_line line_iterator::First(Of, file const& object) {
    Open(object);
    return Current();
}

file_line line_iterator::Next(Of, file const&) {
    Advance();
    return Current();
}

file_line line_iterator::FirstStartingWith(inspector_string const& text, Of, file const& object) {
    Open(object);
    return CurrentStartingWith(text);
}

file_line line_iterator::NextStartingWith(inspector_string const& text, Of, file const&) {
    Advance();
    return CurrentStartingWith(text);
}

file_line line_iterator::FirstContaining(inspector_string const& text, Of, file const& object) {
    Open(object);
    return CurrentContaining(text);
}

file_line line_iterator::NextContaining(inspector_string const& text, Of, file const&) {
    Advance();
    return CurrentContaining(text);
}

char const* GetCurrentCharSet() {
    static std::string name;
    name = "windows-1252";
    return name.c_str();
}
