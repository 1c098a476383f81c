#pragma once

// Launch Services: which application is in charge of what.
//
// Applications are the bundles (X.app) in the folders of the type 'apps', those of the user first, then
// local, network, system, each with all the folders that the table of special folders lists for it; and the
// desktop entries (X.desktop), also in folders, in `applications` below $XDG_DATA_HOME and each folder of
// $XDG_DATA_DIRS. Of entries with one desktop-file id the first counts; it may hide the others. A bundle's
// creator code is its signature, a desktop entry's the four bytes of its key X-Creator-Code. '????' is that
// of none. Bundles of one folder are found by their names, entries of one folder by their ids.

#include <Carbon/Files.h>
#include <CoreFoundation/CFURL.h>

typedef UInt32 LSRolesMask;
enum { kLSRolesNone = 1, kLSRolesViewer = 2, kLSRolesEditor = 4, kLSRolesAll = -1 /* every bit */ };
enum { kLSUnknownType = 0, kLSUnknownCreator = 0 };

/// The application of a creator code: the bundle with that signature, of several that of the highest version,
/// of equal ones the one that is found first; else the executable file of the first desktop entry with it
/// that has one, as Exec and PATH tell it, and whose TryExec is there, if it has any. Both outputs are
/// optional; the caller owns the URL. kLSApplicationNotFoundErr when there is none, also where only a type or
/// an extension is given, which nothing is registered for here; paramErr when nothing is given;
/// badFolderDescErr, volOffLinErr and userCanceledErr as FSFindFolder.
PLATFORM_API OSStatus LSGetApplicationForInfo(OSType type, OSType creator, CFStringRef extension,
                                              LSRolesMask roles, FSRef* outAppRef, CFURLRef* outAppURL);
