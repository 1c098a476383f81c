#include "content/FileLineLoop.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "content/ByteSearch.h"

using Inspectors::FindLineEndings;
using Inspectors::IsLineEnd;
using Inspectors::LineEndings;
using Inspectors::TextFinder;

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
            unread = {unread.begin() + taken.Size(), unread.end()};
        }
    }

    /// Puts a copy of a buffer right before the bytes that were not taken yet. Returns where it begins, or
    /// null where there is no room.
    unsigned char* PutBefore(ConstData buffer) {
        if (unread.Empty() || buffer.Size() > kRoom) return nullptr;
        return static_cast<unsigned char*>(
            std::memcpy(unread.begin() - buffer.Size(), buffer.begin(), buffer.Size()));
    }
    unsigned char* End() const { return unread.end(); }
    /// Takes all bytes up to a place.
    void TakeUntil(MacintoshPlatform::FileReader const& reader, unsigned char* place) {
        reader.Skip(static_cast<unsigned long>(place - unread.begin()));
        unread = {place, unread.end()};
    }

  private:
    static constexpr std::size_t kRoom = 2048;
    static constexpr std::size_t kMost = 65536;

    // Blocks begin small: the end of the passing may be near.
    bool ReadBlock(MacintoshPlatform::FileReader ahead, std::size_t atLeast) {
        size = std::min(std::max(atLeast, 2 * size), kMost);
        Buffer block(Data(bytes + kRoom, size));
        ahead >> block;
        unread = {bytes + kRoom, block.Written().Size()};
        return !unread.Empty();
    }

    std::size_t size = 0;
    Data unread;
    unsigned char bytes[kRoom + kMost];
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
    if (bytes.Size() == 1) return {first, atEnd ? first + 1 : first};
    if (bytes.Empty()) return bytes;
    return {first, first[1] != first[0] && IsLineEnd(first[1]) ? first + 2 : first + 1};
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
        PassBufferfuls(nullptr, last - passed.lines, passed, ahead);
    }
    while (passed.lines < last && !IsExhausted()) GoPastCurrent(passed, &ahead);
}

void FileLineLoop::PassUntil(ConstData text, PassedLines& passed) {
    TextFinder const finder(text);
    bool const mayStandInALine = FindLineEnd(text) == text.end();
    TextFinder const* const used = mayStandInALine ? &finder : nullptr;
    if (!IsExhausted() && !PassBufferful(used, passed, nullptr)) PassFarther(used, passed);
}

// Apart, so that its room on the stack is there only when it is needed.
void FileLineLoop::PassFarther(TextFinder const* finder, PassedLines& passed) {
    ReadAhead ahead;
    while (!IsExhausted()) {
        PassBufferfuls(finder, std::numeric_limits<std::int64_t>::max(), passed, ahead);
        if (PassBufferful(finder, passed, &ahead)) return;
    }
}

// Goes to the line in the buffer that contains the text and returns true; where there is none, goes on to the
// first that is not complete there. Without a finder there is none.
bool FileLineLoop::PassBufferful(TextFinder const* finder, PassedLines& passed, ReadAhead* ahead) {
    ConstData const rest(line.begin(), dataEnd);
    unsigned char const* const found = finder != nullptr ? finder->FindIn(rest) : nullptr;
    LineEndings const before = found != nullptr ? FindLineEndings({rest.begin(), found}, false)
                                                : FindLineEndings(rest, !IsAllRead());
    if (before.count != 0) {
        GoPast(before, passed, ahead);
    } else if (found == nullptr) {
        GoPastCurrent(passed, ahead);
    }
    return found != nullptr;
}

// Goes past bufferfuls without the text and with at most so many lines, as long as the bytes of the next one
// were read ahead: the buffer is moved over them as a window, and filled where it comes to rest.
void FileLineLoop::PassBufferfuls(TextFinder const* finder, std::int64_t most, PassedLines& passed,
                                  ReadAhead& ahead) {
    bool const isFullOfLines = line.begin() == buffer.begin() && dataEnd == buffer.end();
    unsigned char* const first = isFullOfLines ? ahead.PutBefore(buffer) : nullptr;
    if (first == nullptr) return;
    auto const size = static_cast<std::ptrdiff_t>(buffer.Size());
    unsigned char* window = first;
    unsigned char* unsearched = first;  // a text that stands before it has been seen
    while (reader.HasUnread(window - first)) {
        unsigned char* const end = window + size;
        if (finder != nullptr && finder->FindIn({unsearched, end}) != nullptr) break;
        LineEndings const complete = FindLineEndings({window, end}, true);
        if (complete.count == 0 || complete.count > most) break;
        std::ptrdiff_t const linesSize = complete.end - window;
        bool const losesByte = linesSize != size && IsLineEnd(end[-1]);
        unsigned char* const next = window + linesSize + (losesByte ? 1 : 0);
        if (ahead.End() - next < size) break;
        // The line that goes on in the next bufferful moves up to it over the byte that is lost.
        if (losesByte) std::memmove(next, next - 1, static_cast<std::size_t>(end - next));
        bool const isAnew = finder == nullptr || losesByte;
        unsearched = isAnew ? next : std::max(next, end - std::min(finder->TextSize(), buffer.Size()) + 1);
        most -= complete.count;
        passed.lines += complete.count;
        passed.bytes += static_cast<std::uint32_t>(linesSize);
        window = next;
    }
    if (window == first) return;
    std::memcpy(buffer.begin(), window, buffer.Size());
    ahead.TakeUntil(reader, window + size);
    ScanForLine(buffer.begin(), buffer.begin());
}

SharingPtr<FileLineLoop> MakeFileLineLoop(Data buffer, MacintoshPlatform::FileReadingPath const& path) {
    return SharingPtr<FileLineLoop>(new FileLineLoop(buffer, path, 0));
}

std::uint32_t CurrentLineLength(FileLineLoop const& loop) {
    return static_cast<std::uint32_t>(loop.Ending().end() - loop.Line().begin());
}

std::uint32_t LineLength(FileLineLoop const& loop) { return CurrentLineLength(loop); }
