#pragma once

#include "frame/Adapters.h"
#include "system/Components.h"

/// Components, and what is known of each.
class ComponentsModule {
    using Text = Property<ComponentClass, inspector_string>;

    TypeRecord<ComponentClass> type{"component"};
    Text maker{"maker", "makers", "component", "string", maker_of};
    Text typeOf{"type", "types", "component", "string", type_of};
    Text subtype{"subtype", "subtypes", "component", "string", subtype_of};
    Text name{"name", "names", "component", "string", name_of};
    Text info{"info", "infos", "component", "string", info_of};
    Property<ComponentClass, MacVersion> version{"version", "versions", "component", "version", version_of};
};
