#pragma once

// The URL object. Internal to the platform.

#include <CoreFoundation/CFURL.h>

#include <string>
#include <string_view>

#include "foundation/Object.h"

struct __CFURL final : Platform::Object {
    /// `ownPath` is not empty; a directory URL's ends with '/'. Takes a reference of its own to `baseURL`,
    /// which may be null.
    __CFURL(std::string ownPath, CFURLRef baseURL);
    ~__CFURL() override;

    CFTypeID TypeID() const override;
    bool EqualTo(Platform::Object const& other) const override;
    CFHashCode Hash() const override;

    /// The path below the bases' paths; still relative when the last base is. Ends with '/' as `path` does.
    std::string ResolvedPath() const;

    std::string const path;
    CFURLRef const base;
};

namespace Platform {

/// A new URL without base of a POSIX path that is not empty; `directory` adds the '/' at its end.
CFURLRef NewURL(std::string path, bool directory, CFURLRef base = nullptr);

}  // namespace Platform
