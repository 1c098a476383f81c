#include "values/Value.h"

#include <array>
#include <cstdlib>
#include <new>

#include "Evaluator/Exceptions.h"

namespace Evaluator {
namespace {

// Slots of up to kLargestPooledSlot bytes are kept in lists by size and used again, so that a stream of
// values takes no memory from the system. At most kMostSpareSlots of a size are kept, so that a burst is
// given back. The address sanitizer should see every slot's real end of life: no pool then.
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t kMostSpareSlots = 0;
#else
constexpr std::size_t kMostSpareSlots = 64;
#endif
constexpr std::size_t kSlotStep = 32;
constexpr std::size_t kLargestPooledSlot = 512;

struct SpareSlot {
    SpareSlot* next;
};
struct SpareList {
    SpareSlot* first = nullptr;
    std::size_t count = 0;
};
std::array<SpareList, kLargestPooledSlot / kSlotStep + 1> spares;

constexpr std::size_t RoundedUp(std::size_t size) { return (size + kSlotStep - 1) / kSlotStep * kSlotStep; }

void* AllocateSlot(std::size_t size) {
    size = RoundedUp(size);
    if (size <= kLargestPooledSlot) {
        SpareList& list = spares[size / kSlotStep];
        if (SpareSlot* slot = list.first) {
            list.first = slot->next;
            --list.count;
            return slot;
        }
    }
    if (void* slot = std::malloc(size)) return slot;
    throw MemoryFullError();
}

void FreeSlot(void* memory, std::size_t size) {
    size = RoundedUp(size);
    if (size <= kLargestPooledSlot && spares[size / kSlotStep].count < kMostSpareSlots) {
        SpareList& list = spares[size / kSlotStep];
        list.first = new (memory) SpareSlot{list.first};
        ++list.count;
        return;
    }
    std::free(memory);
}

template <class T>
T* NewHolder(std::size_t payload) {
    std::size_t size = sizeof(T) + payload;
    T* holder = new (AllocateSlot(size)) T;
    holder->size = static_cast<std::uint32_t>(size);
    return holder;
}

void EndLife(Holder& holder) {
    if (holder.isIteration) {
        static_cast<Iteration&>(holder).EndState();
        return;
    }
    if (!holder.alive) return;
    auto& value = static_cast<Value&>(holder);
    auto fields = static_cast<Value**>(value.Bytes());
    for (std::size_t i = 0; i < value.type->fields.size(); ++i) Release(fields[i]);
    if (value.type->destroy) value.type->destroy(value.Bytes());
}

}  // namespace

void* Holder::Allocate(std::size_t bytes) {
    void* block = std::malloc(sizeof(MemoryBlock) + bytes);
    if (!block) throw MemoryFullError();
    memory = new (block) MemoryBlock{memory};
    return memory + 1;
}

void Holder::FreeMemory(MemoryBlock* until) {
    while (memory != until) std::free(std::exchange(memory, memory->next));
}

void Iteration::EndState() {
    if (std::exchange(alive, false)) entry->destroy(State());
}

void Release(Holder* holder) {
    if (--holder->references > 0) return;
    EndLife(*holder);
    holder->FreeMemory();
    Holder* sources[2] = {holder->sources[0], holder->sources[1]};
    FreeSlot(holder, holder->size);
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

}  // namespace Evaluator
