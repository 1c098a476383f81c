#pragma once

// References to files and folders, and the folders that FSSpecs name. Both tables are bounded, so that
// memory does not grow with the files that are met.

#include <Carbon/Files.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "files/Catalog.h"

namespace Platform {

/// What a reference holds itself.
struct Identity {
    std::uint64_t serial = 0;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    bool IsSameItem(Identity const& other) const { return device == other.device && inode == other.inode; }
};

/// The device and inode of an item, as what describes it has them; no serial number.
Identity IdentityOf(Item const& item);

/// A location that a reference was made with.
struct RememberedLocation {
    Location location;
    bool isFolder = false;
};

/// Remembers the locations of the references made last. Safe from any thread.
///
/// References are made in rows: those of one batch of a listing share a row, another stands in a row of its
/// own.
class ReferenceTable {
  public:
    /// Remembers at least so many.
    explicit ReferenceTable(std::size_t capacity) : least(capacity) {}
    /// The table of the process, of 1024 references.
    static ReferenceTable& Shared();

    /// A new reference to an item that was looked at.
    FSRef Remember(Location const& location, Item const& item);
    /// The location of a reference; empty for one that is stale or was never made.
    std::optional<RememberedLocation> Find(FSRef const& reference) const;
    /// What a reference holds, also of a stale one; empty for one that was never made.
    static std::optional<Identity> IdentityIn(FSRef const& reference);

    /// Makes the references of a row; the table learns of them all at the end of its life.
    class Row {
      public:
        static constexpr std::size_t kMost = 256;
        /// Of at most so many references.
        Row(ReferenceTable& owner, std::size_t most);
        ~Row();
        Row(Row const&) = delete;
        Row& operator=(Row const&) = delete;

        bool IsFull() const { return locations.size() == kMost; }
        FSRef Add(Location const& location, Item const& item);

      private:
        ReferenceTable& table;
        std::uint64_t const number;
        std::vector<RememberedLocation> locations;
    };

  private:
    std::uint64_t BeginRow();
    void EndRow(std::uint64_t number, std::vector<RememberedLocation> locations) noexcept;

    mutable std::mutex mutex;
    std::size_t const least;
    std::deque<std::vector<RememberedLocation>> rows;  // the oldest in front; empty while they are being made
    std::uint64_t firstRow = 1;                        // the number of the one in front
    std::size_t count = 0;                             // references in all rows
};

/// Remembers the folders that were named last in FSSpecs, by volume and number; a folder that is
/// named again counts as named last. Safe from any thread.
class FolderTable {
  public:
    explicit FolderTable(std::size_t capacity) : most(capacity) {}
    /// The table of the process, of 1024 folders.
    static FolderTable& Shared();

    void Remember(FSVolumeRefNum volume, SInt32 number, Path const& path);
    /// The path of a folder; empty when it is not remembered.
    std::optional<Path> Find(FSVolumeRefNum volume, SInt32 number) const;

  private:
    using Key = std::pair<FSVolumeRefNum, SInt32>;
    struct Folder {
        Key key;
        Path path;
    };
    mutable std::mutex mutex;
    std::size_t most;
    std::list<Folder> folders;  // the one named last in front
    std::map<Key, std::list<Folder>::iterator> index;
};

}  // namespace Platform
