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
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Evaluator/Registration.h"

namespace Evaluator {

/// A library that registers: the core, or one that was loaded.
struct Library {
    std::string name;        ///< file name, or "core"
    std::string path;        ///< resolved path; empty for the core
    void* handle = nullptr;  ///< of dlopen(3); null for the core
    long uses = 0;           ///< compiled queries, kept values and evaluations that need it mapped

    bool IsCore() const { return path.empty(); }
};

enum class EntryKind { type, property, iterated, cast, binaryOperator, cache };

/// What the host keeps of one registration.
struct Entry {
    virtual ~Entry() = default;
    EntryKind kind;
    Library* library;
    void* record;                   ///< its identity
    void const* context = nullptr;  ///< handed back as the last argument of every call
};

struct TypeEntry : Entry {
    std::string name;
    std::string base;  ///< empty: none
    std::size_t size = 0;
    DestroyFunction destroy = nullptr;
    FingerprintFunction fingerprint = nullptr;
    /// The host's own integers, booleans, times and intervals: bits and nothing else, so a value of one of
    /// these never needs what it was made from.
    bool selfContained = false;
    /// The field types of a tuple; empty for a registered type.
    std::vector<TypeEntry const*> fields;
};

struct PropertyEntry : Entry {
    std::string singular, plural;
    std::string index, object, result;  ///< type names; index and object may be empty
    PropertyFunction first = nullptr;   ///< the property itself, or the first step of an iteration
    DependencyFunction dependency = nullptr;
    // Iterated properties only.
    PropertyFunction next = nullptr;
    std::size_t stateSize = 0;
    ConstructFunction construct = nullptr;
    DestroyFunction destroy = nullptr;
};

struct CastEntry : Entry {
    std::string phrase, source, target;
    CastFunction thunk = nullptr;
    DependencyFunction dependency = nullptr;
};

struct OperatorEntry : Entry {
    int code = 0;
    std::string left, right, result;
    BinaryOperatorFunction thunk = nullptr;
    DependencyFunction dependency = nullptr;
};

struct CacheEntry : Entry {
    ClearCacheFunction clear = nullptr;
};

/// Operators that only the core registers; codes beyond those of the contract.
enum CoreOperatorCode : int {
    kOperatorMod = 32,
    kOperatorJoin = 33,
    kRelationStartsWith = 34,
    kRelationEndsWith = 35,
};

/// A phrase in the one form in which phrases are compared: lower case, one blank between words.
std::string NormalPhrase(std::string_view phrase);

/// What a registration is called in messages, such as `property "name" of "file"`.
std::string Describe(Entry const& entry);

class Registry {
  public:
    using Entries = std::list<std::unique_ptr<Entry>>;

    static Registry& Instance();

    /// /// The library whose registrations arrive now; null outside loading, when registrations are refused
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

    /// /// Whether anything is registered by the library.
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
    std::unordered_map<void*, Entries::iterator> byRecord;
    std::unordered_map<std::string, Entry const*> byIdentity;  ///< see Identities in Registry.cpp
    std::vector<std::string> problems;
    Library* registering = nullptr;
    std::uint64_t revision = 0;
};

}  // namespace Evaluator
