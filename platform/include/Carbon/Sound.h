#pragma once

// The Sound Manager: how loud the machine is.
//
// The volumes are those of ALSA's mixer "default", behind which a sound server may stand. The library,
// libasound.so.2, is opened when it is first asked. Of the controls Master, PCM, Speaker, Headphone and
// Front the first counts that has a volume for playback; for the system beep those called Beep and PC
// Speaker come before them. A control's range is mapped to 0 to 256 in proportion. Nothing is remembered.

#include <Carbon/MacErrors.h>
#include <Carbon/MacTypes.h>

/// A level word: the level of the left channel in the low half, that of the right one in the high half, both
/// without sign. 0 is silence, as of a channel that is muted, and 256 the highest level that is not
/// amplified; a sound server may tell of higher ones. What has one channel only has its level in both halves.
enum { kFullVolume = 0x0100, kNoVolume = 0 };

/// Gets the volume of the default output, and that of the system beep. noHardwareErr where there is no mixer
/// or no such control, on a recorded machine (ZELQ_MACHINE_ROOT), and when the sound server does not answer
/// within 3 seconds, or has not answered an earlier question yet; of a server that does not answer, and of a
/// configuration of ALSA that cannot be used, PlatformSettingsFailure tells. A server of PulseAudio's is not
/// asked, and the mixer that its own turns to takes its place, where asking would write a cookie, where the
/// cookie cannot be read, and where its folder belongs to another user; where nothing else is known,
/// PlatformSettingsFailure names the cookie or the folder. userCanceledErr when the check-in function says
/// stop; memFullErr; paramErr without a level. On failure the level is not touched.
PLATFORM_API OSErr GetDefaultOutputVolume(SInt32* level);
PLATFORM_API OSErr GetSysBeepVolume(SInt32* level);
