#pragma once

// What the Finder keeps of a file, its two forks, and their lengths.
//
// All of it was learned when the file was looked up; nothing here asks the file system again. A file without
// information ends every question but that for a fork with MacintoshPlatform::FailedToGetFileItem.

#include "filesystem/FileSystemObject.h"

/// A fork of a file: no more than a reference to the file, which must outlive it.
struct datafork {
    file const& owner;
};
struct resfork {
    file const& owner;
};

boolean locked_of(file const& object);
boolean visible_of(file const& object);
/// Whether the file is an alias, or was reached by a symbolic link.
boolean alias_of(file const& object);
boolean stationery_of(file const& object);

/// Every file has both forks; one that is not on the disk is empty.
datafork datafork_of(file const& object);
resfork resfork_of(file const& object);

/// Bytes; of a file those of both forks.
integer data_length_of(datafork const& fork);
integer res_length_of(resfork const& fork);
integer length_of(file const& object);
