// Preferences: the search through the files of all domains.

#include <Carbon/MacErrors.h>
#include <CoreFoundation/CFPreferences.h>

#include "files/FileCache.h"
#include "files/TextFile.h"
#include "foundation/Containers.h"
#include "foundation/Held.h"
#include "foundation/String.h"
#include "foundation/TextCodec.h"
#include "foundation/TextLines.h"
#include "machine/Environment.h"
#include "machine/GnustepSettings.h"
#include "preferences/PreferenceDomains.h"
#include "preferences/Preferences.h"
#include "propertylists/PropertyLists.h"

using namespace Platform;

namespace {

// ---- Files

// Leaves the dictionary null for a file that cannot be read or holds none.
OSErr ReadDictionary(Path const& file, std::shared_ptr<__CFDictionary const>& dictionary) {
    OSErr error = noErr;
    Held<Object const> list(static_cast<Object const*>(ReadPropertyListFile(file, error)));
    if (list && list->TypeID() == CFDictionaryGetTypeID())
        dictionary = Held<__CFDictionary const>(static_cast<CFDictionaryRef>(list.release()));
    return error;
}

OSErr GetDictionary(std::string const& path, std::shared_ptr<__CFDictionary const>& dictionary) {
    static auto& cache = *new FileCache<__CFDictionary>(16);
    return GetThrough(cache, path, dictionary, ReadDictionary);
}

// ---- The environment

OSErr ReadEnvironment(PreferenceEnvironment& environment) {
    std::string settings, machine;
    OSErr error = GetGnustepSettings(settings);
    if (error == noErr) error = GetTextFile(MachinePath("etc/machine-id"), machine);
    if (error != noErr) return error;
    environment = {HomeFolder(), Variable("XDG_CONFIG_HOME"), Variable("XDG_CONFIG_DIRS"),
                   VariableIn(settings, "GNUSTEP_USER_DEFAULTS_DIR"), MachineIn(machine)};
    return noErr;
}

}  // namespace

OSErr Platform::CopyPreference(CFStringRef key, std::string const& application, Held<Object const>& value) {
    value.reset();
    PreferenceEnvironment environment;
    if (OSErr const error = ReadEnvironment(environment); error != noErr) return error;
    for (std::string const& path : PreferenceFiles(application, environment)) {
        std::shared_ptr<__CFDictionary const> dictionary;
        if (OSErr const error = GetDictionary(path, dictionary); error != noErr) return error;
        CFTypeRef const found = dictionary ? dictionary->Find(key) : nullptr;
        if (found == nullptr) continue;
        value.reset(static_cast<Object const*>(CFRetain(found)));
        return noErr;
    }
    return noErr;
}

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID) {
    return Guarded<CFPropertyListRef>(nullptr, [&]() -> CFPropertyListRef {
        auto const application = FileNameOfText(applicationID->Text());
        Held<Object const> value;
        if (application) CopyPreference(key, *application, value);
        return value.release();
    });
}
