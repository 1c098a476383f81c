#pragma once

// The objects of numbers and truth values. Internal to the platform.

#include <CoreFoundation/CFNumber.h>

#include "foundation/Object.h"

struct __CFBoolean final : Platform::Object {
    CFTypeID TypeID() const override;
    bool EqualTo(Platform::Object const& other) const override;
    CFHashCode Hash() const override;
};

namespace Platform {

/// A whole number as property lists can hold them.
__extension__ typedef __int128 WideInteger;

}  // namespace Platform

/// A number, whole or real.
struct __CFNumber : Platform::Object {
    CFTypeID TypeID() const final;
    bool EqualTo(Platform::Object const& other) const final;
    CFHashCode Hash() const final;

    virtual bool IsReal() const { return false; }
    /// The value of a whole number.
    virtual Platform::WideInteger Whole() const { return 0; }
    /// The value of a real one.
    virtual double Real() const { return 0; }
};

namespace Platform {

/// The truth value, with a reference of the caller's own. It is one of two objects that never end.
CFBooleanRef RetainedBoolean(bool value);
/// A new number.
CFNumberRef NewWholeNumber(SInt64 value);
CFNumberRef NewWholeNumber(WideInteger value);
CFNumberRef NewRealNumber(double value);

}  // namespace Platform
