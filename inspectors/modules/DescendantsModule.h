#pragma once

#include "filesystem/Descendants.h"
#include "frame/Adapters.h"

/// The files below a folder.
class DescendantsModule {
    IteratedPropertyOfObject<descendant_iterator, file, folder> descendants{"descendant",
                                                                            "descendants",
                                                                            "folder",
                                                                            "file",
                                                                            &descendant_iterator::First,
                                                                            &descendant_iterator::Next};
};
