#pragma once

// Paths on the disk: in the form that system calls take, and resolved where they hold "..".
//
// Functions here return 0 or a value of errno.

#include <fcntl.h>

#include <string>
#include <string_view>

#include "files/Location.h"
#include "files/OpenFolders.h"
#include "foundation/Path.h"

namespace Platform {

/// What system calls take: a folder's descriptor and a path from there. Borrowed.
struct Place {
    int folder = AT_FDCWD;
    char const* path = "";
};

/// A path in the form that system calls take, whatever its length. PATH_MAX and more bytes are reached
/// through the folders on the way, of which one is held for whoever comes next and is not far.
class SystemPath {
  public:
    explicit SystemPath(Path const& path);
    /// An item that a listing gave is found in that folder, as long as the listing goes on, wherever the
    /// folder is by now; any other where its path leads.
    explicit SystemPath(Location const& location);
    SystemPath(SystemPath const&) = delete;
    SystemPath& operator=(SystemPath const&) = delete;

    /// 0, or why a folder on the way could not be opened; then the place leads nowhere.
    int Error() const { return error; }
    /// Lent as long as this lives.
    Place Get() const { return {folder ? folder->Number() : AT_FDCWD, form.c_str()}; }

  private:
    void Find(Path const& path);
    void StartFrom(Path const& above, Path const& path);
    void Shorten(std::string_view path);

    std::string form;
    SharedDescriptor folder;
    int error = 0;
};

/// The place of an item beside the one at `place`, or below its folder: `name` takes the place of the last
/// name.
std::string Beside(Place place, std::string_view name);

/// The plain path of a location: see PlatformCreateResolvedURL. `folder` tells whether the path demanded a
/// folder, by its end. That the item is one, if it exists, is left to the caller, and so is the folder that
/// holds it.
int ResolvePath(std::string_view path, Path& resolved, bool& folder);

/// The path of the working directory; ENOENT where it lies outside the process's root.
int WorkingDirectory(std::string& path);

/// The path without any symbolic link.
int PathWithoutLinks(std::string const& path, std::string& result);

}  // namespace Platform
