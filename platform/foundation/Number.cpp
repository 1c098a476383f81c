#include "foundation/Number.h"

#include <cmath>
#include <concepts>
#include <functional>
#include <limits>
#include <type_traits>

using Platform::WideInteger;

CFTypeID __CFBoolean::TypeID() const { return CFBooleanGetTypeID(); }
bool __CFBoolean::EqualTo(Platform::Object const& other) const { return this == &other; }
CFHashCode __CFBoolean::Hash() const { return CFBooleanGetValue(this) != 0 ? 1 : 0; }

namespace {

__CFBoolean const& TruthValue(bool value) {
    static __CFBoolean const& no = *new __CFBoolean;
    static __CFBoolean const& yes = *new __CFBoolean;
    return value ? yes : no;
}

// Numbers by how much there is to keep of them.
struct SmallNumber final : __CFNumber {
    explicit SmallNumber(SInt64 number) noexcept : value(number) {}
    WideInteger Whole() const override { return value; }
    SInt64 const value;
};

struct LargeNumber final : __CFNumber {
    explicit LargeNumber(WideInteger number) noexcept
        : high(static_cast<SInt64>(number >> 64)), low(static_cast<UInt64>(number)) {}
    WideInteger Whole() const override { return (static_cast<WideInteger>(high) << 64) | low; }
    SInt64 const high;
    UInt64 const low;
};

struct RealNumber final : __CFNumber {
    explicit RealNumber(double number) noexcept : value(number) {}
    bool IsReal() const override { return true; }
    double Real() const override { return value; }
    double const value;
};

// The real number nearest to a whole one, and whether it is the same.
template <std::floating_point Float>
bool Convert(WideInteger from, Float& to) {
    to = static_cast<Float>(from);
    // What is rounded up to 2^127 has no whole form to be compared with.
    return to < std::ldexp(Float{1}, 127) && static_cast<WideInteger>(to) == from;
}

template <std::integral Integer>
bool Convert(WideInteger from, Integer& to) {
    to = static_cast<Integer>(from);
    return to == from;
}

template <std::floating_point Float>
bool Convert(double from, Float& to) {
    double const most = std::numeric_limits<Float>::max();
    bool const fits = !std::isfinite(from) || std::fabs(from) <= most;
    to = fits ? static_cast<Float>(from) : static_cast<Float>(std::copysign(most, from));
    return std::isnan(from) || to == from;
}

template <std::integral Integer>
bool Convert(double from, Integer& to) {
    using Limits = std::numeric_limits<Integer>;
    double const end = std::ldexp(1.0, Limits::digits);  // the first whole number that is too large
    if (std::isnan(from)) {
        to = 0;
    } else if (from >= end) {
        to = Limits::max();
    } else if (from < -end) {
        to = Limits::min();
    } else {
        to = static_cast<Integer>(from);
    }
    return from < end && from >= -end && static_cast<double>(to) == from;
}

template <class Value>
bool Write(__CFNumber const& number, void* value) {
    auto& to = *static_cast<Value*>(value);
    return number.IsReal() ? Convert(number.Real(), to) : Convert(number.Whole(), to);
}

}  // namespace

CFTypeID __CFNumber::TypeID() const { return CFNumberGetTypeID(); }

bool __CFNumber::EqualTo(Platform::Object const& other) const {
    auto const& number = static_cast<__CFNumber const&>(other);
    if (IsReal() && number.IsReal()) return Real() == number.Real();
    if (!IsReal() && !number.IsReal()) return Whole() == number.Whole();
    double converted;
    return IsReal() ? Convert(number.Whole(), converted) && converted == Real()
                    : Convert(Whole(), converted) && converted == number.Real();
}

CFHashCode __CFNumber::Hash() const {
    // Equal numbers have equal nearest real ones.
    double const nearest = IsReal() ? Real() : static_cast<double>(Whole());
    return std::hash<double>()(nearest);
}

namespace Platform {

CFBooleanRef RetainedBoolean(bool value) {
    __CFBoolean const& boolean = TruthValue(value);
    boolean.Retain();
    return &boolean;
}

CFNumberRef NewWholeNumber(SInt64 value) { return new SmallNumber(value); }

CFNumberRef NewWholeNumber(WideInteger value) {
    auto const small = static_cast<SInt64>(value);
    if (small == value) return new SmallNumber(small);
    return new LargeNumber(value);
}

CFNumberRef NewRealNumber(double value) { return new RealNumber(value); }

}  // namespace Platform

CFTypeID CFBooleanGetTypeID() {
    static CFTypeID const id = Platform::NewTypeID();
    return id;
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) { return boolean == &TruthValue(true); }

CFTypeID CFNumberGetTypeID() {
    static CFTypeID const id = Platform::NewTypeID();
    return id;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    switch (type) {
        case kCFNumberSInt8Type:
        case kCFNumberCharType:
            return Write<SInt8>(*number, value);
        case kCFNumberSInt16Type:
        case kCFNumberShortType:
            return Write<SInt16>(*number, value);
        case kCFNumberSInt32Type:
        case kCFNumberIntType:
        case kCFNumberLongType:
            return Write<SInt32>(*number, value);
        case kCFNumberSInt64Type:
        case kCFNumberLongLongType:
        case kCFNumberCFIndexType:
            return Write<SInt64>(*number, value);
        case kCFNumberFloat32Type:
        case kCFNumberFloatType:
            return Write<float>(*number, value);
        case kCFNumberFloat64Type:
        case kCFNumberDoubleType:
            return Write<double>(*number, value);
    }
    return false;
}
