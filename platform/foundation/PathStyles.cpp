#include "foundation/PathStyles.h"

#include <algorithm>

namespace Platform {

namespace {

// A name between the styles: ':' and '/' change places.
std::string Exchanged(std::string_view name) {
    std::string result(name);
    for (char& character : result) {
        if (character == ':') {
            character = '/';
        } else if (character == '/') {
            character = ':';
        }
    }
    return result;
}

// Takes the text up to `separator`, or all of it, off the front of `path`.
std::string_view TakeName(std::string_view& path, char separator) {
    std::string_view const name = path.substr(0, path.find(separator));
    path.remove_prefix(name.size());
    return name;
}

// Takes the separators off the front of `path`; returns their number.
std::size_t TakeSeparators(std::string_view& path, char separator) {
    std::size_t const count = std::min(path.find_first_not_of(separator), path.size());
    path.remove_prefix(count);
    return count;
}

void Append(std::string& path, std::string_view name) {
    if (path.empty()) {
        path = name;
    } else {
        AppendName(path, name);
    }
}

}  // namespace

std::string_view WithoutEndSeparators(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    return path;
}

std::string_view LastComponent(std::string_view path) {
    path = WithoutEndSeparators(path);
    if (path == "/") return path;
    return path.substr(path.rfind('/') + 1);
}

bool IsDots(std::string_view name) { return name == "." || name == ".."; }

std::string FolderOfPath(std::string_view path) {
    path = WithoutEndSeparators(path);
    if (path == "/") return "/../";
    std::string_view const name = LastComponent(path);
    if (IsDots(name)) return std::string(path).append("/../");
    path.remove_suffix(name.size());
    if (path.empty()) return "./";
    path = WithoutEndSeparators(path);
    std::string folder(path);
    if (folder != "/") folder += '/';
    return folder;
}

std::string JoinPaths(std::string_view folder, std::string_view rest) {
    std::string result(folder);
    AppendName(result, rest);
    return result;
}

void AppendName(std::string& folder, std::string_view name) {
    if (!folder.ends_with('/')) folder += '/';
    folder += name;
}

std::optional<PosixPath> PosixPathOfHfs(std::string_view path, FindVolume const& mountPointOf) {
    PosixPath result;
    if (path.front() != ':') {
        std::string_view const volume = TakeName(path, ':');
        auto const mountPoint = volume == "/" ? std::string("/") : mountPointOf(Exchanged(volume));
        if (!mountPoint) return std::nullopt;
        result.path = *mountPoint;
    }
    while (!path.empty()) {
        std::size_t const separators = TakeSeparators(path, ':');
        for (std::size_t i = 1; i < separators; ++i) Append(result.path, "..");
        std::string_view const name = TakeName(path, ':');
        if (IsDots(name)) return std::nullopt;
        result.folder = name.empty();
        if (!name.empty()) Append(result.path, Exchanged(name));
    }
    if (result.path.empty()) result.path += '.';
    return result;
}

std::string HfsPathOf(std::string_view path, std::string const* volume) {
    std::string result = volume != nullptr ? Exchanged(*volume) : std::string();
    bool up = false;
    while (!path.empty()) {
        TakeSeparators(path, '/');
        std::string_view const name = TakeName(path, '/');
        if (name.empty() || name == ".") continue;
        up = name == "..";
        result += ':';
        if (!up) result += Exchanged(name);
    }
    if (up || result.empty()) result += ':';
    return result;
}

}  // namespace Platform
