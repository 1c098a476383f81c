#pragma once

// Iterators over the items of a folder.

#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

#include "files/Catalog.h"
#include "files/FolderEntries.h"
#include "files/OpenFolders.h"
#include "files/SlowPaths.h"

namespace Platform {

/// One pass over the items of a folder: each once, in the order of the file system. Companion files that hold
/// metadata are no items, nor is what has gone before it was looked at. For one thread at a time. On a mount
/// whose server may not answer the folder is open during turns only, which are those of helper threads: so no
/// other thread ever has to wait for its end.
class FolderIterator final : private FolderUser {
  public:
    /// Opens the folder at a location, on a mount whose server may not answer or on no such mount; a result
    /// code.
    static OSErr Open(Location const& folder, std::optional<SlowMount> const& mount,
                      std::shared_ptr<FolderIterator>& iterator);
    ~FolderIterator() { OpenFolders::Shared().LetGo(*this); }
    FolderIterator(FolderIterator const&) = delete;
    FolderIterator& operator=(FolderIterator const&) = delete;

    /// The iterator's turn to read: while one lives, its folder is open.
    class Turn {
      public:
        Turn(FolderIterator& iterator, Surroundings const& around);
        /// noErr, or why the folder cannot be opened again.
        OSErr Error() const { return error; }
        /// The next item, looked at; errFSNoMoreItems behind the last. `place` is lent until the next call.
        /// An item that may not be looked at has an empty status, the inode number 0 among it. One that leads
        /// onto another mount whose server may not answer, which `behind` then tells, is a link described by
        /// itself, or has an empty status.
        OSErr Next(FoundItem& found, Place& place, std::optional<SlowMount>& behind);
        /// Whether the folder has changed since this was asked first.
        bool HasChanged();

      private:
        OSErr TakeEntry(FolderEntry& entry);
        bool IsCompanion(FolderEntry const& entry) const;
        OSErr LookFromHere(Place place, Item& item) const;

        FolderIterator& iterator;
        Surroundings const& surroundings;
        SharedDescriptor folder;
        OSErr error = noErr;
    };

    /// Whether all items have been taken.
    bool IsAtEnd() const { return entries.IsAtEnd() && entries.IsEmpty(); }
    Location const& Folder() const { return location; }
    /// The mount whose server may not answer, if the folder lies on one.
    std::optional<SlowMount> const& OnSlowMount() const { return mount; }
    /// What its listing has shown.
    Listing listing;
    /// Why it was given up: a thread may still be at work with it.
    OSErr givenUp = noErr;

    /// Its open folder; null when it was let go of.
    SharedDescriptor HeldFolder() { return OpenFolders::Shared().Of(*this); }
    /// Gives the folder back at the iterator's end; null when it was let go of before.
    SharedDescriptor GiveBack() { return OpenFolders::Shared().LetGo(*this); }
    /// Goes on with a folder that was let go of, if `descriptor` is that folder's.
    void GoOnWith(SharedDescriptor descriptor);

  private:
    FolderIterator(Location const& folder, std::optional<SlowMount> const& itsMount)
        : location(folder), mount(itsMount) {}
    OSErr OpenFolder(SharedDescriptor& descriptor) const;
    bool IsItsFolder(Descriptor const& folder) const;
    void WillLetGo(Descriptor const& folder) noexcept override;

    Location const location;
    std::optional<SlowMount> const mount;
    struct statx asLetGo {};                          // the folder, when it was let go of last
    std::optional<struct statx_timestamp> firstTime;  // its modification, when it was asked for first
    FolderEntries entries;
    bool wasRead = false;
    bool reopened = false;  // the descriptor is a new one, not read from yet
};

/// The iterators of the process, by the numbers that stand for them outside. Safe from any thread.
class FolderIterators {
  public:
    static FolderIterators& Shared();

    FSIterator Add(std::shared_ptr<FolderIterator> iterator);
    /// Null for a number that stands for none.
    std::shared_ptr<FolderIterator> Find(FSIterator number) const;
    /// Ends an iterator; false when the number stands for none. The iterator over the folder that holds its
    /// folder goes on from there if it had to close its own.
    bool End(FSIterator number);

  private:
    std::shared_ptr<FolderIterator> NewestAbove(Path const& folder) const;

    mutable std::mutex mutex;
    std::map<std::uintptr_t, std::shared_ptr<FolderIterator>> iterators;
    std::uintptr_t lastNumber = 0;
};

}  // namespace Platform
