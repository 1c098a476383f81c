#pragma once

// The folders that iterators hold open. They are few, however many iterators there are, so that a walk goes
// deeper than a process may open files; the others are opened again when their turn comes.

#include <list>
#include <memory>
#include <mutex>

#include "files/Descriptor.h"
#include "foundation/Path.h"

namespace Platform {

/// Who has a folder held open.
class FolderUser {
  public:
    /// The folder is about to be let go of. Called on any thread, and calls nothing of the folders' own.
    virtual void WillLetGo(Descriptor const& folder) noexcept = 0;

  protected:
    ~FolderUser() = default;
};

/// Holds the folders that were used last. Safe from any thread.
class OpenFolders {
  public:
    explicit OpenFolders(std::size_t capacity) : most(capacity) {}
    /// Those of the process, at most 32.
    static OpenFolders& Shared();

    /// Holds a user's folder. The one that was used longest ago is let go of when there are too many.
    void Hold(FolderUser& user, Path const& path, SharedDescriptor descriptor);
    /// Holds a folder that nobody reads, but that look-ups below it may start from.
    void Hold(Path const& path, SharedDescriptor descriptor);
    /// Lets go of the folders that nobody reads.
    void LetGoOfUnread();
    /// The held folder at the very path; null when there is none.
    SharedDescriptor At(Path const& path);
    /// The folder of a user; null when it was let go of.
    SharedDescriptor Of(FolderUser const& user);
    /// The folder that holds the item at a path, if one of them is the very folder that the path was made a
    /// child of; null otherwise.
    SharedDescriptor FolderOf(Path const& item);
    /// Lets a user's folder go without telling it, and returns it; null when it was not held.
    SharedDescriptor LetGo(FolderUser const& user);

  private:
    struct Held {
        FolderUser* user;  // null: nobody reads it
        Path path;
        SharedDescriptor descriptor;
    };
    void Hold(Held held);
    template <class Condition>
    SharedDescriptor Use(Condition const& condition);

    std::mutex mutex;
    std::size_t const most;
    std::list<Held> folders;  // the one used last in front
};

}  // namespace Platform
