#pragma once

#include "filesystem/Ancestors.h"
#include "frame/Adapters.h"

/// The folders above an item.
class AncestorsModule {
    IteratedPropertyOfObject<ancestor_iterator, folder, filesystem_object> ancestors{
        "ancestor",
        "ancestors",
        "filesystem object",
        "folder",
        &ancestor_iterator::First,
        &ancestor_iterator::Next};
};
