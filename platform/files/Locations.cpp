#include "files/Locations.h"

#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <new>

#include "foundation/PathStyles.h"

namespace Platform {

SystemPath::SystemPath(std::string_view path) {
    if (path.size() < PATH_MAX) {
        form = path;
    } else {
        Shorten(path);
    }
}

SystemPath::~SystemPath() {
    if (folder >= 0) close(folder);
}

// Opens the folders on the way in steps of less than PATH_MAX bytes each, until what is left is short.
void SystemPath::Shorten(std::string_view path) {
    constexpr std::size_t longestStep = PATH_MAX - 64;  // leaves room for the descriptor's own path
    while (path.size() > longestStep) {
        std::size_t const end = path.rfind('/', longestStep);
        if (end == std::string_view::npos || end == 0) {
            error = ENAMETOOLONG;
            return;
        }
        std::string const step(path.substr(0, end));
        int const next =
            openat(folder >= 0 ? folder : AT_FDCWD, step.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        if (next < 0) {
            error = errno;
            return;
        }
        if (folder >= 0) close(folder);
        folder = next;
        path.remove_prefix(std::min(path.find_first_not_of('/', end), path.size()));
    }
    form = "/proc/self/fd/" + std::to_string(folder) + "/" + std::string(path);
}

bool IsPlainPath(std::string_view path) {
    if (path.empty() || path.front() != '/') return false;
    if (path == "/") return true;
    while (!path.empty()) {
        path.remove_prefix(1);
        std::string_view const name = path.substr(0, path.find('/'));
        if (name.empty() || IsDots(name)) return false;
        path.remove_prefix(name.size());
    }
    return true;
}

int PathWithoutLinks(std::string const& path, std::string& result) {
    std::unique_ptr<char, void (*)(void*)> const real(realpath(path.c_str(), nullptr), free);
    if (!real) return errno;
    result = real.get();
    return 0;
}

std::string ParentPath(std::string_view plainPath) {
    if (plainPath == "/") return {};
    std::size_t const end = plainPath.rfind('/');
    return std::string(plainPath.substr(0, end == 0 ? 1 : end));
}

namespace {

// One level up from `path`, on the disk. A link is left towards where it leads.
int StepUp(std::string& path) {
    SystemPath const here(path);
    struct stat status;
    if (here.Error() != 0) return here.Error();
    if (lstat(here.Get(), &status) != 0) return errno;
    if (S_ISLNK(status.st_mode)) {
        if (stat(here.Get(), &status) != 0) return errno;
        if (int const error = PathWithoutLinks(path, path); error != 0) return error;
    }
    if (!S_ISDIR(status.st_mode)) return ENOTDIR;
    if (path != "/") path = ParentPath(path);
    return 0;
}

int WorkingDirectory(std::string& path) {
    std::unique_ptr<char, void (*)(void*)> const here(getcwd(nullptr, 0), free);
    if (!here) return errno;
    path = here.get();
    return path.front() == '/' ? 0 : ENOENT;  // "(unreachable)" in front: outside the process's root
}

}  // namespace

int ResolvePath(std::string_view path, std::string& resolved, bool& folder) {
    if (path.empty()) return EINVAL;
    resolved = "/";
    if (path.front() != '/') {
        if (int const error = WorkingDirectory(resolved); error != 0) return error;
    }
    folder = path.back() == '/' || IsDots(LastComponent(path));
    while (!path.empty()) {
        std::string_view const name = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        if (name.empty() || name == ".") continue;
        if (name != "..") {
            AppendName(resolved, name);
        } else if (int const error = StepUp(resolved); error != 0) {
            return error;
        }
    }
    return 0;
}

}  // namespace Platform
