#pragma once

// Folders: how they are found.

#include "filesystem/FileSystemObject.h"

/// The folder of that name in the folder. This and the other look-ups: NoSuchObject when there is none, also
/// when the item is no folder.
folder folder_of(unsigned char const* name, unsigned long length, folder const& parent);
/// The folder of that name in the folder that holds `object`.
folder sibling_folder_of(unsigned char const* name, unsigned long length, filesystem_object const& object);

/// The folder at a path below the folder, which is text in the encoding and written in the style.
folder relative_folder_of(unsigned char const* path, unsigned long length, folder const& base,
                          unsigned long encoding, CFURLPathStyle style);
folder hfs_relative_folder_of(unsigned char const* path, unsigned long length, folder const& base);
folder posix_relative_folder_of(unsigned char const* path, unsigned long length, folder const& base);

/// The folder at a path of the world; what follows a NUL byte in it does not count.
folder folder_of_world(unsigned char const* path, unsigned long length, unsigned long encoding,
                       CFURLPathStyle style);
folder hfs_folder_of_world(unsigned char const* path, unsigned long length);
folder posix_folder_of_world(unsigned char const* path, unsigned long length);

/// The object as a folder; NoSuchObject when it is none.
folder asFolder(filesystem_object const& object);

/// Forgets the folders that were looked up, by name and by path.
void ClearFolderCaches(void*);
