#pragma once

// What PulseAudio's client library does when it is loaded by ALSA: it writes a cookie where there is none,
// makes folders for a server's socket, prints what it does not like of both, and may start a server. All of
// it is avoided by looking first.

#include <string>

namespace Platform {

/// Whether ALSA's own configuration has the client library look for a server: where its hook is installed,
/// unless ALSA_CONFIG_PATH names another configuration.
bool AlsaLooksForPulseAudio();

/// Where the client library may look for a server.
struct PulseAudioServer {
    bool isThere = false;
    /// What the library must be told, for it would make folders before it finds the server itself; empty
    /// where PULSE_SERVER names one, or one listens in the library's own folder.
    std::string address;
    std::string complaint;  // why one that listens is not there for this user
};
constexpr char kSystemSocket[] = "/run/pulse/native";
/// A server that PULSE_SERVER names, or that listens in the user's folder of servers, or at the system's
/// socket. The library takes a folder only from the effective user, and complains of others.
PulseAudioServer FindPulseAudio(std::string const& systemSocket = kSystemSocket);

/// What is wrong with the cookie: that the client library would write it, or could not read it. Empty where
/// there is one to read.
std::string CookieComplaint();

}  // namespace Platform
