// The registration calls of the contract: each makes the host's entry of what it was given.

#include "Evaluator/Registration.h"

#include "registry/Registry.h"

namespace Evaluator {
namespace {

std::string Text(char const* text) { return text ? NormalPhrase(text) : std::string(); }

std::unique_ptr<PropertyEntry> NewProperty(EntryKind kind, char const* singular, char const* plural,
                                           char const* index, char const* object, char const* result) {
    auto entry = std::make_unique<PropertyEntry>(kind);
    entry->singular = Text(singular);
    entry->plural = Text(plural);
    entry->index = Text(index);
    entry->object = Text(object);
    entry->result = Text(result);
    return entry;
}

template <EntryKind... kinds>
void Withdraw(void* record) {
    Registry::Instance().Remove(record, [](EntryKind kind) { return ((kind == kinds) || ...); });
}

}  // namespace
}  // namespace Evaluator

using namespace Evaluator;

bool Register_Type(void* record, unsigned long recordSize, char const* name, unsigned long valueSize,
                   DestroyFunction destroy, char const* base, FingerprintFunction fingerprint) {
    auto entry = std::make_unique<TypeEntry>();
    entry->name = Text(name);
    entry->base = Text(base);
    entry->size = valueSize;
    entry->destroy = destroy;
    entry->fingerprint = fingerprint;
    return Registry::Instance().Add(std::move(entry), record, recordSize, kTypeRecordSize);
}

bool Register_Property(void* record, unsigned long recordSize, char const* singular, char const* plural,
                       char const* index, char const* object, char const* result, PropertyFunction get,
                       void const* context, DependencyFunction dependency) {
    auto entry = NewProperty(EntryKind::property, singular, plural, index, object, result);
    entry->context = context;
    entry->first = get;
    entry->dependency = dependency;
    return Registry::Instance().Add(std::move(entry), record, recordSize, kPropertyRecordSize);
}

bool Register_Iterated_Property(void* record, unsigned long recordSize, char const* singular,
                                char const* plural, char const* index, char const* object, char const* result,
                                unsigned long stateSize, ConstructFunction construct, DestroyFunction destroy,
                                PropertyFunction first, PropertyFunction next, void const* context,
                                DependencyFunction dependency) {
    auto entry = NewProperty(EntryKind::iterated, singular, plural, index, object, result);
    entry->context = context;
    entry->first = first;
    entry->dependency = dependency;
    entry->next = next;
    entry->stateSize = stateSize;
    entry->construct = construct;
    entry->destroy = destroy;
    return Registry::Instance().Add(std::move(entry), record, recordSize, kPropertyRecordSize);
}

bool Register_Cast(void* record, unsigned long recordSize, char const* phrase, char const* source,
                   char const* target, CastFunction thunk, void const* context,
                   DependencyFunction dependency) {
    auto entry = std::make_unique<CastEntry>();
    entry->phrase = Text(phrase);
    entry->source = Text(source);
    entry->target = Text(target);
    entry->context = context;
    entry->thunk = thunk;
    entry->dependency = dependency;
    return Registry::Instance().Add(std::move(entry), record, recordSize, kCastRecordSize);
}

bool Register_Binary_Operator(void* record, unsigned long recordSize, int code, char const* left,
                              char const* right, char const* result, BinaryOperatorFunction thunk,
                              void const* context, DependencyFunction dependency) {
    auto entry = std::make_unique<OperatorEntry>();
    entry->code = code;
    entry->left = Text(left);
    entry->right = Text(right);
    entry->result = Text(result);
    entry->context = context;
    entry->thunk = thunk;
    entry->dependency = dependency;
    return Registry::Instance().Add(std::move(entry), record, recordSize, kBinaryOperatorRecordSize);
}

bool Register_Cache(void* record, unsigned long recordSize, ClearCacheFunction clear, void*) {
    auto entry = std::make_unique<CacheEntry>();
    entry->clear = clear;
    return Registry::Instance().Add(std::move(entry), record, recordSize, kCacheRecordSize);
}

void Unregister_Type(void* record) { Withdraw<EntryKind::type>(record); }
void Unregister_Property(void* record) { Withdraw<EntryKind::property, EntryKind::iterated>(record); }
void Unregister_Cast(void* record) { Withdraw<EntryKind::cast>(record); }
void Unregister_Binary_Operator(void* record) { Withdraw<EntryKind::binaryOperator>(record); }
void Unregister_Cache(void* record) { Withdraw<EntryKind::cache>(record); }
