#pragma once

// Files that the section and key inspectors do not read.

#include <cstdint>

#include "Evaluator/MacintoshPlatform.h"
#include "filesystem/FileSystemObject.h"

/// An array of locations, and how many there are. A build of the library supplies them; none are delivered.
extern "C" __attribute__((visibility("default")))
MacintoshPlatform::FileLocation const* const gFileExclusionList;
extern "C" __attribute__((visibility("default"))) std::uint32_t const gFileExclusionListLength;

/// Whether the file is on the list: at the same place as an entry, or the same item.
bool DoNotReadFile(file const& object);
