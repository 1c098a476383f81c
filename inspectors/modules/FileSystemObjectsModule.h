#pragma once

#include "filesystem/Enumeration.h"
#include "filesystem/FileSystemObject.h"
#include "frame/Adapters.h"

/// What files and folders have in common, and what a folder holds.
class FileSystemObjectsModule {
    using Loop = filesystem_object_iterator;
    template <class R>
    using Each = IteratedPropertyOfObject<Loop, R, folder>;
    template <class R>
    using EachEndingIn = IteratedPropertyByIndexOfObject<Loop, R, inspector_string, folder>;

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
    Each<filesystem_object> items{"item",           "items",        "folder", "filesystem object",
                                  &Loop::FirstItem, &Loop::NextItem};
    EachEndingIn<filesystem_object> itemsEndingIn{
        "item ending in",         "items ending in",      "string", "folder", "filesystem object",
        &Loop::FirstItemEndingIn, &Loop::NextItemEndingIn};
    Each<file> files{"file", "files", "folder", "file", &Loop::FirstFile, &Loop::NextFile};
    EachEndingIn<file> filesEndingIn{
        "file ending in",         "files ending in",      "string", "folder", "file",
        &Loop::FirstFileEndingIn, &Loop::NextFileEndingIn};
    Each<folder> folders{"folder", "folders", "folder", "folder", &Loop::FirstFolder, &Loop::NextFolder};
    EachEndingIn<folder> foldersEndingIn{
        "folder ending in",         "folders ending in",      "string", "folder", "folder",
        &Loop::FirstFolderEndingIn, &Loop::NextFolderEndingIn};
    CacheRecord cache{ClearFileSystemObjectCache};
};
