#pragma once

// The components that bundles on the disk name. Waits patiently for slow mounts.

#include <Carbon/Components.h>

#include <compare>
#include <string>
#include <vector>

namespace Platform {

/// What a component is known by: its bundle's path, its place in the array there, and its codes.
struct ComponentPlace {
    std::string bundle;
    std::size_t index = 0;
    OSType type = 0, subtype = 0, manufacturer = 0;
    auto operator<=>(ComponentPlace const&) const = default;
};

struct NamedComponent {
    ComponentPlace place;
    ComponentDescription description{};
    std::string name, info;  // UTF-8, at most 255 bytes; empty where there is none
    UInt32 version = 0;
};

/// Gets the components of all component folders, in their order: see Carbon/Components.h. A result code:
/// userCanceledErr when the check-in function says stop, that of GetSpecialFolderPaths when the folders are
/// not known. Folders and bundles that cannot be read, for whatever reason, have no components; what is there
/// and cannot be read is noted for PlatformFileFailure or PlatformPropertyListFailure.
OSErr ListComponents(std::vector<NamedComponent>& components);

}  // namespace Platform
