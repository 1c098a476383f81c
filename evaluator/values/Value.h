#pragma once

// Internal. How a value lives.
//
// A value is the bytes of one registered type, in a slot that never moves. It is shared, not copied, and it
// keeps alive what it may point into: the object, index, operands or source that it was made from, the
// iteration that yielded it, and the inspector memory that was asked for while it was made. The same holds
// for an iteration. When the last owner lets go, the type's Destroy is called first, then the memory is
// freed, then what it was made from is let go.
//
// Not locked: everything here happens under the evaluation lock.

#include <cstddef>
#include <cstdint>
#include <utility>

#include "registry/Registry.h"

namespace Evaluator {

/// One piece of inspector memory; the bytes follow it.
struct alignas(std::max_align_t) MemoryBlock {
    MemoryBlock* next;
};

/// What values and iterations have in common: owners, inspector memory and sources.
struct Holder {
    std::uint32_t references = 1;
    bool isIteration = false;
    bool alive = false;  ///< the bytes hold a value, or a state, whose life must be ended
    std::uint32_t size = 0;
    MemoryBlock* memory = nullptr;
    Holder* sources[2] = {nullptr, nullptr};

    void* Allocate(std::size_t bytes);
    /// Frees what was allocated since `until` was the latest block.
    void FreeMemory(MemoryBlock* until = nullptr);
};

/// A value of a registered type; its bytes follow it.
struct alignas(std::max_align_t) Value : Holder {
    TypeEntry const* type = nullptr;

    void* Bytes() { return this + 1; }
    void const* Bytes() const { return this + 1; }
    template <class T>
    T const& As() const {
        return *static_cast<T const*>(Bytes());
    }
};

/// An iteration: the state of an iterated property, which follows it, and what its values keep.
struct alignas(std::max_align_t) Iteration : Holder {
    PropertyEntry const* entry = nullptr;

    void* State() { return this + 1; }

    /// Ends the life of the state, once; the iteration itself stays while values need it.
    void EndState();
};

/// Lets go of a holder for one owner; ends it with the last.
void Release(Holder* holder);

/// One owner's hold on a value or an iteration; may hold nothing.
template <class T>
class Ref {
  public:
    Ref() = default;
    /// Takes over the reference that the caller owns.
    static Ref Adopt(T* holder) {
        Ref ref;
        ref.held = holder;
        return ref;
    }
    Ref(Ref const& other) : held(other.held) {
        if (held) ++held->references;
    }
    Ref(Ref&& other) noexcept : held(std::exchange(other.held, nullptr)) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(held, other.held);
        return *this;
    }
    ~Ref() {
        if (held) Release(held);
    }

    T* operator->() const { return held; }
    T& operator*() const { return *held; }
    T* Get() const { return held; }
    explicit operator bool() const { return held != nullptr; }
    /// Gives the reference to the caller.
    T* Detach() { return std::exchange(held, nullptr); }

  private:
    T* held = nullptr;
};

using ValueRef = Ref<Value>;
using IterationRef = Ref<Iteration>;

/// A slot for a value of the type; not alive yet.
ValueRef NewValue(TypeEntry const& type);
/// An iteration whose state is not constructed yet.
IterationRef NewIteration(PropertyEntry const& entry);
/// Makes `holder` keep `first` and `second` (either may be empty) alive as long as itself.
void KeepSources(Holder& holder, Holder* first, Holder* second);

/// A value of a type that the host knows by its C++ type.
template <class T>
ValueRef MakeValue(TypeEntry const& type, T const& value) {
    ValueRef ref = NewValue(type);
    new (ref->Bytes()) T(value);
    ref->alive = true;
    return ref;
}

///

}  // namespace Evaluator
