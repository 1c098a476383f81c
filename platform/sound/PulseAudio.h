#pragma once

// What PulseAudio's client library does when it is loaded by ALSA: it writes a cookie where there is none,
// makes folders for a server's socket, and may start a server. All of it is avoided by looking first.

#include <string>

namespace Platform {

/// Whether ALSA's own configuration has the client library look for a server: where its hook is installed,
/// unless ALSA_CONFIG_PATH names another configuration.
bool AlsaLooksForPulseAudio();
/// Whether there is a server to be asked: one that PULSE_SERVER names, or one that listens in the usual
/// places.
bool IsPulseAudioThere();
/// The cookie that the client library would write; empty where it need not, having one to read.
std::string CookieToBeWritten();

}  // namespace Platform
