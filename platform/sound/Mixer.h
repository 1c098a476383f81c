#pragma once

// ALSA's mixer "default". Asks the library there and then, which may take as long as a sound server likes.

#include <Carbon/MacTypes.h>

#include <string>
#include <string_view>
#include <vector>

#include "sound/PulseAudio.h"

namespace Platform {

/// What came of a question.
struct MixerAnswer {
    bool isKnown = false;
    UInt16 left = 0, right = 0;  // levels as in Carbon/Sound.h
    std::string complaint;       // why nothing is known, where there is more to tell than that there is none
};

/// The volume of the first control, by its name, that has one for playback. Nothing is printed, and of all
/// threads only the calling one is spared ALSA's messages.
MixerAnswer AskMixer(std::vector<char const*> const& controls,
                     std::string const& systemSocket = kSystemSocket);

/// The level that a control's value stands for; nothing is below 0 or above 65535. Requires: min < max.
UInt16 LevelOf(long value, long min, long max);

}  // namespace Platform
