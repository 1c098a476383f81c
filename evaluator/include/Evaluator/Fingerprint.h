#pragma once

// The identity of values, as bytes fed into a sink.

#include "Evaluator/Values.h"

class moment;

/// The host's sink for the bytes that make up a value's identity. The host hands one to a type's Fingerprint
/// function; equal values feed equal bytes.
class EVALUATOR_API Fingerprinter {
  public:
    virtual ~Fingerprinter();
    /// Adds bytes to the identity.
    virtual void Add(ConstData bytes) = 0;
};

/// The host's own sink: 64-bit FNV-1a.
class EVALUATOR_API HashingFingerprinter : public Fingerprinter {
  public:
    void Add(ConstData bytes) override;
    std::uint64_t Value() const { return hash; }

  private:
    std::uint64_t hash = 0xCBF29CE484222325;
};

/// Adds the bytes from `begin` up to, not including, `end`.
EVALUATOR_API void Fingerprint_Byte_Range(Fingerprinter& print, void const* begin, void const* end);
/// Adds a string's 32-bit length and its bytes.
EVALUATOR_API Fingerprinter& operator<<(Fingerprinter& print, inspector_string const& text);
/// Adds a time's 64-bit count of microseconds.
EVALUATOR_API Fingerprinter& operator<<(Fingerprinter& print, moment const& time);
