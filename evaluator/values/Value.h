#pragma once

// Internal. How a value lives.
//
// A value is the bytes of one registered type, in a slot that never moves. It is shared, not copied, and it
// keeps alive what it may point into: the object, index, operands or source that it was made from, the
// iteration that yielded it, and the inspector memory that was asked for while it was made. The same holds
// for an iteration. When the last owner lets go, the type's Destroy is called first, then the memory is
// freed, then what it was made from is let go.
//
// Owners are counted, and all that live are in one list, the newest first. Where an evaluation's stack is
// given up, its frames' counts are wrong for ever; then the list tells what must end (ForgetOwners,
// EndForgotten).
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
    std::size_t size;  ///< with this header
};

/// What values and iterations have in common: owners, inspector memory and sources.
struct Holder {
    std::uint32_t references = 1;
    std::uint32_t keeps = 0;  ///< those of the references that outlive the evaluation
    std::uint32_t size = 0;
    bool isIteration = false;
    bool alive = false;  ///< the bytes hold a value, or a state, whose life must be ended
    MemoryBlock* memory = nullptr;
    Holder* sources[2] = {nullptr, nullptr};  ///< each older than this
    Holder *older = nullptr, *newer = nullptr;

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
    /// Of a tuple: its fields' values, older than itself.
    Value* const* Fields() const { return static_cast<Value* const*>(Bytes()); }
};

/// An iteration: the state of an iterated property, which follows it, and what its values keep.
struct alignas(std::max_align_t) Iteration : Holder {
    PropertyEntry const* entry = nullptr;

    void* State() { return this + 1; }

    /// Ends the life of the state, once; the iteration itself stays while values need it.
    void EndState();
};

/// Ends a holder that nobody owns any more, and lets go of what it keeps.
void End(Holder* holder);
/// Lets go of a holder for one owner; ends it with the last.
inline void Release(Holder* holder) {
    if (--holder->references == 0) End(holder);
}

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
    /// One more reference.
    static Ref Share(T* holder) {
        ++holder->references;
        return Adopt(holder);
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
/// Makes `value` a slot for a value of the type that is not alive yet: the one that it held, when that is
/// bits of the same type and nobody else holds it.
inline void RenewValue(ValueRef& value, TypeEntry const& type) {
    if (!value || value->type != &type || !type.selfContained || value->references != 1) {
        value = NewValue(type);
        return;
    }
    value->alive = false;
    if (value->memory != nullptr) value->FreeMemory();
}
/// An iteration whose state is not constructed yet.
IterationRef NewIteration(PropertyEntry const& entry);
/// Makes `holder` keep `first` and `second` (either may be null) alive as long as itself.
void KeepSources(Holder& holder, Holder* first, Holder* second);

/// A value of a type that the host knows by its C++ type.
template <class T>
ValueRef MakeValue(TypeEntry const& type, T const& value) {
    ValueRef ref = NewValue(type);
    new (ref->Bytes()) T(value);
    ref->alive = true;
    return ref;
}

/// Bytes of inspector memory in use.
std::size_t InspectorMemoryInUse();

/// The registration whose Destroy has thrown since the last call, the latest if there are several; null for
/// none. What it threw is lost.
Entry const* TakeFailureToEnd();

/// After a stack was given up: only what was kept, and what that needs, has owners from now on.
void ForgetOwners();
/// Ends all that has no owners, the newest first. Where that is given up again, the next call goes on behind
/// the one that could not be ended.
void EndForgotten();

}  // namespace Evaluator
