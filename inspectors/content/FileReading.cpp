#include "content/FileReading.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "Evaluator/Exceptions.h"

namespace MacintoshPlatform {

// ---- The open fork

FileReadingPath::~FileReadingPath() {
    try {
        Close();
    } catch (...) {
        // nobody is left to tell
    }
}

void FileReadingPath::OpenInternal(FileLocation const& location, signed char permission) {
    MacFileInfo const info(location);
    if (info.valid == 0) {
        if (info.status != dirNFErr) ThrowError(static_cast<short>(info.status));
        throw FileNotFoundError();
    }
    if (info.IsFolder()) throw NotAFileError();
    Close();
    static HFSUniStr255 forkName;
    ThrowError(FSGetDataForkName(&forkName));
    ThrowError(FSOpenFork(&info.reference, forkName.length, forkName.unicode, permission, &referenceNumber));
    openFlag = -1;
}

void FileReadingPath::Close() {
    if (!IsOpen()) return;
    ThrowError(FSCloseFork(referenceNumber));
    referenceNumber = -1;
    openFlag = 0;
}

std::uint32_t FileReadingPath::Length() const {
    if (!IsOpen()) throw FileNotOpenError();
    SInt64 size = 0;
    ThrowError(FSGetForkSize(referenceNumber, &size));
    return static_cast<std::uint32_t>(size);
}

void FileReadingPath::ThrowError(short status) const {
    switch (status) {
        case noErr:
            return;
        case dskFulErr:
            throw DiskFullError();
        case bdNamErr:
            throw BadFileNameError();
        case fnfErr:
            throw FileNotFoundError();
        case fLckdErr:
            throw FileLockError();
        case opWrErr:
            throw FileBusyError();
        case permErr:
        case afpAccessDenied:
            throw FilePermissionError();
        case dirNFErr:
            throw DirectoryNotFoundError();
        default:
            throw FileIOError();
    }
}

// ---- The cursor

std::uint32_t FileReader::Start(FileReadingPath const& itsPath, long long itsPosition) {
    path = &itsPath;
    position = itsPosition;
    length = itsPath.Length();
    return length;
}

// Reads into the front of the span and returns how many bytes there are; the code is for the caller to judge.
unsigned long FileReader::Read(Data span, short& status) const {
    SInt16 const fork = path->ReferenceNumber();
    ThrowError(FSSetForkPosition(fork, fsFromStart, position));
    ByteCount actual = 0;
    status = FSReadFork(fork, fsFromStart, position, span.Size(), span.begin(), &actual);
    return actual;
}

FileReader const& FileReader::operator>>(Buffer& buffer) const {
    short status = noErr;
    unsigned long const actual = Read(buffer.Room(), status);
    if (status != eofErr) ThrowError(status);
    position += static_cast<long long>(actual);
    buffer.Advance(actual);
    return *this;
}

FileReader const& FileReader::operator>>(Data span) const {
    short status = noErr;
    unsigned long const actual = Read(span, status);
    ThrowError(status);
    position += static_cast<long long>(actual);
    if (actual < span.Size()) throw EndOfFileError();
    return *this;
}

void FileReader::ThrowError(short status) const {
    switch (status) {
        case noErr:
            return;
        case eofErr:
            throw EndOfFileError();
        case fLckdErr:
            throw FileLockError();
        case afpAccessDenied:
            throw FilePermissionError();
        default:
            throw FileIOError();
    }
}

}  // namespace MacintoshPlatform

SharingPtr<FileReadingPath> MakeFileReadingPath(MacintoshPlatform::FileLocation const& location) {
    auto path = std::make_unique<FileReadingPath>();
    path->OpenInternal(location, fsRdPerm);
    return SharingPtr<FileReadingPath>(path.release());
}

// ---- The walk

using MacintoshPlatform::FileReader;

FileReadingLoop::FileReadingLoop(Data room, MacintoshPlatform::FileReadingPath const& path,
                                 unsigned long start)
    : buffer(room) {
    Start(path, start);
}

FileReadingLoop::FileReadingLoop(Data room, MacintoshPlatform::FileReadingPath const& path,
                                 unsigned long start, unsigned long end)
    : buffer(room) {
    Start(path, start, end);
}

FileReadingLoop::FileReadingLoop(Data room, MacintoshPlatform::FileReadingPath const& path,
                                 Range<unsigned long> range)
    : buffer(room) {
    Start(path, range);
}

void FileReadingLoop::Start(MacintoshPlatform::FileReadingPath const& path, unsigned long start) {
    Start(path, start, path.Length());
}

void FileReadingLoop::Start(MacintoshPlatform::FileReadingPath const& path, Range<unsigned long> range) {
    Start(path, range.begin, range.end);
}

void FileReadingLoop::Start(MacintoshPlatform::FileReadingPath const& path, unsigned long start,
                            unsigned long end) {
    reader.Start(path, static_cast<long long>(start));
    remaining = static_cast<std::uint32_t>(end) - static_cast<std::uint32_t>(start);
    if (remaining != 0) Read();
}

void FileReadingLoop::Read() {
    if (!reader.HasUnread()) throw FileReadingLoopEndOfFileError();
    Data const wanted(buffer.begin(), std::min<std::size_t>(buffer.Size(), remaining));
    Buffer read(wanted);
    reader >> read;
    chunk = read.Written();
}

FileReadingLoop& FileReadingLoop::operator++() {
    remaining -= static_cast<std::uint32_t>(chunk.Size());
    if (remaining != 0) Read();
    return *this;
}
