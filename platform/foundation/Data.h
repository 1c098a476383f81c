#pragma once

// The data object. Internal to the platform.

#include <CoreFoundation/CFData.h>

#include <span>

#include "foundation/Object.h"
#include "foundation/Path.h"

namespace Platform {

/// New data of so many bytes, whatever they are.
__CFData* NewData(std::size_t size);
/// New data with a copy of the bytes.
CFDataRef NewData(std::span<UInt8 const> bytes);

}  // namespace Platform

/// The bytes lie behind the object, in the same piece of memory.
struct __CFData final : Platform::Object {
    CFTypeID TypeID() const override;
    bool EqualTo(Platform::Object const& other) const override;
    CFHashCode Hash() const override;

    std::span<UInt8 const> Bytes() const noexcept { return {ElementsBehind<UInt8>(this), size}; }
    /// The bytes of an object that nobody else knows yet.
    std::span<UInt8> Bytes() noexcept { return {ElementsBehind<UInt8>(this), size}; }
    /// Makes fewer bytes of such an object's.
    void ShortenTo(std::size_t bytes) noexcept { size = bytes; }

    /// The file that the bytes were read from; none of others.
    Platform::Path origin;

  private:
    friend __CFData* Platform::NewData(std::size_t size);
    explicit __CFData(std::size_t bytes) noexcept : size(bytes) {}

    std::size_t size;
};
