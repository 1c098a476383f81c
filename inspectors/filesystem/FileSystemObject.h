#pragma once

// Items of the file system: anything, files, folders. What they have in common, and how they are found.
//
// A value owns its location and keeps what the catalog said when it was looked up; nothing is looked up again
// for its times. It may be an item without information, one that could not be read; most questions to such a
// one end with MacintoshPlatform::FailedToGetFileItem.

#include "Evaluator/MacintoshPlatform.h"
#include "Evaluator/Values.h"

/// Any item.
struct filesystem_object : MacintoshPlatform::FileItem {
    filesystem_object() = default;
    explicit filesystem_object(MacintoshPlatform::FileItem const& item) : FileItem(item) {}
};

/// An item that is no folder.
struct file : filesystem_object {
    file() = default;
    explicit file(MacintoshPlatform::FileItem const& item) : filesystem_object(item) {}
};

/// An item that is one.
struct folder : filesystem_object {
    folder() = default;
    explicit folder(MacintoshPlatform::FileItem const& item) : filesystem_object(item) {}
};

/// The item of that name in the folder. NoSuchObject for a name that no file has; FailedToGetFileItem when
/// there is no such item.
filesystem_object object_of(unsigned char const* name, unsigned long length, folder const& parent);
/// The item of that name in the folder that holds `object`.
filesystem_object sibling_object_of(unsigned char const* name, unsigned long length,
                                    filesystem_object const& object);

moment creation_time_of(filesystem_object const& object);
moment modification_time_of(filesystem_object const& object);
/// The beginning of 1904 when there was no backup.
moment backup_time_of(filesystem_object const& object);
/// Throws FailedToGetFileItem for the root, which has no parent.
folder parent_folder_of(filesystem_object const& object);
/// The name's bytes; "/" of the root.
inspector_string name_of(filesystem_object const& object);

/// Whether the object's name ends with the suffix, byte for byte.
bool ItemHasSuffix(filesystem_object const& object, inspector_string const& suffix);

/// Forgets the objects that were looked up.
void ClearFileSystemObjectCache(void*);
