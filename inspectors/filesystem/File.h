#pragma once

// Files: how they are found, and their types.

#include "Evaluator/Fingerprint.h"
#include "filesystem/FileCodes.h"
#include "filesystem/FileSystemObject.h"

/// The file of that name in the folder. This and the other look-ups: NoSuchObject when there is none, also
/// when the item is a folder.
file file_of(unsigned char const* name, unsigned long length, folder const& parent);
/// The file of that name in the folder that holds `object`.
file sibling_file_of(unsigned char const* name, unsigned long length, filesystem_object const& object);

/// The file at a path below the folder, which is text in the encoding and written in the style.
file relative_file_of(unsigned char const* path, unsigned long length, folder const& base,
                      unsigned long encoding, CFURLPathStyle style);
file hfs_relative_file_of(unsigned char const* path, unsigned long length, folder const& base);
file posix_relative_file_of(unsigned char const* path, unsigned long length, folder const& base);

/// The file at a path of the world; what follows a NUL byte in it does not count.
file file_of_world(unsigned char const* path, unsigned long length, unsigned long encoding,
                   CFURLPathStyle style);
file hfs_file_of_world(unsigned char const* path, unsigned long length);
file posix_file_of_world(unsigned char const* path, unsigned long length);

/// The object as a file; NoSuchObject when it is a folder.
file asFile(filesystem_object const& object);

/// The file's type and creator, read anew; 0 where nobody has set them.
file_type type_of(file const& object);
file_signature creator_of(file const& object);

/// Feeds what tells one state of a file from another: volume, folder, name, lengths of the forks, creation
/// and modification time. Throws FailedToGetFileItem when the file has gone.
Fingerprinter& operator<<(Fingerprinter& print, file const& object);

/// Forgets the files that were looked up, by name and by path.
void ClearFileCaches(void*);
