#include "registry/Registry.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "registry/Vocabulary.h"
#include "registry/Words.h"

namespace Evaluator {
namespace {

std::string Quoted(std::string_view text) { return fmt::format("\"{}\"", text); }

std::string OfObject(std::string_view object) {
    return object.empty() ? std::string(" of the world") : " of " + Quoted(object);
}

// What no two registrations may share: a type its name; a property each of its phrases together with the
// types of index and object; a cast its phrase and source; an operator its code and operands. A cache shares
// nothing.
std::vector<std::string> Identities(Entry const& entry) {
    switch (entry.kind) {
        case EntryKind::type:
            return {"type|" + static_cast<TypeEntry const&>(entry).name};
        case EntryKind::property:
        case EntryKind::iterated: {
            auto const& property = static_cast<PropertyEntry const&>(entry);
            std::string where = "|" + property.index + "|" + property.object;
            if (property.singular == property.plural) return {"property|" + property.singular + where};
            return {"property|" + property.singular + where, "property|" + property.plural + where};
        }
        case EntryKind::cast: {
            auto const& cast = static_cast<CastEntry const&>(entry);
            return {"cast|" + cast.phrase + "|" + cast.source};
        }
        case EntryKind::binaryOperator: {
            auto const& op = static_cast<OperatorEntry const&>(entry);
            return {fmt::format("operator|{}|{}|{}", op.code, op.left, op.right)};
        }
        case EntryKind::cache:
            return {};
    }
    return {};
}

std::vector<std::string> PhrasesOf(Entry const& entry) {
    switch (entry.kind) {
        case EntryKind::type:
            return {static_cast<TypeEntry const&>(entry).name};
        case EntryKind::property:
        case EntryKind::iterated: {
            auto const& property = static_cast<PropertyEntry const&>(entry);
            return {property.singular, property.plural};
        }
        case EntryKind::cast:
            return {static_cast<CastEntry const&>(entry).phrase};
        default:
            return {};
    }
}

// The types that the entry refers to: those that it must name, and those that it may leave empty.
struct References {
    std::vector<std::string> needed, optional;
};

References ReferencesOf(Entry const& entry) {
    switch (entry.kind) {
        case EntryKind::type:
            return {{}, {static_cast<TypeEntry const&>(entry).base}};
        case EntryKind::property:
        case EntryKind::iterated: {
            auto const& property = static_cast<PropertyEntry const&>(entry);
            return {{property.result}, {property.index, property.object}};
        }
        case EntryKind::cast: {
            auto const& cast = static_cast<CastEntry const&>(entry);
            return {{cast.source, cast.target}, {}};
        }
        case EntryKind::binaryOperator: {
            auto const& op = static_cast<OperatorEntry const&>(entry);
            return {{op.left, op.right, op.result}, {}};
        }
        case EntryKind::cache:
            return {};
    }
    return {};
}

// Why a phrase cannot be read in a query, or an empty text when it can.
std::string PhraseFault(std::string const& phrase) {
    std::vector<std::string_view> words = SplitWords(phrase);
    if (words.empty()) return "its phrase is empty";
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!IsWord(words[i])) return fmt::format("\"{}\" in its phrase \"{}\" is no word", words[i], phrase);
        if (IsReservedWord(words[i]) || (i == 0 && IsOperatorWord(words[i])))
            return fmt::format("its phrase \"{}\" holds the reserved word \"{}\"", phrase, words[i]);
    }
    return {};
}

// Why the entry's references to types cannot hold, or an empty text.
std::string ReferenceFault(Entry const& entry) {
    References references = ReferencesOf(entry);
    for (std::string const& name : references.needed)
        if (name.empty()) return "a type that it needs is not named";
    for (std::vector<std::string> const* names : {&references.needed, &references.optional})
        for (std::string const& name : *names)
            if (std::string fault = name.empty() ? "" : PhraseFault(name); !fault.empty())
                return fmt::format("of the type \"{}\" that it names, {}", name, fault);
    return {};
}

bool HasItsFunctions(Entry const& entry) {
    switch (entry.kind) {
        case EntryKind::type:
            return true;
        case EntryKind::property:
            return static_cast<PropertyEntry const&>(entry).first;
        case EntryKind::iterated: {
            auto const& property = static_cast<PropertyEntry const&>(entry);
            return property.first && property.next && property.construct && property.destroy;
        }
        case EntryKind::cast:
            return static_cast<CastEntry const&>(entry).thunk;
        case EntryKind::binaryOperator:
            return static_cast<OperatorEntry const&>(entry).thunk;
        case EntryKind::cache:
            return static_cast<CacheEntry const&>(entry).clear;
    }
    return false;
}

// Bytes of a value, or of an iteration's state. Larger things belong into inspector memory.
constexpr std::size_t kMostBytes = 1 << 20;

std::size_t BytesOf(Entry const& entry) {
    if (entry.kind == EntryKind::type) return static_cast<TypeEntry const&>(entry).size;
    if (entry.kind == EntryKind::iterated) return static_cast<PropertyEntry const&>(entry).stateSize;
    return 0;
}

bool IsContractCode(int code) {
    constexpr std::array codes{kOperatorPlus,  kOperatorMinus, kOperatorTimes,       kOperatorDividedBy,
                               kRelationEqual, kRelationLess,  kRelationLessOrEqual, kRelationContains};
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

}  // namespace

