#pragma once

// Internal. What the host keeps of registrations: one class for each kind, which knows all that is particular
// to the kind. Names and phrases are in normal form (NormalPhrase).

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Evaluator/Embedding.h"
#include "Evaluator/Registration.h"
#include "Evaluator/Values.h"

namespace Evaluator {

/// A phrase in the one form in which phrases are compared: lower case, one blank between words.
std::string NormalPhrase(std::string_view phrase);

/// A library that registers: the core, or one that was loaded.
struct Library {
    std::string name;                  ///< file name, or "core"
    std::string path;                  ///< resolved path; empty for the core
    void* handle = nullptr;            ///< of dlopen(3); null for the core
    long uses = 0;                     ///< compiled queries, kept values and evaluations that need it mapped
    std::vector<ConstData> code = {};  ///< where its instructions lie, in whole pages; empty for the core

    bool IsCore() const { return path.empty(); }
};

enum class EntryKind { type, property, iterated, cast, binaryOperator, cache };

/// A name of a type that a registration refers to.
struct Reference {
    std::string const* type = nullptr;  ///< null: no reference
    bool needed = false;                ///< whether the name may not be empty
};

/// The host's own copy of one registration.
struct Entry {
    explicit Entry(EntryKind kind) : kind(kind) {}
    Entry(Entry const&) = delete;
    Entry& operator=(Entry const&) = delete;
    virtual ~Entry() = default;

    /// What it is called in messages, such as `property "name" of "file"`.
    virtual std::string Describe() const = 0;
    /// The registration as the embedding interface shows it, but for its library.
    virtual RegistrationInfo Info() const = 0;
    /// What no two registrations may share; empty texts count for nothing.
    virtual std::array<std::string, 2> Identities() const { return {}; }
    /// The phrases by which queries ask for it; null for none.
    virtual std::array<std::string const*, 2> Phrases() const { return {}; }
    virtual std::array<Reference, 3> References() const { return {}; }
    /// Whether the library gave every function that the host will call.
    virtual bool HasItsFunctions() const { return true; }
    /// Bytes that the host must provide for each value or iteration.
    virtual std::size_t Bytes() const { return 0; }
    /// What else is wrong with it, or an empty text.
    virtual std::string Fault() const { return {}; }

    EntryKind const kind;
    Library* library = nullptr;
    void* record = nullptr;         ///< its identity
    void const* context = nullptr;  ///< handed back as the last argument of every call
};

struct TypeEntry final : Entry {
    TypeEntry() : Entry(EntryKind::type) {}
    std::string Describe() const override;
    RegistrationInfo Info() const override;
    std::array<std::string, 2> Identities() const override;
    std::array<std::string const*, 2> Phrases() const override { return {&name}; }
    std::array<Reference, 3> References() const override { return {{{&base, false}}}; }
    std::size_t Bytes() const override { return size; }

    std::string name;
    std::string base;  ///< empty: none
    std::size_t size = 0;
    DestroyFunction destroy = nullptr;
    FingerprintFunction fingerprint = nullptr;
    /// The host's own integers, booleans, times and intervals: bits and nothing else, so a value of one of
    /// these never needs what it was made from.
    bool selfContained = false;
    /// The host's own string.
    bool isString = false;
    /// Of the host's own types: less than, equal to or greater than zero, as `left` is less than, equal to or
    /// greater than `right`, and a number that is the same for equal values. Null: only operators compare.
    int (*order)(void const* left, void const* right) = nullptr;
    std::uint64_t (*hash)(void const* value) = nullptr;
    /// The field types of a tuple; empty for a registered type.
    std::vector<TypeEntry const*> fields;
};

struct PropertyEntry final : Entry {
    using Entry::Entry;  // kind: property or iterated
    std::string Describe() const override;
    RegistrationInfo Info() const override;
    std::array<std::string, 2> Identities() const override;
    std::array<std::string const*, 2> Phrases() const override { return {&singular, &plural}; }
    std::array<Reference, 3> References() const override {
        return {{{&result, true}, {&index, false}, {&object, false}}};
    }
    bool HasItsFunctions() const override;
    std::size_t Bytes() const override { return stateSize; }
    std::string Fault() const override;
    bool IsIterated() const { return kind == EntryKind::iterated; }

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

struct CastEntry final : Entry {
    CastEntry() : Entry(EntryKind::cast) {}
    std::string Describe() const override;
    RegistrationInfo Info() const override;
    std::array<std::string, 2> Identities() const override;
    std::array<std::string const*, 2> Phrases() const override { return {&phrase}; }
    std::array<Reference, 3> References() const override { return {{{&source, true}, {&target, true}}}; }
    bool HasItsFunctions() const override { return thunk != nullptr; }
    std::string Fault() const override;

    std::string phrase, source, target;
    CastFunction thunk = nullptr;
    DependencyFunction dependency = nullptr;
};

struct OperatorEntry final : Entry {
    OperatorEntry() : Entry(EntryKind::binaryOperator) {}
    std::string Describe() const override;
    RegistrationInfo Info() const override;
    std::array<std::string, 2> Identities() const override;
    std::array<Reference, 3> References() const override {
        return {{{&left, true}, {&right, true}, {&result, true}}};
    }
    bool HasItsFunctions() const override { return thunk != nullptr; }
    std::string Fault() const override;

    int code = 0;
    std::string left, right, result;
    BinaryOperatorFunction thunk = nullptr;
    DependencyFunction dependency = nullptr;
};

struct CacheEntry final : Entry {
    CacheEntry() : Entry(EntryKind::cache) {}
    std::string Describe() const override { return "cache"; }
    RegistrationInfo Info() const override;
    bool HasItsFunctions() const override { return clear != nullptr; }

    ClearCacheFunction clear = nullptr;
};

/// Operators that only the core registers; codes beyond those of the contract.
enum CoreOperatorCode : int {
    kOperatorMod = 32,
    kOperatorJoin = 33,
    kRelationStartsWith = 34,
    kRelationEndsWith = 35,
};

}  // namespace Evaluator
