#pragma once

// Which files hold the preferences of an application. Pure.

#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// What the places of preferences depend on.
struct PreferenceEnvironment {
    std::string home{};             // the user's; empty where it is not known
    std::string userFolder{};       // as XDG_CONFIG_HOME says; empty where it says nothing
    std::string commonFolders{};    // as XDG_CONFIG_DIRS says
    std::string gnustepDefaults{};  // GNUstep's folder of the user's defaults; empty: the usual one
    std::string machine{};          // the machine's identifier; empty where it has none
};

/// The files that may hold preferences of an application, in the order in which they are searched; none for
/// an identifier that cannot be part of a file's name. Folders that are not absolute paths are left out, as
/// are names of more than 255 bytes.
std::vector<std::string> PreferenceFiles(std::string_view application,
                                         PreferenceEnvironment const& environment);

/// The identifier in the text of a file machine-id; empty for a text that is none.
std::string MachineIn(std::string_view text);

}  // namespace Platform
