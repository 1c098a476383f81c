#pragma once

#include "filesystem/FileCodes.h"
#include "frame/Adapters.h"

/// The codes of file types.
class FileTypesModule {
    TypeRecord<file_type> type{"file type"};
    NamedGlobalProperty<file_type> named{"file type", "file types", "file type", file_type_of};
    RelationEqual<file_type, file_type> equal{"file type", "file type"};
};
