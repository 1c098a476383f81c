#pragma once

// The folders of this machine that stand for a type.

#include <Carbon/Folders.h>

#include <string>
#include <vector>

namespace Platform {

/// Gets the paths that the table has for a type in a domain, in their order; they need not exist. The result
/// is noErr also where there are none; otherwise as that of FSFindFolder.
OSErr GetSpecialFolderPaths(OSType type, SInt16 domain, std::vector<std::string>& paths);

}  // namespace Platform
