#pragma once

// What all CoreFoundation objects share. Internal to the platform.
//
// A type of the interface, such as __CFString, derives from Object and from nothing else, so that the address
// of the object is that of its Object: a CFTypeRef is turned back with a plain cast.

#include <CoreFoundation/CFBase.h>

#include <cstddef>
#include <new>
#include <utility>

#include "foundation/Threads.h"

namespace Platform {

/// Bytes behind an object, in the same piece of memory: new (Behind{size}) T(...).
struct Behind {
    std::size_t bytes;
};

/// A counted, immutable object. Born with one reference; ended by the last Release, on whatever thread that
/// is.
class Object {
  public:
    Object(Object const&) = delete;
    Object& operator=(Object const&) = delete;
    virtual ~Object() = default;

    virtual CFTypeID TypeID() const = 0;
    /// Whether the contents are equal; asked only with an `other` of the same type.
    virtual bool EqualTo(Object const& other) const = 0;
    /// The same for equal objects.
    virtual CFHashCode Hash() const = 0;
    /// How deep containers lie in one another here: 0 for an object that is none, 1 for a container without
    /// containers.
    virtual unsigned Levels() const { return 0; }

    void Retain() const noexcept { count.Increase(); }
    void Release() const noexcept {
        if (count.Decrease()) delete this;
    }
    CFIndex Count() const noexcept { return static_cast<CFIndex>(count.Number()); }

    /// Takes a reference unless the object is about to end.
    bool RetainUnlessEnding() const noexcept { return count.IncreaseUnlessNone(); }

    static void* operator new(std::size_t size) { return ::operator new(size); }
    static void* operator new(std::size_t size, Behind behind) { return ::operator new(size + behind.bytes); }
    static void operator delete(void* memory) noexcept { ::operator delete(memory); }
    static void operator delete(void* memory, Behind) noexcept { ::operator delete(memory); }

  protected:
    Object() = default;

    /// The elements behind an object of the type T that was made with room for them.
    template <class Element, class T>
    static Element* ElementsBehind(T const* object) noexcept {
        static_assert(alignof(Element) <= alignof(T));
        return reinterpret_cast<Element*>(const_cast<T*>(object) + 1);
    }

  private:
    mutable OwnerCount count;
};

/// The next free type number; each type asks once.
CFTypeID NewTypeID() noexcept;

/// Runs `action` at the edge of the C interface: without memory the result is `withoutMemory`.
template <class Result, class Action>
Result Guarded(Result withoutMemory, Action action) noexcept {
    try {
        return action();
    } catch (std::bad_alloc const&) {
        return withoutMemory;
    }
}

}  // namespace Platform
