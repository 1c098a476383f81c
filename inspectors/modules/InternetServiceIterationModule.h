#pragma once

#include "frame/Adapters.h"
#include "system/InternetConfig.h"

/// The services of the network one after the other.
class InternetServiceIterationModule {
    IteratedProperty<ICServiceIterator, InternetConfig, ICService> services{"service", "services",
                                                                            "internetconfig", "icservice"};
};
