#pragma once

#include "frame/Adapters.h"
#include "system/Applications.h"

/// Applications by their creator codes.
class ApplicationsModule {
    NamedGlobalProperty<file> primary{"primary application", "primary applications", "file", application_of};
};
