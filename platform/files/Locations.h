#pragma once

// Paths on the disk: absolute ones, ones longer than system calls take, and ones with "..".
//
// Functions here return 0 or a value of errno.

#include <string>
#include <string_view>

namespace Platform {

/// A path in a form that system calls take, whatever its length: PATH_MAX and more are reached through
/// descriptors of folders on the way, which this object holds.
class SystemPath {
  public:
    explicit SystemPath(std::string_view path);
    SystemPath(SystemPath const&) = delete;
    SystemPath& operator=(SystemPath const&) = delete;
    ~SystemPath();

    /// 0, or why a folder on the way could not be opened; then the path below cannot be found.
    int Error() const { return error; }
    char const* Get() const { return form.c_str(); }

  private:
    void Shorten(std::string_view path);

    std::string form;
    int folder = -1;
    int error = 0;
};

/// Whether a path is absolute and has no ".", "..", doubled separators or separator at its end.
bool IsPlainPath(std::string_view path);

/// The plain path of a location: see PlatformCreateResolvedURL. `folder` tells whether the path demanded a
/// folder, by its end. That the item is one, if it exists, is left to the caller, and so is the folder that
/// holds it.
int ResolvePath(std::string_view path, std::string& resolved, bool& folder);

/// The path of the folder that holds the item at a plain path; of the root empty.
std::string ParentPath(std::string_view plainPath);
/// The path without any symbolic link.
int PathWithoutLinks(std::string const& path, std::string& result);

}  // namespace Platform
