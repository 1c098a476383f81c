#pragma once

// What the environment says of the user and the machine. Read anew by each call.

#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// The value of a variable; empty where there is none.
std::string Variable(char const* name);
/// What the user database says of the real user; empty texts when it knows none.
struct UserEntry {
    std::string home;
    std::string gecos;  // the name, and what stands behind commas
};
UserEntry CurrentUser();
/// The home of the user: HOME, or what the user database has where that is no absolute path. Empty when there
/// is none.
std::string HomeFolder();
/// The user's folder of a purpose: the variable's value where that is an absolute path, else the folder below
/// the home. Empty where the home is not known.
std::string UserFolder(char const* variable, std::string_view belowHome);
/// The folders of a list separated by ':'; paths that are not absolute are left out.
std::vector<std::string> FoldersIn(std::string_view list);
/// Those that a variable lists, or those of `otherwise` where it is empty.
std::vector<std::string> FolderList(char const* variable, std::string_view otherwise);
/// A path of the machine's own facts, such as "etc/services" or "proc": below the folder of
/// ZELQ_MACHINE_ROOT, which may start at the working directory, or below the root.
std::string MachinePath(std::string_view path);
/// Whether ZELQ_MACHINE_ROOT names another machine's facts, so that what the running kernel says is not
/// meant.
bool IsRecordedMachine();

}  // namespace Platform
