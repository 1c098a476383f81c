#pragma once

#include "frame/Adapters.h"
#include "system/Gestalt.h"

/// Whatever the machine answers, by its four-character selector.
class GestaltSelectorsModule {
    NamedGlobalProperty<integer> gestalt{"gestalt", "gestalts", "integer", gestalt_of};
};
