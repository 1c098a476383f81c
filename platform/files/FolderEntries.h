#pragma once

// The entries of a folder, as the kernel lists them.

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "files/Locations.h"

namespace Platform {

struct FolderEntry {
    std::string_view name;  // a NUL stands behind it; neither "." nor ".."
    std::uint64_t inode = 0;
    unsigned char type = 0;  // DT_DIR and the like; DT_UNKNOWN on file systems that do not tell
};

/// Reads the entries of a folder, some 32 KiB of them at a time. The folder's descriptor is passed to each
/// call, so that it may be closed and opened again meanwhile.
class FolderEntries {
  public:
    /// Reads on when all entries at hand were taken; `reopened` when the descriptor is a new one, whose
    /// position is that of the folder's beginning. 0, or a value of errno.
    int Read(int folder, bool reopened);
    /// Takes the next entry at hand. Lent until the next Read; false when there is none.
    bool Take(FolderEntry& entry);
    /// Whether no entry is at hand.
    bool IsEmpty() const { return taken == bytes.size(); }
    /// Whether all entries have been read, if not taken.
    bool IsAtEnd() const { return atEnd; }

    /// Whether any entry from here to the folder's end, those at hand included, has a name that begins with a
    /// dot and of which `holds` is true. Takes none of them. 0, or a value of errno.
    int LookAhead(int folder, bool (*holds)(std::string_view dotted), bool& any) const;

  private:
    void SkipDots();

    std::string bytes;  // as getdents64(2) gave them
    std::size_t taken = 0;
    std::int64_t position = 0;  // behind the entry taken last, as the file system counts
    bool atEnd = false;
};

/// Calls `visit` with each entry of the folder at a place, as far as it can be read. 0, or a value of errno.
template <class Visit>
int ForEachEntry(Place place, Visit const& visit) {
    int const number = openat(place.folder, place.path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (number < 0) return errno;
    Descriptor const folder(number);
    FolderEntries entries;
    int error = 0;
    while (error == 0 && !entries.IsAtEnd()) {
        error = entries.Read(number, false);
        for (FolderEntry entry; error == 0 && entries.Take(entry);) visit(entry);
    }
    return error;
}

}  // namespace Platform
