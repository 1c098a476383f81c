#pragma once

#include "filesystem/FileSystemObject.h"
#include "frame/Adapters.h"

/// What files and folders have in common.
class FileSystemObjectsModule {
    TypeRecord<filesystem_object> type{"filesystem object"};
    RelationEqual<filesystem_object, filesystem_object> equal{"filesystem object", "filesystem object",
                                                              DependsOnlyOnParameters};
    NamedProperty<folder, filesystem_object> item{"item", "items", "folder", "filesystem object", object_of};
    NamedProperty<filesystem_object, filesystem_object> siblingItem{
        "sibling item", "sibling items", "filesystem object", "filesystem object", sibling_object_of};
    Property<filesystem_object, moment> creationTime{"creation time",     "creation times",
                                                     "filesystem object", "time",
                                                     creation_time_of,    DependsOnlyOnParameters};
    Property<filesystem_object, moment> modificationTime{"modification time",  "modification times",
                                                         "filesystem object",  "time",
                                                         modification_time_of, DependsOnlyOnParameters};
    Property<filesystem_object, moment> backupTime{"backup time", "backup times", "filesystem object", "time",
                                                   backup_time_of};
    Property<filesystem_object, folder> parentFolder{"parent folder", "parent folders", "filesystem object",
                                                     "folder", parent_folder_of};
    Property<filesystem_object, inspector_string> name{"name",   "names", "filesystem object",
                                                       "string", name_of, DependsOnlyOnParameters};
    CacheRecord cache{ClearFileSystemObjectCache};
};
