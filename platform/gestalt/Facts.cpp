#include "gestalt/Facts.h"

#include <algorithm>
#include <cerrno>
#include <limits>

#include "files/Errors.h"
#include "files/SettingsFailure.h"
#include "foundation/TextLines.h"
#include "machine/Environment.h"
#include "machine/MachineFiles.h"

namespace Platform {

namespace {

bool IsMissing(std::string_view path, int error) {
    if (error == ENOENT || error == ENOTDIR) return true;
    // Drivers answer with these where they have no fact.
    bool const isOfDriver =
        error == ENODEV || error == ENXIO || error == EIO || error == EINVAL || error == EOPNOTSUPP;
    return isOfDriver && path.starts_with("sys/");
}

OSErr FailureOf(std::string_view path, int error) {
    if (error == 0) return noErr;
    if (IsMissing(path, error)) return gestaltUndefSelectorErr;
    NoteUnreadableSettings(MachinePath(path), ErrorOfErrno(error));
    return gestaltUnknownErr;
}

}  // namespace

UInt32 Saturated(UInt64 number) {
    return static_cast<UInt32>(std::min<UInt64>(number, std::numeric_limits<UInt32>::max()));
}

OSErr GetFact(std::string_view path, std::string& text, std::size_t most) {
    return FailureOf(path, ReadFact(path, text, most));
}

OSErr GetFactLine(std::string_view path, std::string& line) {
    std::string text;
    OSErr const error = GetFact(path, text, kMostOfFact);
    line = FirstLine(text);
    return error;
}

OSErr GetFactNames(std::string_view path, std::vector<std::string>& names) {
    OSErr const error = FailureOf(path, ListFacts(path, names));
    return error == gestaltUndefSelectorErr ? OSErr{noErr} : error;
}

OSErr NoteSenseless(std::string_view path, std::string const& reason) {
    NoteSettingsFailure(MachinePath(path), reason);
    return gestaltUnknownErr;
}

std::string_view ValueOf(std::string_view name, std::string_view text) {
    while (!text.empty()) {
        std::string_view const line = TakeLine(text);
        std::size_t const colon = line.find(':');
        if (colon != line.npos && Trimmed(line.substr(0, colon)) == name)
            return Trimmed(line.substr(colon + 1));
    }
    return {};
}

}  // namespace Platform
