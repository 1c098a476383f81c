#pragma once

// Owners of the platform's property-list objects.

#include <CoreFoundation/CFDictionary.h>

#include <utility>

#include "Evaluator/CoreFoundationHolders.h"
#include "frame/SharingPtr.h"

/// A reference of the caller's own to the same dictionary; null for null.
CFDictionaryRef Duplicate(CFDictionaryRef dictionary);

/// Owns a dictionary.
class AutoCFDictionary
    : public Evaluator::ReferenceHolder<CFDictionaryRef, Evaluator::Release<CFDictionaryRef>> {
  public:
    using ReferenceHolder::ReferenceHolder;
    /// Releases a dictionary; null is ignored.
    static void DisposeCFDictionaryRef(CFDictionaryRef dictionary);
};

namespace Inspectors {

/// One reference that all copies own together: the last of them releases it. Null is not released.
template <class Reference>
class SharedReference {
  public:
    /// Takes over a reference that the caller owned, as the only sharer.
    explicit SharedReference(Reference owned) noexcept : reference(owned) {}
    SharedReference(SharedReference const&) noexcept = default;
    SharedReference& operator=(SharedReference const& other) noexcept {
        SharedReference joined(other);
        std::swap(joined.reference, reference);
        joined.link.swap(link);
        return *this;
    }
    ~SharedReference() {
        if (link.IsAlone()) Evaluator::Release(reference);
    }

    /// Lends the reference.
    operator Reference() const noexcept { return reference; }

  private:
    Reference reference;
    SharingLink link;
};

}  // namespace Inspectors
