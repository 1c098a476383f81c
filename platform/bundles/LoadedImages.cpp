#include "bundles/LoadedImages.h"

#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <exception>

namespace Platform {

namespace {

std::string_view FolderOf(std::string_view path) {
    std::size_t const separator = path.rfind('/');
    return separator == path.npos ? std::string_view() : path.substr(0, separator);
}

std::string_view NameOf(std::string_view path) { return path.substr(path.rfind('/') + 1); }

// Folders that may hold programs and libraries directly.
bool IsCalledLikeABundle(std::string_view folder) {
    constexpr std::string_view ends[] = {".app",     ".bundle", ".debug",  ".framework",
                                         ".profile", ".plugin", ".service"};
    std::string_view const name = NameOf(folder);
    return std::any_of(std::begin(ends), std::end(ends), [name](std::string_view end) {
        return name.size() > end.size() && name.ends_with(end);
    });
}

// The paths that dl_iterate_phdr finds, and the exception that may not go through it.
struct Found {
    std::vector<std::string> paths;
    std::exception_ptr failure;
};

int AddImage(dl_phdr_info* image, std::size_t, void* data) noexcept {
    auto& found = *static_cast<Found*>(data);
    if (image->dlpi_name == nullptr || image->dlpi_name[0] != '/') return 0;
    try {
        found.paths.emplace_back(image->dlpi_name);
    } catch (...) {
        found.failure = std::current_exception();
    }
    return found.failure ? 1 : 0;
}

std::string PathOfProgram() {
    char path[PATH_MAX];
    ssize_t const size = readlink("/proc/self/exe", path, sizeof path);
    return size > 0 ? std::string(path, static_cast<std::size_t>(size)) : std::string();
}

}  // namespace

std::optional<std::string> BundleFolderOfImage(std::string_view path) {
    std::string_view const folder = FolderOf(path), above = FolderOf(folder), higher = FolderOf(above);
    bool const isVersion = NameOf(above) == "Versions" && higher.ends_with(".framework");
    if (isVersion && IsCalledLikeABundle(higher)) return std::string(higher);
    if (NameOf(above) == "Contents" && !higher.empty()) return std::string(higher);
    if (IsCalledLikeABundle(folder)) return std::string(folder);
    return std::nullopt;
}

std::vector<std::string> PathsOfImages() {
    Found found;
    if (std::string program = PathOfProgram(); program.starts_with('/'))
        found.paths.push_back(std::move(program));
    dl_iterate_phdr(AddImage, &found);
    if (found.failure) std::rethrow_exception(found.failure);
    return std::move(found.paths);
}

}  // namespace Platform
