#pragma once

// The date object. Internal to the platform.

#include <CoreFoundation/CFDate.h>

#include "foundation/Object.h"

struct __CFDate final : Platform::Object {
    explicit __CFDate(CFAbsoluteTime absoluteTime) noexcept : time(absoluteTime) {}

    CFTypeID TypeID() const override;
    bool EqualTo(Platform::Object const& other) const override;
    CFHashCode Hash() const override;

    CFAbsoluteTime const time;
};
