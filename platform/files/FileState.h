#pragma once

// What is remembered of files that were read, so that it shows whether they have changed.

#include <Carbon/Files.h>

#include <compare>
#include <cstdint>
#include <string_view>

#include "foundation/Path.h"

namespace Platform {

/// What tells an item from others, and its content from that at another time.
struct FileState {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    std::int64_t born = 0;      // in ns since 1970; 0 where the file system does not tell
    std::int64_t modified = 0;  // the content
    std::int64_t changed = 0;   // anything of it
    bool isFolder = false;

    bool operator==(FileState const&) const = default;
};

/// An item that a path leads to, and its plain path.
struct SeenItem {
    Path path;
    FileState state;
};

/// Looks at the item that a path leads to, as one that need not exist: a failure, the result code, is not
/// noted. Waits patiently for slow mounts.
OSErr SeeItem(std::string_view path, SeenItem& item);

/// Whether a result code says that a wait was given up, so that nothing is known.
bool WasGivenUp(OSErr error);

}  // namespace Platform
