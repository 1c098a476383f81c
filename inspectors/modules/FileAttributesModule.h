#pragma once

#include "filesystem/Attributes.h"
#include "frame/Adapters.h"

/// What the Finder keeps of a file, its forks, and their lengths. "size" is another word for "length".
class FileAttributesModule {
    TypeRecord<datafork> dataForks{"datafork"};
    TypeRecord<resfork> resourceForks{"resfork"};
    Property<file, boolean> locked{"locked", "lockeds", "file", "boolean", locked_of};
    Property<file, boolean> visible{"visible", "visibles", "file", "boolean", visible_of};
    Property<file, boolean> alias{"alias", "aliases", "file", "boolean", alias_of};
    Property<file, boolean> stationery{"stationery", "stationeries", "file", "boolean", stationery_of};
    Property<file, datafork> dataFork{"data fork", "data forks", "file", "datafork", datafork_of};
    Property<file, resfork> resourceFork{"resource fork", "resource forks", "file", "resfork", resfork_of};
    Property<resfork, integer> lengthOfResourceFork{"length", "lengths", "resfork", "integer", res_length_of};
    Property<datafork, integer> lengthOfDataFork{"length", "lengths", "datafork", "integer", data_length_of};
    Property<file, integer> lengthOfFile{"length", "lengths", "file", "integer", length_of};
    Property<resfork, integer> sizeOfResourceFork{"size", "sizes", "resfork", "integer", res_length_of};
    Property<datafork, integer> sizeOfDataFork{"size", "sizes", "datafork", "integer", data_length_of};
    Property<file, integer> sizeOfFile{"size", "sizes", "file", "integer", length_of};
};
