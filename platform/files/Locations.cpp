#include "files/Locations.h"

#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include "foundation/PathStyles.h"

namespace Platform {

SystemPath::SystemPath(Path const& path) { Find(path); }

SystemPath::SystemPath(Location const& location) {
    if (location.rule == LinkRule::Listed) folder = OpenFolders::Shared().FolderOf(location.path);
    if (folder) {
        form = location.path.Name();
    } else {
        Find(location.path);
    }
}

void SystemPath::Find(Path const& path) {
    constexpr std::size_t step = 2048;  // so that neighbours in a tree start from the same folder
    if (path.Length() < PATH_MAX) {
        form = path.Text();
    } else if (Path const above = path.FolderWithin(path.Length() / step * step - step); !above.IsNone()) {
        StartFrom(above, path);
    } else {
        Shorten(path.Text());
    }
}

void SystemPath::StartFrom(Path const& above, Path const& path) {
    folder = OpenFolders::Shared().At(above);
    if (!folder) {
        Shorten(above.Text());
        if (error != 0) return;
        int const number = openat(Get().folder, form.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        if (number < 0) {
            error = errno;
            return;
        }
        folder = std::make_shared<Descriptor const>(number);
        OpenFolders::Shared().Hold(above, folder);
    }
    Shorten(path.TextBelow(above));
}

// Opens the folders on the way in steps of less than PATH_MAX bytes each, until what is left is short.
void SystemPath::Shorten(std::string_view path) {
    while (path.size() >= PATH_MAX) {
        std::size_t const end = path.rfind('/', PATH_MAX - 1);
        if (end == std::string_view::npos || end == 0) {
            error = ENAMETOOLONG;
            return;
        }
        std::string const step(path.substr(0, end));
        int const next = openat(Get().folder, step.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        if (next < 0) {
            error = errno;
            return;
        }
        folder = std::make_shared<Descriptor const>(next);
        path.remove_prefix(std::min(path.find_first_not_of('/', end), path.size()));
    }
    form = path;
}

std::string Beside(Place place, std::string_view name) {
    std::string_view const path = place.path;
    std::size_t const end = path.rfind('/');
    std::string result(path.substr(0, end == std::string_view::npos ? 0 : end + 1));
    return result.append(name);
}

int WorkingDirectory(std::string& path) {
    std::unique_ptr<char, void (*)(void*)> const here(getcwd(nullptr, 0), free);
    if (!here) return errno;
    path = here.get();
    return path.front() == '/' ? 0 : ENOENT;  // "(unreachable)" in front: outside the process's root
}

int PathWithoutLinks(std::string const& path, std::string& result) {
    std::unique_ptr<char, void (*)(void*)> const real(realpath(path.c_str(), nullptr), free);
    if (!real) return errno;
    result = real.get();
    return 0;
}

namespace {

// One level up from `path`, on the disk. A link is left towards where it leads.
int StepUp(std::string& text) {
    Path path(text);
    SystemPath const here(path);
    struct stat status;
    if (here.Error() != 0) return here.Error();
    auto const [folder, name] = here.Get();
    if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return errno;
    if (S_ISLNK(status.st_mode)) {
        if (fstatat(folder, name, &status, 0) != 0) return errno;
        if (int const error = PathWithoutLinks(text, text); error != 0) return error;
        path = Path(text);
    }
    if (!S_ISDIR(status.st_mode)) return ENOTDIR;
    if (!path.IsRoot()) text = path.Folder().Text();
    return 0;
}

}  // namespace

int ResolvePath(std::string_view path, Path& resolved, bool& folder) {
    if (path.empty()) return EINVAL;
    std::string text = "/";
    if (path.front() != '/') {
        if (int const error = WorkingDirectory(text); error != 0) return error;
    }
    folder = path.back() == '/' || IsDots(LastComponent(path));
    while (!path.empty()) {
        std::string_view const name = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        if (name.empty() || name == ".") continue;
        if (name != "..") {
            AppendName(text, name);
        } else if (int const error = StepUp(text); error != 0) {
            return error;
        }
    }
    resolved = Path(text);
    return 0;
}

}  // namespace Platform
