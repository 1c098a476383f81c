#include "machine/GnustepSettings.h"

#include <Carbon/MacErrors.h>

#include "files/TextFile.h"
#include "foundation/PathStyles.h"
#include "foundation/TextLines.h"
#include "machine/Environment.h"

namespace Platform {

namespace {

constexpr std::string_view kOfUser = "GNUSTEP_USER_";

// Where a folder of the user's is, below the home, when the settings do not tell.
std::string_view UsualPlace(std::string_view purpose) {
    if (purpose == "LIBRARY") return "GNUstep/Library";
    if (purpose == "APPS") return "GNUstep/Applications";
    return {};
}

}  // namespace

OSErr GetGnustepSettings(std::string& text) {
    std::string const file = Variable("GNUSTEP_CONFIG_FILE");
    return GetTextFile(file.starts_with('/') ? file : "/etc/GNUstep/GNUstep.conf", text);
}

OSErr GetGnustepFolder(std::string_view variable, std::string& path) {
    std::string settings;
    OSErr const error = GetGnustepSettings(settings);
    if (!variable.starts_with(kOfUser)) {
        path = VariableIn(settings, variable);
        return error;
    }
    std::string_view const purpose = variable.substr(kOfUser.size());
    std::string place = VariableIn(settings, std::string("GNUSTEP_USER_DIR_").append(purpose));
    if (place.empty()) place = UsualPlace(purpose);
    bool const isBelowHome = !place.empty() && !place.starts_with('/');
    std::string const home = isBelowHome ? HomeFolder() : std::string();
    if (!isBelowHome) {
        path = place;
    } else {
        path = home.empty() ? std::string() : JoinPaths(home, place);
    }
    return error;
}

}  // namespace Platform
