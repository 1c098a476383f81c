#pragma once

#include "filesystem/File.h"
#include "frame/Adapters.h"

/// Files and how they are found. A bare path is a POSIX path.
class FilesModule {
    TypeRecord<file, 1> type{"file", "filesystem object"};
    NamedProperty<folder, file> named{"file", "files", "folder", "file", file_of};
    NamedProperty<filesystem_object, file> sibling{"sibling file", "sibling files", "filesystem object",
                                                   "file", sibling_file_of};
    NamedProperty<folder, file> relative{"relative file", "relative files", "folder", "file",
                                         posix_relative_file_of};
    NamedProperty<folder, file> relativeHfs{"relative hfs file", "relative hfs files", "folder", "file",
                                            hfs_relative_file_of};
    NamedProperty<folder, file> relativePosix{"relative posix file", "relative posix files", "folder", "file",
                                              posix_relative_file_of};
    NamedGlobalProperty<file> ofWorld{"file", "files", "file", posix_file_of_world};
    NamedGlobalProperty<file> hfsOfWorld{"hfs file", "hfs files", "file", hfs_file_of_world};
    NamedGlobalProperty<file> posixOfWorld{"posix file", "posix files", "file", posix_file_of_world};
    Property<file, file_type> typeOfFile{"type", "types", "file", "file type", type_of};
    Property<file, file_signature> creator{"creator", "creators", "file", "file signature", creator_of};
    Cast<filesystem_object, file> cast{"file", "filesystem object", "file", asFile};
    CacheRecord caches{ClearFileCaches};
};
