#pragma once

/// A range of numbers: from `begin` on, without `end`.
template <class T>
struct Range {
    constexpr Range() = default;
    constexpr Range(T first, T behind) : begin(first), end(behind) {}
    /// Of another width; what does not fit is cut off.
    template <class Other>
    constexpr explicit Range(Range<Other> const& other)
        : begin(static_cast<T>(other.begin)), end(static_cast<T>(other.end)) {}

    friend bool operator==(Range const&, Range const&) = default;

    T begin = 0;
    T end = 0;
};
