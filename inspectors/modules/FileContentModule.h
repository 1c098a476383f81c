#pragma once

#include "content/Content.h"
#include "frame/Adapters.h"

/// What a file holds as a whole, and its single bytes.
class FileContentModule {
    TypeRecord<content, 1> type{"file content"};
    RelationContains<content, inspector_string> contains{"file content", "string", DependsOnlyOnParameters};
    Property<file, content> contentOfFile{"content", "contents", "file", "file content", content_of};
    Cast<content, content> uppercase{"uppercase", "file content", "file content", AsUppercase,
                                     DependsOnlyOnParameters};
    Cast<content, content> lowercase{"lowercase", "file content", "file content", AsLowercase,
                                     DependsOnlyOnParameters};
    NumberedProperty<file, integer> byte{"byte",    "bytes", "file",
                                         "integer", byte_of, DependsOnlyOnParameters};
};
