#pragma once

#include "frame/Adapters.h"
#include "versions/Stage.h"

/// Stages by their words.
class StageModule {
    TypeRecord<stage> type{"stage"};
    NamedGlobalProperty<stage> named{"stage", "stages", "stage", stage_of};
    RelationEqual<stage, stage> equal{"stage", "stage"};
};
