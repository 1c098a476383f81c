#include "machine/Environment.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "foundation/PathStyles.h"

namespace Platform {

std::string Variable(char const* name) {
    char const* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

UserEntry CurrentUser() {
    constexpr std::size_t most = 65536;
    std::vector<char> buffer(1024);
    passwd user, *found = nullptr;
    while (getpwuid_r(getuid(), &user, buffer.data(), buffer.size(), &found) == ERANGE &&
           buffer.size() < most)
        buffer.resize(2 * buffer.size());
    if (found == nullptr) return {};
    auto const text = [](char const* field) { return field != nullptr ? field : ""; };
    return {text(found->pw_dir), text(found->pw_gecos)};
}

std::string HomeFolder() {
    std::string const home = Variable("HOME");
    return home.starts_with('/') ? home : CurrentUser().home;
}

std::string UserFolder(char const* variable, std::string_view belowHome) {
    std::string const folder = Variable(variable);
    if (folder.starts_with('/')) return folder;
    std::string const home = HomeFolder();
    return home.starts_with('/') ? JoinPaths(home, belowHome) : std::string();
}

std::vector<std::string> FoldersIn(std::string_view list) {
    std::vector<std::string> folders;
    while (!list.empty()) {
        std::string_view const folder = list.substr(0, list.find(':'));
        list.remove_prefix(std::min(folder.size() + 1, list.size()));
        if (folder.starts_with('/')) folders.emplace_back(folder);
    }
    return folders;
}

std::vector<std::string> FolderList(char const* variable, std::string_view otherwise) {
    std::string const list = Variable(variable);
    return FoldersIn(list.empty() ? otherwise : std::string_view(list));
}

namespace {

std::string MachineRoot() {
    std::string const root = Variable("ZELQ_MACHINE_ROOT");
    std::error_code error;
    std::filesystem::path const absolute = std::filesystem::absolute(root.empty() ? "/" : root, error);
    // Where the working directory is gone, nothing is below it; another machine's facts must not be told
    // instead.
    return error ? "/proc/self/cwd/" + root : absolute.native();
}

}  // namespace

std::string MachinePath(std::string_view path) { return JoinPaths(MachineRoot(), path); }
bool IsRecordedMachine() { return MachineRoot().find_first_not_of('/') != std::string::npos; }

}  // namespace Platform
