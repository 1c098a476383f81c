#include "registry/Registry.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "registry/Words.h"

namespace Evaluator {
namespace {

// Bytes of a value, or of an iteration's state. Larger things belong into inspector memory.
constexpr std::size_t kMostBytes = 1 << 20;

// Why a phrase in normal form cannot be read in a query, or an empty text when it can.
std::string PhraseFault(std::string_view phrase) {
    if (phrase.empty()) return "its phrase is empty";
    for (std::size_t at = 0; at < phrase.size();) {
        std::size_t end = std::min(phrase.find(' ', at), phrase.size());
        std::string_view word = phrase.substr(at, end - at);
        if (!IsWord(word)) return fmt::format("\"{}\" in its phrase \"{}\" is no word", word, phrase);
        if (IsReservedWord(word) || (at == 0 && IsOperatorWord(word)))
            return fmt::format("its phrase \"{}\" holds the reserved word \"{}\"", phrase, word);
        at = end + 1;
    }
    return {};
}

// Why the name of a type that an entry refers to cannot be one, or an empty text.
std::string ReferenceFault(Reference const& reference) {
    if (!reference.type) return {};
    if (reference.type->empty()) return reference.needed ? "a type that it needs is not named" : "";
    std::string fault = PhraseFault(*reference.type);
    return fault.empty() ? fault
                         : fmt::format("of the type \"{}\" that it names, {}", *reference.type, fault);
}

// What is wrong with the entry itself, or an empty text.
std::string FaultOf(Entry const& entry) {
    std::string fault;
    for (std::string const* phrase : entry.Phrases())
        if (phrase && fault.empty()) fault = PhraseFault(*phrase);
    for (Reference const& reference : entry.References())
        if (fault.empty()) fault = ReferenceFault(reference);
    if (fault.empty()) fault = entry.Fault();
    if (!fault.empty()) return fault;
    if (!entry.HasItsFunctions()) return "a function that it needs is missing";
    if (entry.Bytes() > kMostBytes)
        return fmt::format("its {} bytes are more than the {} that a value may have", entry.Bytes(),
                           kMostBytes);
    return {};
}

}  // namespace

Registry& Registry::Instance() {
    // Never destroyed: a library that is still loaded when the process ends withdraws its registrations then.
    static Registry& registry = *new Registry;
    return registry;
}

std::vector<std::string> Registry::TakeProblems() { return std::exchange(problems, {}); }

bool Registry::Note(Entry const& entry, std::string const& what) {
    problems.push_back(fmt::format("{}: {}: {}", registering->name, entry.Describe(), what));
    return false;
}

bool Registry::Acceptable(Entry const& entry, unsigned long recordSize, unsigned long contractSize) {
    if (!registering) return false;
    if (!entry.record) return Note(entry, "registered without a record");
    if (recordSize != contractSize)
        return Note(entry, fmt::format("its record has {} bytes for the host instead of {}", recordSize,
                                       contractSize));
    if (auto before = byRecord.find(entry.record); before != byRecord.end())
        return Note(entry,
                    fmt::format("its record is that of the {} already", (*before->second)->Describe()));
    if (std::string fault = FaultOf(entry); !fault.empty()) return Note(entry, fault);
    for (std::string const& identity : entry.Identities())
        if (auto before = byIdentity.find(identity); before != byIdentity.end())
            return Note(entry, fmt::format("already registered by {}", before->second->library->name));
    return true;
}

bool Registry::Add(std::unique_ptr<Entry> entry, void* record, unsigned long recordSize,
                   unsigned long contractSize) {
    entry->record = record;
    entry->library = registering;
    if (!Acceptable(*entry, recordSize, contractSize)) return false;
    for (std::string& identity : entry->Identities())
        if (!identity.empty()) byIdentity.emplace(std::move(identity), entry.get());
    entries.push_back(std::move(entry));
    byRecord.emplace(record, std::prev(entries.end()));
    ++revision;
    return true;
}

// A library that is used is not unloaded: it withdraws because the process ends, and values that were kept
// may still point at their types.
void Registry::Erase(Entries::iterator entry) {
    for (std::string const& identity : (*entry)->Identities()) byIdentity.erase(identity);
    byRecord.erase((*entry)->record);
    if ((*entry)->library->uses > 0) stillUsed.push_back(std::move(*entry));
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
