// Preferences: the search through the files of all domains.

#include <Carbon/MacErrors.h>
#include <CoreFoundation/CFPreferences.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <vector>

#include "files/WholeFile.h"
#include "foundation/Containers.h"
#include "foundation/Held.h"
#include "foundation/PathStyles.h"
#include "foundation/String.h"
#include "foundation/TextCodec.h"
#include "foundation/Url.h"
#include "preferences/FileCache.h"
#include "preferences/PreferenceDomains.h"
#include "propertylists/PropertyLists.h"

using namespace Platform;

namespace {

// ---- Files

// Null for a file that cannot be read or holds no dictionary. A result code: noErr unless a wait was given
// up.
OSErr ReadContent(Path const& file, std::shared_ptr<__CFDictionary const>& dictionary) {
    OSErr error = noErr;
    Held<Object const> list(static_cast<Object const*>(ReadPropertyListFile(file, error)));
    if (list && list->TypeID() == CFDictionaryGetTypeID())
        dictionary = Held<__CFDictionary const>(static_cast<CFDictionaryRef>(list.release()));
    return WasGivenUp(error) ? error : OSErr{noErr};
}

// Null for a text file that cannot be read; of a long one the beginning.
OSErr ReadContent(Path const& file, std::shared_ptr<std::string const>& text) {
    constexpr std::size_t most = 65536;
    std::vector<UInt8> bytes(most);
    std::size_t actual = 0;
    Held<__CFURL const> const url(NewURL(file, false));
    OSErr const error = ReadFileBeginning(url.get(), bytes, actual);
    if (error == noErr)
        text = std::make_shared<std::string const>(reinterpret_cast<char const*>(bytes.data()), actual);
    return WasGivenUp(error) ? error : OSErr{noErr};
}

std::int64_t Now() {
    auto const time = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(time).count();
}

// Gets the content of the file at a path as it is now; null where there is none. A result code as above.
// Failures are not kept, as they are to be noted for each call.
template <class Content>
OSErr Get(FileCache<Content>& cache, std::string const& path, std::shared_ptr<Content const>& content) {
    std::int64_t const asked = Now();
    SeenItem item;
    if (OSErr const error = SeeItem(path, item); error != noErr)
        return WasGivenUp(error) ? error : OSErr{noErr};
    content = cache.Find(path, item.state);
    if (content) return noErr;
    OSErr const error = ReadContent(item.path, content);
    constexpr std::uint64_t mostBytes = 1 << 20;  // larger files are read each time rather than kept
    if (content && item.state.size <= mostBytes && HasSettled(item.state, asked))
        cache.Keep(path, item.state, content);
    return error;
}

OSErr GetText(std::string const& path, std::string& text) {
    static auto& cache = *new FileCache<std::string>(4);
    std::shared_ptr<std::string const> content;
    OSErr const error = Get(cache, path, content);
    if (content) text = *content;
    return error;
}

OSErr GetDictionary(std::string const& path, std::shared_ptr<__CFDictionary const>& dictionary) {
    static auto& cache = *new FileCache<__CFDictionary>(16);
    return Get(cache, path, dictionary);
}

// ---- The environment

std::string VariableOf(char const* name) {
    char const* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

// The home of the user as the user database has it; empty when there is no such user.
std::string HomeOfUser() {
    constexpr std::size_t most = 65536;
    std::vector<char> buffer(1024);
    passwd user, *found = nullptr;
    while (getpwuid_r(getuid(), &user, buffer.data(), buffer.size(), &found) == ERANGE &&
           buffer.size() < most)
        buffer.resize(2 * buffer.size());
    return found != nullptr ? found->pw_dir : "";
}

// A path, or another one where the variable's is not absolute.
std::string PathOf(char const* variable, char const* otherwise) {
    std::string path = VariableOf(variable);
    return path.starts_with('/') ? path : otherwise;
}

OSErr ReadEnvironment(PreferenceEnvironment& environment) {
    std::string home = VariableOf("HOME");
    if (!home.starts_with('/')) home = HomeOfUser();
    std::string settings, machine;
    OSErr error = GetText(PathOf("GNUSTEP_CONFIG_FILE", "/etc/GNUstep/GNUstep.conf"), settings);
    if (error == noErr)
        error = GetText(JoinPaths(PathOf("ZELQ_MACHINE_ROOT", "/"), "etc/machine-id"), machine);
    if (error != noErr) return error;
    environment = {std::move(home), VariableOf("XDG_CONFIG_HOME"), VariableOf("XDG_CONFIG_DIRS"),
                   VariableIn(settings, "GNUSTEP_USER_DEFAULTS_DIR"), MachineIn(machine)};
    return noErr;
}

// ---- The search

// Null when there is none, and when a wait was given up: the domain that did not answer might have had one.
CFTypeRef FindValue(CFStringRef key, std::string const& application) {
    PreferenceEnvironment environment;
    if (ReadEnvironment(environment) != noErr) return nullptr;
    for (std::string const& path : PreferenceFiles(application, environment)) {
        std::shared_ptr<__CFDictionary const> dictionary;
        if (GetDictionary(path, dictionary) != noErr) return nullptr;
        CFTypeRef const value = dictionary ? dictionary->Find(key) : nullptr;
        if (value != nullptr) return CFRetain(value);
    }
    return nullptr;
}

}  // namespace

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID) {
    return Guarded<CFPropertyListRef>(nullptr, [&]() -> CFPropertyListRef {
        auto const application = FileNameOfText(applicationID->Text());
        return application ? FindValue(key, *application) : nullptr;
    });
}
