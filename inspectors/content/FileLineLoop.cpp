#include "content/FileLineLoop.h"

#include <algorithm>
#include <cstring>

#include "content/ByteSearch.h"

using Inspectors::FindLineEndings;
using Inspectors::LineEndings;

/// Bytes of the fork beyond those in the scanner's buffer: what passes over many lines in one go does not
/// read each bufferful by itself.
class FileLineLoop::ReadAhead {
  public:
    ReadAhead() = default;
    ReadAhead(ReadAhead const&) = delete;
    ReadAhead& operator=(ReadAhead const&) = delete;

    /// Does what the reader's tolerant read does.
    void Read(MacintoshPlatform::FileReader const& reader, Buffer& buffer) {
        while (!buffer.Room().Empty()) {
            if (unread.Empty() && !ReadBlock(reader, buffer.Room().Size())) return;
            ConstData const taken(unread.begin(), std::min(unread.Size(), buffer.Room().Size()));
            buffer << taken;
            reader.Skip(taken.Size());
            unread = {taken.end(), unread.end()};
        }
    }

  private:
    // Blocks begin small: the end of the passing may be near.
    bool ReadBlock(MacintoshPlatform::FileReader ahead, std::size_t atLeast) {
        size = std::min(std::max(atLeast, 2 * size), sizeof bytes);
        Buffer block(Data(bytes, size));
        ahead >> block;
        unread = block.Written();
        return !unread.Empty();
    }

    std::size_t size = 0;
    ConstData unread;
    unsigned char bytes[65536];
};

FileLineLoop::FileLineLoop(Data room)
    : buffer(room), dataEnd(room.begin()), line(room.begin(), room.begin()), ending(line) {}

FileLineLoop::FileLineLoop(Data room, MacintoshPlatform::FileReadingPath const& path, unsigned long start)
    : FileLineLoop(room) {
    Start(path, start);
}

void FileLineLoop::Start(MacintoshPlatform::FileReadingPath const& path, unsigned long start) {
    reader.Start(path, static_cast<long long>(start));
    cameToEnd = false;
    ReadFromFile(buffer);
    ScanForLine(buffer.begin(), buffer.begin());
}

FileLineLoop& FileLineLoop::operator++() {
    Advance(nullptr);
    return *this;
}

void FileLineLoop::Advance(ReadAhead* ahead) {
    ScanForLine(ending.end(), ending.end());
    bool const beginsBuffer = line.begin() == buffer.begin();
    if (!ending.Empty() || beginsBuffer || IsAllRead()) return;
    std::memmove(buffer.begin(), line.begin(), line.Size());
    Data const rest(buffer.begin() + line.Size(), buffer.end());
    ReadFromFile(rest, ahead);
    ScanForLine(buffer.begin(), rest.begin());
}

// A read that is cut short has come to the fork's end, also before the length that it had at the start.
void FileLineLoop::ReadFromFile(Data span, ReadAhead* ahead) {
    Buffer read(span);
    if (ahead != nullptr) {
        ahead->Read(reader, read);
    } else {
        reader >> read;
    }
    dataEnd = read.Written().end();
    cameToEnd = dataEnd != span.end();
}

void FileLineLoop::ScanForLine(unsigned char const* lineStart, unsigned char const* scanFrom) {
    unsigned char const* const end = FindLineEnd({scanFrom, dataEnd});
    line = {lineStart, end};
    ending = InitialLineEnding({end, dataEnd}, IsAllRead());
}

unsigned char const* FileLineLoop::FindLineEnd(ConstData bytes) { return Inspectors::FindLineEnd(bytes); }

ConstData FileLineLoop::InitialLineEnding(ConstData bytes, bool atEnd) {
    unsigned char const* const first = bytes.begin();
    auto const isLineEnd = [](unsigned char byte) { return byte == '\r' || byte == '\n'; };
    if (bytes.Size() == 1) return {first, atEnd ? first + 1 : first};
    if (bytes.Empty()) return bytes;
    return {first, first[1] != first[0] && isLineEnd(first[1]) ? first + 2 : first + 1};
}

// ---- Many lines at once

// Goes past lines that are complete in the buffer, of which the last ends there.
void FileLineLoop::GoPast(LineEndings const& endings, PassedLines& passed, ReadAhead* ahead) {
    passed.lines += endings.count;
    passed.bytes += static_cast<std::uint32_t>(endings.end - line.begin());
    ending = {endings.end, endings.end};
    Advance(ahead);
}

void FileLineLoop::GoPastCurrent(PassedLines& passed, ReadAhead* ahead) {
    ++passed.lines;
    passed.bytes += CurrentLineLength(*this);
    Advance(ahead);
}

void FileLineLoop::Pass(std::int64_t lines, PassedLines& passed) {
    ReadAhead ahead;
    std::int64_t const last = passed.lines + lines;
    while (passed.lines < last && !IsExhausted()) {
        LineEndings const complete = FindLineEndings({line.begin(), dataEnd}, !IsAllRead());
        if (complete.count > last - passed.lines) break;
        complete.count == 0 ? GoPastCurrent(passed, &ahead) : GoPast(complete, passed, &ahead);
    }
    while (passed.lines < last && !IsExhausted()) GoPastCurrent(passed, &ahead);
}

void FileLineLoop::PassUntil(ConstData text, PassedLines& passed) {
    if (!IsExhausted() && !PassBufferful(text, passed, nullptr)) PassFarther(text, passed);
}

// Apart, so that its room on the stack is there only when it is needed.
void FileLineLoop::PassFarther(ConstData text, PassedLines& passed) {
    ReadAhead ahead;
    while (!IsExhausted() && !PassBufferful(text, passed, &ahead)) {
    }
}

// Goes to the line in the buffer that contains the text and returns true; where there is none, goes on to the
// first that is not complete there.
bool FileLineLoop::PassBufferful(ConstData text, PassedLines& passed, ReadAhead* ahead) {
    ConstData const rest(line.begin(), dataEnd);
    bool const mayStandInALine = FindLineEnd(text) == text.end();
    unsigned char const* const found = mayStandInALine ? Inspectors::FindText(rest, text) : nullptr;
    LineEndings const before = found != nullptr ? FindLineEndings({rest.begin(), found}, false)
                                                : FindLineEndings(rest, !IsAllRead());
    if (before.count != 0) {
        GoPast(before, passed, ahead);
    } else if (found == nullptr) {
        GoPastCurrent(passed, ahead);
    }
    return found != nullptr;
}

SharingPtr<FileLineLoop> MakeFileLineLoop(Data buffer, MacintoshPlatform::FileReadingPath const& path) {
    return SharingPtr<FileLineLoop>(new FileLineLoop(buffer, path, 0));
}

std::uint32_t CurrentLineLength(FileLineLoop const& loop) {
    return static_cast<std::uint32_t>(loop.Ending().end() - loop.Line().begin());
}

std::uint32_t LineLength(FileLineLoop const& loop) { return CurrentLineLength(loop); }
