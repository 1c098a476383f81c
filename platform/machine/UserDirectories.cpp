#include "machine/UserDirectories.h"

#include <Carbon/MacErrors.h>

#include <optional>

#include "files/TextFile.h"
#include "foundation/PathStyles.h"
#include "foundation/TextLines.h"
#include "machine/Environment.h"

namespace Platform {

namespace {

constexpr std::string_view kHome = "$HOME";

// Takes a beginning off a text that has it.
bool Take(std::string_view& text, std::string_view beginning) {
    if (!text.starts_with(beginning)) return false;
    text.remove_prefix(beginning.size());
    return true;
}

// The text between the quotes that a value begins with; a backslash makes the character behind it an ordinary
// one. Empty when it is not quoted to its end.
std::optional<std::string> Unquoted(std::string_view value) {
    if (!Take(value, "\"")) return std::nullopt;
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '"') return text;
        if (value[i] == '\\' && ++i == value.size()) break;
        text += value[i];
    }
    return std::nullopt;
}

// The path that a value tells; empty when it is of another form.
std::string PathOf(std::string_view value, std::string_view home) {
    auto const text = Unquoted(value);
    if (!text || text->find('\0') != text->npos) return {};
    std::string_view path = *text;
    if (path.starts_with('/')) return std::string(WithoutEndSeparators(path));
    if (!Take(path, kHome) || !home.starts_with('/')) return {};
    if (path.find_first_not_of('/') == path.npos) return std::string(WithoutEndSeparators(home));
    if (!path.starts_with('/')) return {};
    path.remove_prefix(path.find_first_not_of('/'));
    return std::string(WithoutEndSeparators(JoinPaths(home, path)));
}

// The value of a line that sets the folder of a name; empty for any other line.
std::string_view ValueIn(std::string_view line, std::string_view name) {
    line = Trimmed(line);
    if (!Take(line, "XDG_") || !Take(line, name) || !Take(line, "_DIR")) return {};
    line = Trimmed(line);
    if (!Take(line, "=")) return {};
    return Trimmed(line);
}

}  // namespace

std::string UserDirectoryIn(std::string_view text, std::string_view name, std::string_view home) {
    std::string result;
    while (!text.empty()) {
        std::string path = PathOf(ValueIn(TakeLine(text), name), home);
        if (!path.empty()) result = std::move(path);
    }
    return result;
}

OSErr GetUserDirectory(std::string_view name, std::string& path) {
    path.clear();
    std::string const folder = UserFolder("XDG_CONFIG_HOME", ".config");
    if (folder.empty()) return noErr;
    std::string text;
    OSErr const error = GetSettingsFile(JoinPaths(folder, "user-dirs.dirs"), text);
    path = UserDirectoryIn(text, name, HomeFolder());
    return error;
}

}  // namespace Platform
