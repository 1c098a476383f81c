#pragma once

// Reading a file's data fork: the open fork, a cursor on it, and a walk over a part of it in chunks.
//
// None of these has a buffer of its own: what is read goes straight to where the caller wants it. Lengths are
// 32 bits wide throughout, so that a fork of 4 GiB or more is seen modulo 2^32. Failures are exceptions; two
// maps, one for opening and one for reading, tell which one stands for which of the platform's codes.

#include <cstdint>

#include "Evaluator/MacintoshPlatform.h"
#include "Evaluator/Output.h"
#include "Evaluator/Values.h"
#include "content/Range.h"
#include "frame/SharingPtr.h"

namespace MacintoshPlatform {

/// A data fork that is open for reading, or closed, as at first. Not copied: it closes the fork at its end.
class FileReadingPath {
  public:
    FileReadingPath() = default;
    FileReadingPath(FileReadingPath const&) = delete;
    FileReadingPath& operator=(FileReadingPath const&) = delete;
    /// Closes the fork; a failure to do so is of no consequence.
    ~FileReadingPath();

    /// Opens the data fork of the item at a location; fsRdPerm is the permission to read. Throws
    /// FileNotFoundError when there is no item, NotAFileError when it is a folder, and what ThrowError does
    /// of the platform's code. As soon as there is a file, what was open before is closed, and a failure
    /// leaves this closed.
    void OpenInternal(FileLocation const& location, signed char permission);
    /// Closes the fork, if one is open. When the platform cannot, throws what ThrowError does, and it counts
    /// as open still.
    void Close();
    /// Bytes of the fork now, the low 32 bits of their number. Throws FileNotOpenError when closed, and what
    /// ThrowError does.
    std::uint32_t Length() const;
    /// Throws what stands for a code of opening, closing and measuring; returns for 0.
    void ThrowError(short status) const;

    bool IsOpen() const { return openFlag != 0; }
    /// The platform's number of the fork; -1 while closed.
    std::int16_t ReferenceNumber() const { return referenceNumber; }

  private:
    std::int16_t referenceNumber = -1;
    std::int16_t openFlag = 0;  // all bits set while open
};

/// A cursor on an open fork, which must outlive it. Several may share one fork: each read says where it
/// begins.
class FileReader {
  public:
    /// Goes to a position. Returns the length that the fork has now, and that HasUnread compares with from
    /// then on. Throws what FileReadingPath::Length does.
    std::uint32_t Start(FileReadingPath const& path, long long position);
    /// The tolerant read: fills what room the buffer has with as much as the fork still has, which may be
    /// nothing. Throws what ThrowError does for any code but that for the end of the file.
    FileReader const& operator>>(Buffer& buffer) const;
    /// The exact read: fills the whole span. Throws EndOfFileError when the fork has less, and what
    /// ThrowError does.
    FileReader const& operator>>(Data span) const;
    /// Throws what stands for a code of reading; returns for 0.
    void ThrowError(short status) const;

    /// Where the next read begins.
    long long Position() const { return position; }
    /// Whether that, or so many bytes further on, is before the end as it was at the start.
    bool HasUnread(long long further = 0) const {
        return position + further < static_cast<long long>(length);
    }
    /// Goes on past bytes that were had otherwise.
    void Skip(unsigned long bytes) const { position += static_cast<long long>(bytes); }

  private:
    unsigned long Read(Data span, short& status) const;

    FileReadingPath const* path = nullptr;
    mutable std::int64_t position = 0;
    std::uint32_t length = 0;
};

}  // namespace MacintoshPlatform

/// An open data fork as the inspectors pass it around.
class FileReadingPath : public MacintoshPlatform::FileReadingPath {};

/// Opens the data fork of the item at a location for reading. Throws what OpenInternal does.
SharingPtr<FileReadingPath> MakeFileReadingPath(MacintoshPlatform::FileLocation const& location);

/// A walk over a range of a fork's bytes, in chunks as large as the caller's buffer. It has come to its end
/// when nothing remains; the last chunk then stays where it is. A chunk that is empty says that the fork has
/// become shorter than it was at the start: no others will come, and whoever walks must stop by itself.
class FileReadingLoop {
  public:
    /// A walk over nothing.
    explicit FileReadingLoop(Data buffer) : buffer(buffer) {}
    /// From `start` to the end of the fork, or to `end`. Each reads the first chunk and throws as Start does.
    FileReadingLoop(Data buffer, MacintoshPlatform::FileReadingPath const& path, unsigned long start);
    FileReadingLoop(Data buffer, MacintoshPlatform::FileReadingPath const& path, unsigned long start,
                    unsigned long end);
    FileReadingLoop(Data buffer, MacintoshPlatform::FileReadingPath const& path, Range<unsigned long> range);

    /// Begins anew and reads the first chunk, unless the range is empty. Throws what FileReader::Start and
    /// Read do.
    void Start(MacintoshPlatform::FileReadingPath const& path, unsigned long start);
    void Start(MacintoshPlatform::FileReadingPath const& path, unsigned long start, unsigned long end);
    void Start(MacintoshPlatform::FileReadingPath const& path, Range<unsigned long> range);
    /// Reads a chunk: as much as the buffer holds, remains, and the fork has. Throws
    /// FileReadingLoopEndOfFileError behind the end that the fork had at the start, and what the tolerant
    /// read does.
    void Read();
    /// Goes on to the next chunk, if anything remains. Throws as Read does.
    FileReadingLoop& operator++();

    /// The bytes that were read last; they lie at the front of the buffer.
    ConstData Chunk() const { return chunk; }
    /// Bytes of the range from the chunk's first one on.
    std::uint32_t Remaining() const { return remaining; }

  private:
    Data buffer;
    MacintoshPlatform::FileReader reader;
    ConstData chunk;
    std::uint32_t remaining = 0;
};
