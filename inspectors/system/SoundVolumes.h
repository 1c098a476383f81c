#pragma once

// Sound volumes: levels of a channel, and of two channels.
//
// Levels are counted from 0, silence, to 256, the highest one that is not amplified. Sums and products may be
// as high as 65535; one that would be higher, or a difference below 0, does not exist: NoSuchObject. Neither
// the platform nor arithmetic on other levels makes one below 0. The rules hold for those too; where 32 bits
// do not hold a result then, it goes round.

#include <cstdint>

#include "Evaluator/Values.h"

/// The level of one channel.
struct sound_volume {
    std::int32_t level;
};

/// The levels of two channels. A sound volume beside it in an operation stands for both.
struct stereo_volume {
    sound_volume left;
    sound_volume right;
};

boolean operator==(sound_volume const& left, sound_volume const& right);
boolean operator<(sound_volume const& left, sound_volume const& right);
boolean operator<=(sound_volume const& left, sound_volume const& right);

/// NoSuchObject for a sum above 65535.
sound_volume operator+(sound_volume const& left, sound_volume const& right);
/// NoSuchObject when the right level is the higher one.
sound_volume operator-(sound_volume const& left, sound_volume const& right);
/// Silence times any number is silence. Otherwise NoSuchObject for a negative number, and for one above the
/// quotient of 65535 by the level.
sound_volume operator*(sound_volume const& volume, integer const& factor);
sound_volume operator*(integer const& factor, sound_volume const& volume);
/// The quotient, towards zero, which has 32 bits: the lowest level by -1 is itself. NoSuchObject for a right
/// level of 0.
integer operator/(sound_volume const& left, sound_volume const& right);
/// NoSuchObject for a number of 0. Silence by any other is silence; NoSuchObject for a negative number.
sound_volume operator/(sound_volume const& volume, integer const& divisor);

sound_volume full_sound_volume();
sound_volume zero_sound_volume();

// Of two channels: one is less than another where it is less or equal in both and not the same, so that of
// some neither is less. Arithmetic works out the left channel first; what fails for one fails for both.

boolean operator==(stereo_volume const& left, stereo_volume const& right);
boolean operator==(stereo_volume const& left, sound_volume const& right);
boolean operator==(sound_volume const& left, stereo_volume const& right);
boolean operator<(stereo_volume const& left, stereo_volume const& right);
boolean operator<(stereo_volume const& left, sound_volume const& right);
boolean operator<(sound_volume const& left, stereo_volume const& right);
boolean operator<=(stereo_volume const& left, stereo_volume const& right);
boolean operator<=(stereo_volume const& left, sound_volume const& right);
boolean operator<=(sound_volume const& left, stereo_volume const& right);

stereo_volume operator+(stereo_volume const& left, stereo_volume const& right);
stereo_volume operator+(stereo_volume const& left, sound_volume const& right);
stereo_volume operator+(sound_volume const& left, stereo_volume const& right);
stereo_volume operator-(stereo_volume const& left, stereo_volume const& right);
stereo_volume operator-(stereo_volume const& left, sound_volume const& right);
stereo_volume operator-(sound_volume const& left, stereo_volume const& right);
stereo_volume operator*(stereo_volume const& volume, integer const& factor);
stereo_volume operator*(integer const& factor, stereo_volume const& volume);
stereo_volume operator/(stereo_volume const& volume, integer const& divisor);

sound_volume left_component(stereo_volume const& volume);
sound_volume right_component(stereo_volume const& volume);

/// The system's levels. Throw the host's platform error when they cannot be told.
stereo_volume default_sound_volume();
stereo_volume system_beep_volume();
