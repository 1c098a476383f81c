#pragma once

// The bytes of an open fork, and how a file is opened for them.
//
// Functions here return a result code and do their work there and then, however long a file system takes.

#include <Carbon/Files.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "files/AppleDouble.h"
#include "files/Descriptor.h"

namespace Platform {

/// Where the bytes of a fork are: in an open file, in memory, or nowhere.
struct ForkBytes {
    SharedDescriptor file;
    std::shared_ptr<std::vector<UInt8> const> memory;
    std::optional<ByteRange> part;  // of the file, which holds more than the fork
};

/// Opens the data fork of a referenced file: see FSOpenFork. It is read now where `isMadeWhenRead`, or the
/// type of its file system, says that it is made then.
OSErr OpenDataFork(FSRef const& reference, bool isMadeWhenRead, ForkBytes& bytes);
/// Opens the resource fork of a referenced file, wherever MacMetadata.h finds it: see FSOpenResFile. eofErr
/// when there is none.
OSErr OpenResourceFork(FSRef const& reference, ForkBytes& bytes);
/// How many there are now.
OSErr CountBytes(ForkBytes const& bytes, SInt64& count);
/// Reads from an offset on, which is not negative; `actual` gets the number of bytes, also on failure. Fewer
/// than asked for are no failure: the fork has no more.
OSErr ReadBytes(ForkBytes const& bytes, SInt64 from, std::span<UInt8> to, std::size_t& actual);

}  // namespace Platform
