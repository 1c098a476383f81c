#include "sound/PulseAudio.h"

#include <errno.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "files/Descriptor.h"
#include "folders/BuiltInFolders.h"
#include "foundation/PathStyles.h"
#include "machine/Environment.h"

namespace Platform {

namespace {

bool IsThere(std::string const& path) { return access(path.c_str(), F_OK) == 0; }

// Whether a server listens at a socket, which may be left over from one that has ended.
bool IsListening(std::string const& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return false;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    Descriptor const socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    return connect(socket.Number(), reinterpret_cast<sockaddr const*>(&address), sizeof address) == 0 ||
           errno == EAGAIN;
}

// Shorter cookies are written anew.
bool IsCookie(std::string const& path) {
    constexpr off_t length = 256;
    struct stat status;
    return stat(path.c_str(), &status) == 0 && status.st_size >= length;
}

}  // namespace

bool AlsaLooksForPulseAudio() {
    if (!Variable("ALSA_CONFIG_PATH").empty()) return false;
    std::string const triplet = kLibraryTriplet;
    return std::ranges::any_of(std::vector<std::string>{triplet + "/", "../lib64/", ""}, [](auto& folder) {
        return IsThere("/usr/lib/" + folder + "alsa-lib/libasound_module_conf_pulse.so");
    });
}

bool IsPulseAudioThere() {
    if (!Variable("PULSE_SERVER").empty()) return true;
    if (std::string const own = Variable("PULSE_RUNTIME_PATH"); !own.empty())
        return IsListening(JoinPaths(own, "native"));
    std::string const ofUser = Variable("XDG_RUNTIME_DIR");
    if (!ofUser.empty() && IsListening(JoinPaths(ofUser, "pulse/native"))) return true;
    return IsListening("/run/pulse/native");
}

std::string CookieToBeWritten() {
    if (std::string const own = Variable("PULSE_COOKIE"); !own.empty()) return IsCookie(own) ? "" : own;
    std::string const usual = JoinPaths(UserFolder("XDG_CONFIG_HOME", ".config"), "pulse/cookie");
    bool const isThere = IsCookie(usual) || IsCookie(JoinPaths(HomeFolder(), ".pulse-cookie"));
    return isThere ? "" : usual;
}

}  // namespace Platform
