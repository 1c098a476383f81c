#pragma once

#include "frame/Adapters.h"
#include "system/EnableableFiles.h"

/// Files that are on or off.
class EnableableFilesModule {
    TypeRecord<EnableableFile> type{"enableable_file", "file"};
    Property<EnableableFile, boolean> enabled{"enabled", "enableds", "enableable_file", "boolean",
                                              enabled_of};
    Property<EnableableFile, boolean> disabled{"disabled", "disableds", "enableable_file", "boolean",
                                               disabled_of};
};
