#pragma once

// Calls that may never come back, because the server of a mounted file system does not answer.
//
// Such a call is made on a helper thread, and the thread that wants it waits. While it waits it asks the
// check-in function, so that it stops waiting when the host wants to stop. A call that is given up goes on in
// its thread until the server answers or is given up by the system, and nobody learns what came of it. Until
// then further calls on that mount are refused at once, so that there are never more such threads than
// mounts, apart from the one that waits for work.

#include <chrono>
#include <functional>
#include <optional>

#include "files/Descriptor.h"
#include "files/MountTable.h"

namespace Platform {

/// What is to be done, with a result code. It must own, or share, all that it touches, its results too: it
/// may still run when the call has long returned. On its thread look-ups answer userCanceledErr once the call
/// is given up.
using PatientWork = std::function<OSErr()>;

/// Does work that may have to wait for a mount. Answers what the work does; userCanceledErr when the check-in
/// function says stop; volOffLinErr when it has taken as long as `patience`, if there is one, or another call
/// on the mount was given up and has not come back; memFullErr when no thread can be had. In another call's
/// work it is done there and then.
OSErr CallPatiently(SlowMount const& mount, std::optional<std::chrono::milliseconds> patience,
                    PatientWork work);

/// What serves, and is no mount: a sound server; the devices on SCSI buses.
enum class Server { Sound, Scsi };

/// The same for work that may have to wait for another server. PlatformUnresponsiveMount does not tell of it.
OSErr CallServer(Server server, std::chrono::milliseconds patience, PatientWork work);

/// The same for something that nobody asked for: it waits a fifth of a second at most, and a mount that has
/// not answered then is no failure that PlatformUnresponsiveMount tells of.
OSErr CallBriefly(SlowMount const& mount, PatientWork work);

/// Closes a file on a mount, as soon as the mount lets it: waits a fifth of a second at most, and asks
/// nobody. One that cannot be closed on a mount that does not answer stays open.
void LetGoPatiently(SlowMount const& mount, SharedDescriptor file);

/// How long information about a volume may take: see PlatformSetVolumePatience.
std::chrono::milliseconds VolumePatience();

/// Makes PlatformUnresponsiveMount tell of none.
void ForgetUnresponsiveMount();

}  // namespace Platform
