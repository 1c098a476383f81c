#pragma once

// What the build knows of special folders.

namespace Platform {

/// The text of folders.conf.
extern char const kBuiltInFolders[];
/// The name of the machine's kind in names of library folders, such as "x86_64-linux-gnu"; empty where the
/// system has no such folders.
extern char const kLibraryTriplet[];

}  // namespace Platform
