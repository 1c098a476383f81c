#include "gestalt/Facts.h"

#include <algorithm>
#include <cerrno>
#include <limits>

#include "files/SettingsFailure.h"
#include "foundation/TextLines.h"
#include "machine/Environment.h"
#include "machine/MachineFiles.h"

namespace Platform {

namespace {

// Drivers answer with these where they have no fact.
bool IsMissing(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
        case ENODEV:
        case ENXIO:
        case EIO:
        case EINVAL:
        case EOPNOTSUPP:
            return true;
        default:
            return false;
    }
}

}  // namespace

UInt32 Saturated(UInt64 number) {
    return static_cast<UInt32>(std::min<UInt64>(number, std::numeric_limits<UInt32>::max()));
}

OSErr GetFact(std::string_view path, std::string& text, std::size_t most) {
    int const error = ReadFact(path, text, most);
    if (error == 0) return noErr;
    if (IsMissing(error)) return gestaltUndefSelectorErr;
    NoteUnreadableSettings(MachinePath(path), error == EACCES || error == EPERM ? permErr : ioErr);
    return gestaltUnknownErr;
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
