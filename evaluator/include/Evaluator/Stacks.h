#pragma once

// Stacks of a fixed capacity, which never allocate memory.

#include <type_traits>

#include "Evaluator/Values.h"

/// A stack of entries of one size in memory that somebody else owns, which must outlive it. Knows nothing of
/// what the entries hold: they begin with whatever the memory held, and nothing happens to them when they are
/// popped.
class StackBase {
  public:
    /// `memory` holds as many entries of `size` bytes as fit; `size` is not zero.
    StackBase(Data memory, unsigned long size)
        : first(memory.begin()), capacity(memory.Size() / size), entrySize(size) {}

    /// A new entry on top. Throws DataOverflow when the stack is full.
    void* Allocate() {
        if (used >= capacity) ThrowDataOverflow();
        return Entry(used++);
    }
    /// Removes entries from the top. Throws DataOverflow, and removes none, when there are not so many.
    void Pop(unsigned long count) {
        if (count > used) ThrowDataOverflow();
        used -= count;
    }
    /// The entry with `depth` entries above it; 0 is the top. Throws DataOverflow when there is none.
    void* AtDepth(unsigned long depth) const {
        if (depth >= used) ThrowDataOverflow();
        return Entry(used - 1 - depth);
    }
    void PopAll() { used = 0; }
    bool Empty() const { return used == 0; }

  private:
    [[noreturn]] EVALUATOR_API static void ThrowDataOverflow();
    void* Entry(unsigned long index) const { return first + index * entrySize; }

    unsigned char* first;
    unsigned long capacity;  // entries
    unsigned long entrySize;
    unsigned long used = 0;
};

/// A StackBase of up to `capacity` entries of a type, in memory of its own.
template <class T, unsigned long capacity>
class FiniteStackBase {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_default_constructible_v<T>);

  public:
    FiniteStackBase() : stack({storage, sizeof storage}, sizeof(T)) {}
    FiniteStackBase(FiniteStackBase const&) = delete;
    FiniteStackBase& operator=(FiniteStackBase const&) = delete;

    /// These are those of StackBase. A new entry's value is not determined until it is assigned.
    T& Allocate() { return *static_cast<T*>(stack.Allocate()); }
    void Pop(unsigned long count) { stack.Pop(count); }
    T& AtDepth(unsigned long depth) const { return *static_cast<T*>(stack.AtDepth(depth)); }
    void PopAll() { stack.PopAll(); }
    bool Empty() const { return stack.Empty(); }

  private:
    alignas(T) unsigned char storage[capacity * sizeof(T)];
    StackBase stack;
};
