#pragma once

// Internal. Everything that inspector libraries, and the core, have registered.
//
// An entry is the host's own copy of one registration; it lives until the registration is withdrawn, and the
// record that named it holds nothing of it. Type names stay names here; Vocabulary.h resolves them.
// Not locked by itself: registration happens while a library is loaded or unloaded, under the evaluation
// lock.

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "registry/Entries.h"

namespace Evaluator {

class Registry {
  public:
    using Entries = std::list<std::unique_ptr<Entry>>;

    static Registry& Instance();

    /// The library whose registrations arrive now; null outside loading, when registrations are refused
    /// without a note: nobody is there to read it.
    Library* Registering() const { return registering; }
    /// While one of these lives, registrations are those of the library.
    class Turn {
      public:
        Turn(Registry& owner, Library& library)
            : registry(owner), before(std::exchange(owner.registering, &library)) {}
        ~Turn() { registry.registering = before; }
        Turn(Turn const&) = delete;
        Turn& operator=(Turn const&) = delete;

      private:
        Registry& registry;
        Library* before;
    };
    /// What was wrong with the registrations since the last call; empties the list.
    std::vector<std::string> TakeProblems();

    /// Accepts the entry under its record, or notes a problem and returns false.
    bool Add(std::unique_ptr<Entry> entry, void* record, unsigned long recordSize,
             unsigned long contractSize);
    /// Forgets the registration made with `record`, if it is of the kind; else does nothing.
    void Remove(void* record, bool (*isKind)(EntryKind));

    /// Whether anything is registered by the library.
    bool Holds(Library const& library) const;
    /// Forgets what a library that is gone has left registered; a sound one has withdrawn everything.
    void Forget(Library const& library);

    /// All registrations, in the order in which they were made.
    Entries const& All() const { return entries; }
    /// Changes whenever a registration comes or goes.
    std::uint64_t Revision() const { return revision; }

  private:
    bool Acceptable(Entry const& entry, unsigned long recordSize, unsigned long contractSize);
    bool Note(Entry const& entry, std::string const& what);
    void Erase(Entries::iterator entry);

    Entries entries;
    Entries stillUsed;  ///< withdrawn at the end of the process, see Erase
    std::unordered_map<void*, Entries::iterator> byRecord;
    std::unordered_map<std::string, Entry const*> byIdentity;  ///< see Entry::Identities
    std::vector<std::string> problems;
    Library* registering = nullptr;
    std::uint64_t revision = 0;
};

}  // namespace Evaluator
