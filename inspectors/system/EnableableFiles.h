#pragma once

// Files that are on or off by the folder that they lie in.

#include "Evaluator/Values.h"
#include "filesystem/FileSystemObject.h"

/// A file, and whether it lies in the folder of the enabled ones. The file comes first: what takes a file
/// takes this, too.
struct EnableableFile : file {
    EnableableFile(file const& item, bool isIn) : file(item), isEnabled(isIn) {}

    bool isEnabled;
};

boolean enabled_of(EnableableFile const& item);
boolean disabled_of(EnableableFile const& item);
