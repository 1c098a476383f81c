#pragma once

// The URL object. Internal to the platform.

#include <CoreFoundation/CFURL.h>

#include <string_view>

#include "files/Location.h"
#include "foundation/Object.h"
#include "foundation/Path.h"

struct __CFURL final : Platform::Object {
    /// Takes a reference of its own to `baseURL`, which may be null and counts for a relative path only.
    __CFURL(Platform::Path ownPath, bool isDirectory, CFURLRef baseURL, Platform::LinkRule linkRule);
    ~__CFURL() override;

    CFTypeID TypeID() const override;
    bool EqualTo(Platform::Object const& other) const override;
    CFHashCode Hash() const override;

    /// The path below the bases' paths; still relative when the last base is.
    Platform::Path ResolvedPath() const;

    Platform::Path const path;
    bool const directory;           // the URL is one of a folder
    Platform::LinkRule const rule;  // how its item is described when it is a link
    CFURLRef const base;
};

namespace Platform {

/// A new URL of a POSIX path, one of a folder if `directory` says so or the path is the root's.
CFURLRef NewURL(Path path, bool directory, CFURLRef base = nullptr, LinkRule rule = LinkRule::Follow);
/// The same of a text that is not empty; a separator at its end makes it one of a folder.
CFURLRef NewURL(std::string_view path, bool directory, CFURLRef base = nullptr);

}  // namespace Platform
