#pragma once

// Internal. Memory that belongs to the evaluation, not to a frame of its stack: where that stack is given up,
// no destructor runs, and FreeAllOwned frees what was left. What holds memory across the call of an inspector
// takes it from here: cursors by their base class, arrays as OwnedVector.
//
// Not locked: used under the evaluation lock, and only while a query is evaluated.

#include <cstddef>
#include <vector>

namespace Evaluator {

/// So many bytes, aligned for any type. Throws MemoryFullError when there is no memory.
void* AllocateOwned(std::size_t size);
/// Frees what AllocateOwned gave; null is ignored.
void FreeOwned(void* memory);
/// Frees all that AllocateOwned gave and nobody freed. Destructors are not run: the values among it are found
/// by their own list.
void FreeAllOwned();

template <class T>
struct OwnedAllocator {
    using value_type = T;
    OwnedAllocator() = default;
    template <class Other>
    OwnedAllocator(OwnedAllocator<Other> const&) {}
    T* allocate(std::size_t count) { return static_cast<T*>(AllocateOwned(count * sizeof(T))); }
    void deallocate(T* memory, std::size_t) { FreeOwned(memory); }
    friend bool operator==(OwnedAllocator const&, OwnedAllocator const&) { return true; }
};
template <class T>
using OwnedVector = std::vector<T, OwnedAllocator<T>>;

/// Base of the classes whose objects an evaluation owns.
struct OwnedObject {
    static void* operator new(std::size_t size) { return AllocateOwned(size); }
    static void operator delete(void* memory) { FreeOwned(memory); }
};

}  // namespace Evaluator