std::string NormalPhrase(std::string_view phrase) {
    std::string result;
    for (std::string_view word : SplitWords(phrase)) {
        if (!result.empty()) result += ' ';
        for (char c : word) result += LowerCaseLetter(c);
    }
    return result;
}

std::string Describe(Entry const& entry) {
    switch (entry.kind) {
        case EntryKind::type:
            return "type " + Quoted(static_cast<TypeEntry const&>(entry).name);
        case EntryKind::property:
        case EntryKind::iterated: {
            auto const& property = static_cast<PropertyEntry const&>(entry);
            std::string index =
                property.index.empty() ? "" : fmt::format(" with index \"{}\"", property.index);
            return (entry.kind == EntryKind::iterated ? "iterated property " : "property ") +
                   Quoted(property.singular) + index + OfObject(property.object);
        }
        case EntryKind::cast: {
            auto const& cast = static_cast<CastEntry const&>(entry);
            return "cast " + Quoted(cast.phrase) + OfObject(cast.source);
        }
        case EntryKind::binaryOperator: {
            auto const& op = static_cast<OperatorEntry const&>(entry);
            return fmt::format("operator {} of \"{}\" and \"{}\"", op.code, op.left, op.right);
        }
        case EntryKind::cache:
            return "cache";
    }
    return {};
}

Registry& Registry::Instance() {
    // Never destroyed: a library that is still loaded when the process ends withdraws its registrations then.
    static Registry& registry = *new Registry;
    return registry;
}

std::vector<std::string> Registry::TakeProblems() { return std::exchange(problems, {}); }

bool Registry::Note(Entry const& entry, std::string const& what) {
    problems.push_back(fmt::format("{}: {}: {}", registering->name, Describe(entry), what));
    return false;
}

bool Registry::Acceptable(Entry const& entry, unsigned long recordSize, unsigned long contractSize) {
    if (!registering) return false;
    if (!entry.record) return Note(entry, "registered without a record");
    if (recordSize != contractSize)
        return Note(entry, fmt::format("its record has {} bytes for the host instead of {}", recordSize,
                                       contractSize));
    if (auto before = byRecord.find(entry.record); before != byRecord.end())
        return Note(entry, fmt::format("its record is that of the {} already", Describe(**before->second)));
    for (std::string const& phrase : PhrasesOf(entry)) {
        if (std::string fault = PhraseFault(phrase); !fault.empty()) return Note(entry, fault);
        if (entry.kind != EntryKind::cast && (phrase == kNumberOf.singular || phrase == kNumberOf.plural))
            return Note(entry, fmt::format("\"{}\" is a phrase of the language itself", phrase));
    }
    if (std::string fault = ReferenceFault(entry); !fault.empty()) return Note(entry, fault);
    if (entry.kind == EntryKind::cast) {
        auto const& cast = static_cast<CastEntry const&>(entry);
        if (cast.source == cast.target && cast.phrase == cast.target)
            return Note(entry, "a type is not cast to itself");
    }
    if (!HasItsFunctions(entry)) return Note(entry, "a function that it needs is missing");
    if (entry.kind == EntryKind::binaryOperator && !registering->IsCore()) {
        int code = static_cast<OperatorEntry const&>(entry).code;
        if (!IsContractCode(code)) return Note(entry, "there is no operator of that code");
        if (code >= kRelationEqual && static_cast<OperatorEntry const&>(entry).result != "boolean")
            return Note(entry, "the result of a relation is a boolean");
    }
    if (std::size_t size = BytesOf(entry); size > kMostBytes)
        return Note(entry,
                    fmt::format("its {} bytes are more than the {} that a value may have", size, kMostBytes));
    for (std::string const& identity : Identities(entry))
        if (auto before = byIdentity.find(identity); before != byIdentity.end())
            return Note(entry, fmt::format("already registered by {}", before->second->library->name));
    return true;
}

bool Registry::Add(std::unique_ptr<Entry> entry, void* record, unsigned long recordSize,
                   unsigned long contractSize) {
    entry->record = record;
    entry->library = registering;
    if (!Acceptable(*entry, recordSize, contractSize)) return false;
    for (std::string& identity : Identities(*entry)) byIdentity.emplace(std::move(identity), entry.get());
    entries.push_back(std::move(entry));
    byRecord.emplace(record, std::prev(entries.end()));
    ++revision;
    return true;
}

void Registry::Erase(Entries::iterator entry) {
    for (std::string const& identity : Identities(**entry)) byIdentity.erase(identity);
    byRecord.erase((*entry)->record);
    entries.erase(entry);
    ++revision;
}

void Registry::Remove(void* record, bool (*isKind)(EntryKind)) {
    auto found = byRecord.find(record);
    if (found != byRecord.end() && isKind((*found->second)->kind)) Erase(found->second);
}

bool Registry::Holds(Library const& library) const {
    return std::any_of(entries.begin(), entries.end(),
                       [&](auto const& entry) { return entry->library == &library; });
}

void Registry::Forget(Library const& library) {
    for (auto entry = entries.begin(); entry != entries.end();) {
        auto next = std::next(entry);
        if ((*entry)->library == &library) Erase(entry);
        entry = next;
    }
}

}  // namespace Evaluator
