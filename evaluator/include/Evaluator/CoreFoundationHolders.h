#pragma once

// Owners of CoreFoundation references.

#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>

#include <utility>

#include "Evaluator/Export.h"

/// A reference of the caller's own to the same string; null for null.
EVALUATOR_API CFStringRef Duplicate(CFStringRef string);
/// A reference of the caller's own to the same URL; null for null.
EVALUATOR_API CFURLRef Duplicate(CFURLRef url);

namespace Evaluator {

/// Owns one reference, which may be null, and releases it at its end. Copying takes a reference by Duplicate.
template <class Reference, void (*Dispose)(Reference)>
class ReferenceHolder {
  public:
    ReferenceHolder() noexcept = default;
    /// Takes over a reference that the caller owned.
    explicit ReferenceHolder(Reference owned) noexcept : reference(owned) {}
    ReferenceHolder(ReferenceHolder const& other) : reference(Duplicate(other.reference)) {}
    ReferenceHolder(ReferenceHolder&& other) noexcept : reference(std::exchange(other.reference, nullptr)) {}
    ReferenceHolder& operator=(ReferenceHolder other) noexcept {
        std::swap(reference, other.reference);
        return *this;
    }
    ~ReferenceHolder() { Dispose(reference); }

    /// Lends the reference.
    operator Reference() const noexcept { return reference; }

  private:
    Reference reference = nullptr;
};

/// Gives a reference back; null is ignored.
template <class Reference>
void Release(Reference reference) {
    if (reference != nullptr) CFRelease(reference);
}

}  // namespace Evaluator

/// Owns a platform string.
class AutoCFString : public Evaluator::ReferenceHolder<CFStringRef, Evaluator::Release<CFStringRef>> {
  public:
    using ReferenceHolder::ReferenceHolder;
    /// Releases a string; null is ignored.
    EVALUATOR_API static void DisposeCFStringRef(CFStringRef string);
};

/// Owns a URL.
class AutoCFURL : public Evaluator::ReferenceHolder<CFURLRef, Evaluator::Release<CFURLRef>> {
  public:
    using ReferenceHolder::ReferenceHolder;
    /// Releases a URL; null is ignored.
    EVALUATOR_API static void DisposeCFURLRef(CFURLRef url);
};
