#pragma once

#include "frame/Adapters.h"
#include "system/Volumes.h"

/// The mounted volumes one after the other: all of them, and those of a name.
class VolumeIterationModule {
    using All = IteratedGlobalProperty<VolumeIterator, VolumeLink>;
    using Named = IteratedNamedGlobalProperty<VolumeIterator, VolumeLink>;

    All filesystems{"filesystem", "filesystems", "volume"};
    All drives{"drive", "drives", "volume"};
    All volumes{"volume", "volumes", "volume"};
    Named filesystemsNamed{"filesystem", "filesystems", "volume"};
    Named drivesNamed{"drive", "drives", "volume"};
    Named volumesNamed{"volume", "volumes", "volume"};
};
