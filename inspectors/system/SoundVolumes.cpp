#include "system/SoundVolumes.h"

#include <Carbon/Sound.h>

#include "Evaluator/Exceptions.h"

namespace {

// The highest level that arithmetic makes, which is beyond the full volume.
constexpr sound_volume kCeiling{65535};

std::uint32_t Word(sound_volume const& volume) { return static_cast<std::uint32_t>(volume.level); }
sound_volume FromWord(std::uint32_t word) { return {static_cast<std::int32_t>(word)}; }

stereo_volume Both(sound_volume const& volume) { return {volume, volume}; }

stereo_volume SystemLevel(OSErr (*ask)(SInt32*)) {
    SInt32 level = 0;
    if (OSErr const error = ask(&level); error != noErr) ThrowRealOSError(error);
    auto const word = static_cast<UInt32>(level);
    return {{static_cast<std::int32_t>(word & 0xFFFF)}, {static_cast<std::int32_t>(word >> 16)}};
}

}  // namespace

// One channel

boolean operator==(sound_volume const& left, sound_volume const& right) { return left.level == right.level; }
boolean operator<(sound_volume const& left, sound_volume const& right) { return left.level < right.level; }
boolean operator<=(sound_volume const& left, sound_volume const& right) { return left.level <= right.level; }

sound_volume operator+(sound_volume const& left, sound_volume const& right) {
    sound_volume const room = kCeiling - right;
    if (left.level > room.level) throw NoSuchObject();
    return FromWord(Word(left) + Word(right));
}

sound_volume operator-(sound_volume const& left, sound_volume const& right) {
    if (left.level < right.level) throw NoSuchObject();
    return FromWord(Word(left) - Word(right));
}

sound_volume operator*(sound_volume const& volume, integer const& factor) {
    if (volume.level == 0) return {0};
    if (factor < 0) throw NoSuchObject();
    long long const most = kCeiling / volume;
    if (factor > most) throw NoSuchObject();
    return FromWord(Word(volume) * static_cast<std::uint32_t>(static_cast<long long>(factor)));
}

sound_volume operator*(integer const& factor, sound_volume const& volume) { return volume * factor; }

integer operator/(sound_volume const& left, sound_volume const& right) {
    if (right.level == 0) throw NoSuchObject();
    if (right.level == -1) return FromWord(-Word(left)).level;
    return left.level / right.level;
}

sound_volume operator/(sound_volume const& volume, integer const& divisor) {
    if (divisor == 0) throw NoSuchObject();
    if (volume.level == 0) return {0};
    if (divisor < 0) throw NoSuchObject();
    return {static_cast<std::int32_t>(volume.level / static_cast<long long>(divisor))};
}

sound_volume full_sound_volume() { return {kFullVolume}; }
sound_volume zero_sound_volume() { return {kNoVolume}; }

// Two channels

boolean operator==(stereo_volume const& left, stereo_volume const& right) {
    return left.left == right.left && left.right == right.right;
}
boolean operator==(stereo_volume const& left, sound_volume const& right) { return left == Both(right); }
boolean operator==(sound_volume const& left, stereo_volume const& right) { return Both(left) == right; }

boolean operator<(stereo_volume const& left, stereo_volume const& right) {
    return left <= right && !(left == right);
}
boolean operator<(stereo_volume const& left, sound_volume const& right) { return left < Both(right); }
boolean operator<(sound_volume const& left, stereo_volume const& right) { return Both(left) < right; }

boolean operator<=(stereo_volume const& left, stereo_volume const& right) {
    return left.left <= right.left && left.right <= right.right;
}
boolean operator<=(stereo_volume const& left, sound_volume const& right) { return left <= Both(right); }
boolean operator<=(sound_volume const& left, stereo_volume const& right) { return Both(left) <= right; }

stereo_volume operator+(stereo_volume const& left, stereo_volume const& right) {
    sound_volume const first = left.left + right.left;
    return {first, left.right + right.right};
}
stereo_volume operator+(stereo_volume const& left, sound_volume const& right) { return left + Both(right); }
stereo_volume operator+(sound_volume const& left, stereo_volume const& right) { return Both(left) + right; }

stereo_volume operator-(stereo_volume const& left, stereo_volume const& right) {
    sound_volume const first = left.left - right.left;
    return {first, left.right - right.right};
}
stereo_volume operator-(stereo_volume const& left, sound_volume const& right) { return left - Both(right); }
stereo_volume operator-(sound_volume const& left, stereo_volume const& right) { return Both(left) - right; }

stereo_volume operator*(stereo_volume const& volume, integer const& factor) {
    sound_volume const first = volume.left * factor;
    return {first, volume.right * factor};
}
stereo_volume operator*(integer const& factor, stereo_volume const& volume) { return volume * factor; }

stereo_volume operator/(stereo_volume const& volume, integer const& divisor) {
    sound_volume const first = volume.left / divisor;
    return {first, volume.right / divisor};
}

sound_volume left_component(stereo_volume const& volume) { return volume.left; }
sound_volume right_component(stereo_volume const& volume) { return volume.right; }

stereo_volume default_sound_volume() { return SystemLevel(GetDefaultOutputVolume); }
stereo_volume system_beep_volume() { return SystemLevel(GetSysBeepVolume); }
