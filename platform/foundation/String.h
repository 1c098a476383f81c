#pragma once

// The string object. Internal to the platform.

#include <CoreFoundation/CFString.h>

#include <string>
#include <string_view>

#include "foundation/Object.h"

struct __CFString final : Platform::Object {
    explicit __CFString(std::u16string units) : text(std::move(units)) {}

    CFTypeID TypeID() const override;
    bool EqualTo(Platform::Object const& other) const override;
    CFHashCode Hash() const override;

    std::u16string const text;
};

namespace Platform {

/// A new string of a file's name or path.
CFStringRef NewFileNameString(std::string_view bytes);

}  // namespace Platform
