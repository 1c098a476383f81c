#pragma once

#include "filesystem/Folder.h"
#include "frame/Adapters.h"

/// Folders and how they are found. A bare path is a POSIX path.
class FoldersModule {
    TypeRecord<folder> type{"folder", "filesystem object"};
    NamedProperty<folder, folder> named{"folder", "folders", "folder", "folder", folder_of};
    NamedProperty<filesystem_object, folder> sibling{"sibling folder", "sibling folders", "filesystem object",
                                                     "folder", sibling_folder_of};
    NamedProperty<folder, folder> relative{"relative folder", "relative folders", "folder", "folder",
                                           posix_relative_folder_of};
    NamedProperty<folder, folder> relativeHfs{"relative hfs folder", "relative hfs folders", "folder",
                                              "folder", hfs_relative_folder_of};
    NamedProperty<folder, folder> relativePosix{"relative posix folder", "relative posix folders", "folder",
                                                "folder", posix_relative_folder_of};
    NamedGlobalProperty<folder> ofWorld{"folder", "folders", "folder", posix_folder_of_world};
    NamedGlobalProperty<folder> hfsOfWorld{"hfs folder", "hfs folders", "folder", hfs_folder_of_world};
    NamedGlobalProperty<folder> posixOfWorld{"posix folder", "posix folders", "folder",
                                             posix_folder_of_world};
    Cast<filesystem_object, folder> cast{"folder", "filesystem object", "folder", asFolder};
    CacheRecord caches{ClearFolderCaches};
};
