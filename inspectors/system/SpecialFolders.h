#pragma once

// Special folders, by their types: of a domain, and those of the system domain where none is named. The ones
// that were looked up last are remembered until the host's caches are cleared.

#include "filesystem/FileSystemObject.h"
#include "system/Domains.h"

/// A folder that was looked up, for whom, and as what.
struct SpecialFolderDomainCacheEntry {
    /// Makes the folder the one at a location. FailedToGetFileItem where it cannot be looked at, NoSuchObject
    /// for what is no folder; the folder is whatever it was then.
    void LookupFolder(MacintoshPlatform::FileLocation const& location);

    folder found;
    SInt16 domainCode = 0;
    OSType type = 0;
};

/// The special folder of a type in a domain, by the cache. NoSuchObject where the platform has none, or what
/// it has is no folder; FailedToGetFileItem where it cannot be looked at; the host's platform error for
/// everything else, such as mistakes in the administrator's table.
folder SpecialFolder(OSType type, SInt16 domainCode);

template <OSType type>
folder special_folder_of_domain(domain const& object) {
    return SpecialFolder(type, object.code);
}
template <OSType type>
folder special_folder() {
    return special_folder_of_domain<type>(domain{kSystemDomain});
}

/// The folder <name>.framework in the folder of frameworks. NoSuchObject when there is none.
folder framework_folder_of_domain(unsigned char const* name, unsigned long length, domain const& object);
folder framework_folder(unsigned char const* name, unsigned long length);

/// Forgets the special folders that were looked up.
void ClearSpecialFolderCaches(void*);
