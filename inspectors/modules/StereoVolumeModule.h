#pragma once

#include "frame/Adapters.h"
#include "system/SoundVolumes.h"

/// Levels of two channels: their order, their arithmetic, their components, and those of the system.
class StereoVolumeModule {
    using Mono = sound_volume;
    using Stereo = stereo_volume;
    using Component = PropertyByIndexOfWorld<Mono, Stereo>;
    using SystemLevel = GlobalProperty<Stereo>;

    TypeRecord<Stereo> type{"stereo volume"};
    RelationEqual<Stereo, Stereo> equal{"stereo volume", "stereo volume", DependsOnlyOnParameters};
    RelationLess<Stereo, Stereo> less{"stereo volume", "stereo volume", DependsOnlyOnParameters};
    RelationLessOrEqual<Stereo, Stereo> lessOrEqual{"stereo volume", "stereo volume",
                                                    DependsOnlyOnParameters};
    RelationEqual<Stereo, Mono> equalMono{"stereo volume", "sound volume", DependsOnlyOnParameters};
    RelationLess<Stereo, Mono> lessMono{"stereo volume", "sound volume", DependsOnlyOnParameters};
    RelationLessOrEqual<Stereo, Mono> lessOrEqualMono{"stereo volume", "sound volume",
                                                      DependsOnlyOnParameters};
    RelationEqual<Mono, Stereo> monoEqual{"sound volume", "stereo volume", DependsOnlyOnParameters};
    RelationLess<Mono, Stereo> monoLess{"sound volume", "stereo volume", DependsOnlyOnParameters};
    RelationLessOrEqual<Mono, Stereo> monoLessOrEqual{"sound volume", "stereo volume",
                                                      DependsOnlyOnParameters};
    OperatorPlus<Stereo, Stereo, Stereo> plus{"stereo volume", "stereo volume", "stereo volume",
                                              DependsOnlyOnParameters};
    OperatorPlus<Stereo, Mono, Stereo> plusMono{"stereo volume", "sound volume", "stereo volume",
                                                DependsOnlyOnParameters};
    OperatorPlus<Mono, Stereo, Stereo> monoPlus{"sound volume", "stereo volume", "stereo volume",
                                                DependsOnlyOnParameters};
    BinaryOperatorMinus<Stereo, Stereo, Stereo> minus{"stereo volume", "stereo volume", "stereo volume",
                                                      DependsOnlyOnParameters};
    BinaryOperatorMinus<Stereo, Mono, Stereo> minusMono{"stereo volume", "sound volume", "stereo volume",
                                                        DependsOnlyOnParameters};
    BinaryOperatorMinus<Mono, Stereo, Stereo> monoMinus{"sound volume", "stereo volume", "stereo volume",
                                                        DependsOnlyOnParameters};
    OperatorTimes<Stereo, integer, Stereo> timesNumber{"stereo volume", "integer", "stereo volume",
                                                       DependsOnlyOnParameters};
    OperatorTimes<integer, Stereo, Stereo> numberTimes{"integer", "stereo volume", "stereo volume",
                                                       DependsOnlyOnParameters};
    OperatorDivide<Stereo, integer, Stereo> divided{"stereo volume", "integer", "stereo volume",
                                                    DependsOnlyOnParameters};
    Component left{"left component", "left components", "stereo volume", "sound volume", left_component};
    Component right{"right component", "right components", "stereo volume", "sound volume", right_component};
    SystemLevel output{"default sound volume", "default sound volumes", "stereo volume",
                       default_sound_volume};
    SystemLevel beep{"system beep volume", "system beep volumes", "stereo volume", system_beep_volume};
};
