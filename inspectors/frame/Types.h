#pragma once

// Records of types and of caches, and what goes with them.

#include <type_traits>

#include "Evaluator/Fingerprint.h"
#include "Evaluator/Registration.h"
#include "frame/HostArea.h"

/// The functions that the host calls on values of a type. FingerprintingChoice is 0 for a type whose values
/// have no identity that the host could use, 1 for one with an `operator<<(Fingerprinter&, T const&)`.
template <class T, int FingerprintingChoice>
struct InspectorTypeInfo {
    static_assert(FingerprintingChoice == 0 || FingerprintingChoice == 1);

    /// Runs the value's destructor, in place; does nothing for a type without one.
    static void Destroy(void const* value) { static_cast<T const*>(value)->~T(); }
    /// Writes the value's identity into the sink.
    static void Fingerprint(Fingerprinter& print, void const* value) requires(FingerprintingChoice == 1) {
        print << *static_cast<T const*>(value);
    }
    /// What the host is told: the function above, or none.
    static constexpr FingerprintFunction RegisteredFingerprint() {
        if constexpr (FingerprintingChoice == 1) {
            return Fingerprint;
        } else {
            return nullptr;
        }
    }
};

/// The record of a type. A base, if there is one, is the name of a type whose layout is a prefix of this
/// one's.
template <class T, int FingerprintingChoice = 0>
class TypeRecord : Inspectors::HostArea<kTypeRecordSize> {
    using Info = InspectorTypeInfo<T, FingerprintingChoice>;

  public:
    explicit TypeRecord(char const* name, char const* base = nullptr) {
        Register_Type(this, kTypeRecordSize, name, sizeof(T), Info::Destroy, base,
                      Info::RegisteredFingerprint());
    }
    ~TypeRecord() { Unregister_Type(this); }
};

/// The record of a function that drops cached knowledge of the machine's state.
class CacheRecord : Inspectors::HostArea<kCacheRecordSize> {
  public:
    explicit CacheRecord(ClearCacheFunction clear) { Register_Cache(this, kCacheRecordSize, clear, nullptr); }
    ~CacheRecord() { Unregister_Cache(this); }
};

/// Marks a registration whose result is a function of the direct object and the arguments alone, so that the
/// host may use it again. Writes nothing.
inline void DependsOnlyOnParameters(Fingerprinter&) {}

/// Adds the 2, 4 or 8 bytes of a number to an identity, in memory order.
template <class X>
void FingerprintBytewise(Fingerprinter& print, X const& number) {
    static_assert(std::is_scalar_v<X> && (sizeof(X) == 2 || sizeof(X) == 4 || sizeof(X) == 8));
    Fingerprint_Byte_Range(print, &number, &number + 1);
}
