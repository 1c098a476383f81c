#include "sound/PulseAudio.h"

#include <errno.h>
#include <fcntl.h>
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

// What a cookie's path leads to.
enum class Cookie { Sound, Spoilt, Absent };

// Shorter cookies are written anew.
Cookie LookAtCookie(std::string const& path) {
    constexpr off_t length = 256;
    struct stat status;
    if (stat(path.c_str(), &status) != 0) return Cookie::Absent;
    bool const isSound = S_ISREG(status.st_mode) && status.st_size >= length &&
                         faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) == 0;
    return isSound ? Cookie::Sound : Cookie::Spoilt;
}

std::string ComplaintOf(std::string const& cookie) {
    if (LookAtCookie(cookie) == Cookie::Absent)
        return "asking the sound server would write the file \"" + cookie + "\", which is not there";
    return "the sound server's cookie \"" + cookie + "\" is no file of at least 256 bytes that can be read";
}

bool IsFile(std::string const& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool IsOwn(std::string const& folder) {
    struct stat status;
    return stat(folder.c_str(), &status) == 0 && status.st_uid == geteuid();
}

}  // namespace

bool AlsaLooksForPulseAudio() {
    if (!Variable("ALSA_CONFIG_PATH").empty()) return false;
    std::string const triplet = kLibraryTriplet;
    return std::ranges::any_of(std::vector<std::string>{triplet + "/", "../lib64/", ""}, [](auto& folder) {
        return IsThere("/usr/lib/" + folder + "alsa-lib/libasound_module_conf_pulse.so");
    });
}

PulseAudioServer FindPulseAudio(std::string const& systemSocket) {
    PulseAudioServer server;
    if (!Variable("PULSE_SERVER").empty()) {
        server.isThere = true;
        return server;
    }
    // The library uses the folder, and the one it is in, for their owner alone.
    std::string const own = Variable("PULSE_RUNTIME_PATH"), ofUser = Variable("XDG_RUNTIME_DIR");
    std::string const folder = !own.empty() || ofUser.empty() ? own : JoinPaths(ofUser, "pulse");
    std::string const owned = own.empty() ? ofUser : own;
    if (!folder.empty() && IsListening(JoinPaths(folder, "native"))) {
        server.isThere = IsOwn(owned) && IsOwn(folder);
        if (server.isThere) return server;
        server.complaint =
            "the sound server's folder \"" + (IsOwn(owned) ? folder : owned) + "\" belongs to another user";
    }
    if (own.empty() && IsListening(systemSocket)) return {true, "unix:" + systemSocket, {}};
    return server;
}

std::string CookieComplaint() {
    if (std::string const own = Variable("PULSE_COOKIE"); !own.empty())
        return LookAtCookie(own) == Cookie::Sound ? "" : ComplaintOf(own);
    std::string const usual = JoinPaths(UserFolder("XDG_CONFIG_HOME", ".config"), "pulse/cookie");
    if (LookAtCookie(usual) == Cookie::Sound) return {};
    // A file that is not good enough is passed over for the next one; of anything else the library complains.
    bool const isPassedOver = !IsThere(usual) || IsFile(usual);
    bool const hasOther = LookAtCookie(JoinPaths(HomeFolder(), ".pulse-cookie")) == Cookie::Sound;
    return isPassedOver && hasOther ? "" : ComplaintOf(usual);
}

}  // namespace Platform
