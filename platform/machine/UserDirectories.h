#pragma once

// The folders that a user has chosen for desktop, documents, downloads and so on: user-dirs.dirs.

#include <Carbon/Files.h>

#include <string>
#include <string_view>

namespace Platform {

/// The folder that the text of a file user-dirs.dirs has for a name, such as "DOWNLOAD": that of the last
/// line `XDG_DOWNLOAD_DIR="$HOME/…"`, or with an absolute path; lines of any other form are passed over.
/// Empty where there is none.
std::string UserDirectoryIn(std::string_view text, std::string_view name, std::string_view home);

/// Gets the folder of a name as the user's file has it, which need not exist; empty where it has none. The
/// result as that of GetSettingsFile.
OSErr GetUserDirectory(std::string_view name, std::string& path);

}  // namespace Platform
