#pragma once

// References that are given back by themselves. Internal to the platform.

#include <memory>

#include "foundation/Object.h"

namespace Platform {

struct ReleaseObject {
    void operator()(Object const* object) const noexcept { object->Release(); }
};

/// Owns a reference to an object of a type of the interface: Held<__CFString const>.
template <class T>
using Held = std::unique_ptr<T, ReleaseObject>;

}  // namespace Platform
