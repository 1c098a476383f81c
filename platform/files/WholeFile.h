#pragma once

// Files that are read as a whole.

#include <CoreFoundation/CFURL.h>

#include <cstddef>
#include <span>

#include "foundation/Data.h"

namespace Platform {

/// The largest file that is read as a whole. As a property list it usually makes objects of twice its size,
/// and at worst of some sixteen times.
inline constexpr SInt64 kMostOfWholeFile = SInt64{256} << 20;

/// The bytes of the regular file that a URL leads to, a new object that knows its file. Null with a code in
/// `error` when there is none that can be read: those of PlatformGetItem and FSOpenFork, and fileBoundsErr
/// for one of more than `most` bytes, of which nothing is read. Failures are noted for PlatformFileFailure;
/// slow mounts are waited for patiently. A file that grows meanwhile is read to its former end, one that
/// shrinks to its new one.
__CFData* ReadWholeFile(CFURLRef url, OSErr& error, SInt64 most = kMostOfWholeFile);

/// Reads the first bytes of such a file, as many as `to` takes and it has. A result code, noted and waited
/// for in the same way.
OSErr ReadFileBeginning(CFURLRef url, std::span<UInt8> to, std::size_t& actual);

}  // namespace Platform
