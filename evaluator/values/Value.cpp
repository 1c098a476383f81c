#include "values/Value.h"

#include <new>

#include "Evaluator/Exceptions.h"
#include "values/Slots.h"

namespace Evaluator {
namespace {

Holder* newest = nullptr;
std::size_t memoryInUse = 0;
Entry const* failedToEnd = nullptr;

template <class T>
T* NewHolder(std::size_t payload) {
    std::size_t size = sizeof(T) + payload;
    T* holder = new (AllocateSlot(size)) T;
    holder->size = static_cast<std::uint32_t>(size);
    holder->older = newest;
    if (newest) newest->newer = holder;
    newest = holder;
    return holder;
}

void FreeHolder(Holder* holder) {
    holder->FreeMemory();
    (holder->newer ? holder->newer->older : newest) = holder->older;
    if (holder->older) holder->older->newer = holder->newer;
    FreeSlot(holder, holder->size);
}

// Calls what the library gave to end a life. Nothing may be thrown where lives end; who throws is noted.
void Destroy(Entry const& entry, DestroyFunction destroy, void* bytes) {
    try {
        destroy(bytes);
    } catch (...) {
        failedToEnd = &entry;
    }
}

std::size_t FieldsOf(Holder const& holder) {
    if (holder.isIteration || !holder.alive) return 0;
    return static_cast<Value const&>(holder).type->fields.size();
}

void EndLife(Holder& holder) {
    if (holder.isIteration) return static_cast<Iteration&>(holder).EndState();
    auto& value = static_cast<Value&>(holder);
    if (std::exchange(value.alive, false) && value.type->destroy)
        Destroy(*value.type, value.type->destroy, value.Bytes());
}

}  // namespace

void* Holder::Allocate(std::size_t bytes) {
    std::size_t size = sizeof(MemoryBlock) + bytes;
    memory = new (AllocateSlot(size)) MemoryBlock{memory, size};
    memoryInUse += size;
    return memory + 1;
}

void Holder::FreeMemory(MemoryBlock* until) {
    while (memory != until) {
        MemoryBlock* block = std::exchange(memory, memory->next);
        memoryInUse -= block->size;
        FreeSlot(block, block->size);
    }
}

void Iteration::EndState() {
    if (std::exchange(alive, false)) Destroy(*entry, entry->destroy, State());
}

void End(Holder* holder) {
    Holder* sources[2] = {holder->sources[0], holder->sources[1]};
    for (std::size_t i = 0; i < FieldsOf(*holder); ++i) Release(static_cast<Value*>(holder)->Fields()[i]);
    if (holder->alive) EndLife(*holder);
    FreeHolder(holder);
    for (Holder* source : sources)
        if (source) Release(source);
}

ValueRef NewValue(TypeEntry const& type) {
    auto* value = NewHolder<Value>(type.size);
    value->type = &type;
    return ValueRef::Adopt(value);
}

IterationRef NewIteration(PropertyEntry const& entry) {
    auto* iteration = NewHolder<Iteration>(entry.stateSize);
    iteration->isIteration = true;
    iteration->entry = &entry;
    return IterationRef::Adopt(iteration);
}

void KeepSources(Holder& holder, Holder* first, Holder* second) {
    for (Holder* source : {first, second})
        if (source) ++source->references;
    holder.sources[0] = first;
    holder.sources[1] = second;
}

std::size_t InspectorMemoryInUse() { return memoryInUse; }

Entry const* TakeFailureToEnd() { return std::exchange(failedToEnd, nullptr); }

// What a holder needs is older than itself, so one pass from the newest to the oldest finds all that is
// needed.
void ForgetOwners() {
    for (Holder* holder = newest; holder; holder = holder->older) holder->references = holder->keeps;
    for (Holder* holder = newest; holder; holder = holder->older) {
        if (holder->references == 0) continue;
        for (Holder* source : holder->sources)
            if (source) ++source->references;
        for (std::size_t i = 0; i < FieldsOf(*holder); ++i)
            ++static_cast<Value*>(holder)->Fields()[i]->references;
    }
}

// Nobody pulls the values of an iteration any more, so the states of those that stay are ended too.
void EndForgotten() {
    for (Holder *holder = newest, *older; holder; holder = older) {
        older = holder->older;
        if (holder->references == 0 || holder->isIteration) EndLife(*holder);
        if (holder->references == 0) FreeHolder(holder);
    }
}

}  // namespace Evaluator
