#pragma once

#include "frame/Adapters.h"
#include "system/Components.h"

/// The registered components one after the other.
class ComponentIterationModule {
    IteratedGlobalProperty<ComponentIterator, ComponentClass> components{"component", "components",
                                                                         "component"};
};
