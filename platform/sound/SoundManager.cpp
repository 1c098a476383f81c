#include <Carbon/Sound.h>

#include <chrono>
#include <memory>

#include "files/Patience.h"
#include "files/SettingsFailure.h"
#include "foundation/Object.h"
#include "machine/Environment.h"
#include "sound/Mixer.h"

using namespace Platform;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{3};

OSErr GiveUp(Clock::time_point begun) {
    NoteFailure(Clock::now() - begun >= kPatience ? "the sound server did not answer within 3 seconds"
                                                  : "the sound server has not answered an earlier question");
    return noHardwareErr;
}

// The library is asked on a thread that owns all it touches, as a sound server may never answer.
OSErr GetVolume(std::vector<char const*> controls, SInt32* level) {
    if (level == nullptr) return paramErr;
    if (IsRecordedMachine()) return noHardwareErr;
    auto const answer = std::make_shared<MixerAnswer>();
    auto const begun = Clock::now();
    OSErr const error = CallServer(Server::Sound, kPatience, [answer, controls = std::move(controls)] {
        *answer = AskMixer(controls);
        return OSErr{noErr};
    });
    if (error == volOffLinErr) return GiveUp(begun);
    if (error != noErr) return error;
    if (!answer->isKnown) {
        if (!answer->complaint.empty()) NoteFailure(answer->complaint);
        return noHardwareErr;
    }
    *level = static_cast<SInt32>(UInt32{answer->right} << 16 | answer->left);
    return noErr;
}

}  // namespace

OSErr GetDefaultOutputVolume(SInt32* level) {
    return Guarded<OSErr>(memFullErr, [&] {
        return GetVolume({"Master", "PCM", "Speaker", "Headphone", "Front"}, level);
    });
}

OSErr GetSysBeepVolume(SInt32* level) {
    return Guarded<OSErr>(memFullErr, [&] {
        return GetVolume({"Beep", "PC Speaker", "Master", "PCM", "Speaker", "Headphone", "Front"}, level);
    });
}
