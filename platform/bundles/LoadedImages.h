#pragma once

// The bundles that the program and the libraries of the process lie in, by where those are.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// The folder that would be the bundle of a program or library at an absolute path, by its text:
/// X.framework of X.framework/X and X.framework/Versions/A/X, Y of Y/Contents/<folder>/y, and Y.app, Y.bundle
/// and the like of Y.app/y. Empty where there is none.
std::optional<std::string> BundleFolderOfImage(std::string_view path);

/// The absolute paths of the program and of the libraries that are loaded now.
std::vector<std::string> PathsOfImages();

}  // namespace Platform
