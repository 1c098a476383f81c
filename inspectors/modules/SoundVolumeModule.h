#pragma once

#include "frame/Adapters.h"
#include "system/SoundVolumes.h"

/// Levels of one channel: their order, their arithmetic, the full and the zero one.
class SoundVolumeModule {
    using Volume = sound_volume;
    using Constant = GlobalProperty<Volume>;

    TypeRecord<Volume> type{"sound volume"};
    RelationEqual<Volume, Volume> equal{"sound volume", "sound volume", DependsOnlyOnParameters};
    RelationLess<Volume, Volume> less{"sound volume", "sound volume", DependsOnlyOnParameters};
    RelationLessOrEqual<Volume, Volume> lessOrEqual{"sound volume", "sound volume", DependsOnlyOnParameters};
    OperatorPlus<Volume, Volume, Volume> plus{"sound volume", "sound volume", "sound volume",
                                              DependsOnlyOnParameters};
    BinaryOperatorMinus<Volume, Volume, Volume> minus{"sound volume", "sound volume", "sound volume",
                                                      DependsOnlyOnParameters};
    OperatorTimes<Volume, integer, Volume> timesNumber{"sound volume", "integer", "sound volume",
                                                       DependsOnlyOnParameters};
    OperatorTimes<integer, Volume, Volume> numberTimes{"integer", "sound volume", "sound volume",
                                                       DependsOnlyOnParameters};
    OperatorDivide<Volume, Volume, integer> quotient{"sound volume", "sound volume", "integer",
                                                     DependsOnlyOnParameters};
    OperatorDivide<Volume, integer, Volume> divided{"sound volume", "integer", "sound volume",
                                                    DependsOnlyOnParameters};
    Constant full{"full volume", "full volumes", "sound volume", full_sound_volume, DependsOnlyOnParameters};
    Constant zero{"zero volume", "zero volumes", "sound volume", zero_sound_volume, DependsOnlyOnParameters};
};
