#pragma once

// FSSpecs: a folder's number and a name of at most 31 Mac Roman bytes.

#include <Carbon/Files.h>

#include <string>
#include <string_view>

#include "files/Lookup.h"

namespace Platform {

/// The name that an FSSpec gives to a file: its own in Mac Roman where that is possible, else
/// `<start>#<inode number in hex><.ext>`.
std::string SpecName(std::string_view name, UInt32 inode);

/// The FSSpec of a found item; its folder is remembered. A result code: that of a folder which cannot
/// be looked at any more.
OSErr MakeSpec(FoundItem const& found, FSSpec& spec);

/// The FSSpec of a place, whether or not there is an item: that of the item where there is one, unless it may
/// have to be waited for, or its name is none that an FSSpec has; else one on no volume, which stands for the
/// path as long as it is among the last 1024 that were remembered. Requires: an absolute path.
FSSpec MakeSpecOfPlace(std::string_view path);

}  // namespace Platform
