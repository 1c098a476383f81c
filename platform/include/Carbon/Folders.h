#pragma once

// Special folders: where a machine keeps its fonts, preferences, applications and so on, for whom.
//
// Which folders of this machine stand for a type in a domain is a table, platform/folders/folders.conf, whose
// beginning tells its form. A file /etc/zelq/folders.conf (below the folder of ZELQ_MACHINE_ROOT) of the same
// form replaces entries of it. Nothing is ever created.

#include <Carbon/Files.h>

/// The domains: whose folder it is. The first two mean the domain that is usual for the type.
enum {
    kOnSystemDisk = -32768,
    kOnAppropriateDisk = -32767,
    kSystemDomain = -32766,   // what came with the system
    kLocalDomain = -32765,    // what the administrator added for all users of the machine
    kNetworkDomain = -32764,  // what a network shares; none unless the administrator's file names some
    kUserDomain = -32763,     // the user's own
    kClassicDomain = -32762   // that of an older system; none unless the administrator's file names one
};

/// A reference to the first folder of the table that is there. `vRefNum` is a domain, or the number of a
/// volume: then the folder of the domain that is usual for the type, if it is on that volume. `createFolder`
/// changes nothing. fnfErr when the table has no such folder, or none of those that it has is there;
/// badFolderDescErr when the administrator's file has mistakes or cannot be read, and the code of the failure
/// when user-dirs.dirs cannot be read where it is wanted: PlatformSettingsFailure tells of both;
/// afpAccessDenied for a folder of the table that may not be looked at; nsvErr for an unknown
/// volume; volOffLinErr and userCanceledErr when a file system does not answer.
PLATFORM_API OSErr FSFindFolder(FSVolumeRefNum vRefNum, OSType folderType, Boolean createFolder,
                                FSRef* foundRef);
