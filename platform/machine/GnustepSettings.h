#pragma once

// Where GNUstep keeps its things: GNUstep.conf.

#include <Carbon/Files.h>

#include <string>
#include <string_view>

namespace Platform {

/// Gets the text of GNUstep.conf: the file that GNUSTEP_CONFIG_FILE names, or the one of the system. The
/// result as that of GetTextFile.
OSErr GetGnustepSettings(std::string& text);

/// Gets the folder that a variable such as GNUSTEP_SYSTEM_LIBRARY stands for; those of the user, such as
/// GNUSTEP_USER_APPS, are in the home where the settings say nothing else. Empty where the settings tell
/// none.
OSErr GetGnustepFolder(std::string_view variable, std::string& path);

}  // namespace Platform
