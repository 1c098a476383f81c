#pragma once

// Paths as text: taking them apart, and the two styles. Pure; paths are bytes.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace Platform {

/// The path without separators at its end; the root stays "/".
std::string_view WithoutEndSeparators(std::string_view path);
/// The last name of a path, separators at the end ignored; "/" of the root.
std::string_view LastComponent(std::string_view path);
/// The path of the folder that holds the last name, with a separator at its end. The root gives "/../", a
/// path that ends with "." or ".." gets "../" behind it, a single name gives "./".
std::string FolderOfPath(std::string_view path);
/// `rest` below `folder`, with one separator between them.
std::string JoinPaths(std::string_view folder, std::string_view rest);
/// Makes the path of a folder that of a name in it. Takes time for the name only, so that paths of many names
/// can be put together.
void AppendName(std::string& folder, std::string_view name);
/// Whether a name is "." or "..".
bool IsDots(std::string_view name);

/// A path that was read from HFS style.
struct PosixPath {
    std::string path;
    bool folder = false;  // it ended with a separator
};

/// Finds the mount point of the volume with a name.
using FindVolume = std::function<std::optional<std::string>(std::string_view name)>;
/// The POSIX form of a path that is not empty. Empty when its volume is not known, and for a name "." or
/// "..".
std::optional<PosixPath> PosixPathOfHfs(std::string_view path, FindVolume const& mountPointOf);

/// The HFS form of a path on a volume, or of a relative path when `volume` is null.
std::string HfsPathOf(std::string_view path, std::string const* volume);

}  // namespace Platform
