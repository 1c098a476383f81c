#pragma once

#include "frame/Adapters.h"
#include "system/InternetConfig.h"

/// The names of the Archie servers one after the other.
class ArchieServersModule {
    IteratedProperty<ArchieIterator, InternetConfig, inspector_string> archies{"archie", "archies",
                                                                               "internetconfig", "string"};
};
