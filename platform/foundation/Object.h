#pragma once

// What all CoreFoundation objects share. Internal to the platform.
//
// A type of the interface, such as __CFString, derives from Object and from nothing else, so that the address
// of the object is that of its Object: a CFTypeRef is turned back with a plain cast.

#include <CoreFoundation/CFBase.h>

#include <atomic>
#include <new>
#include <utility>

namespace Platform {

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

    void Retain() const noexcept { count.fetch_add(1, std::memory_order_relaxed); }
    void Release() const noexcept {
        if (count.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
    }
    CFIndex Count() const noexcept { return count.load(std::memory_order_relaxed); }

  protected:
    Object() = default;

  private:
    mutable std::atomic<CFIndex> count{1};
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
