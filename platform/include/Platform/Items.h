#pragma once

// What this platform offers beyond the published interfaces: an item's reference and catalog information in
// one step, locations that are resolved against the disk, the function that lets a host stop long work, and
// mounts that do not answer.

#include <Carbon/Files.h>
#include <CoreFoundation/CFURL.h>

/// Finds the item that `url` leads to, as CFURLGetFSRef does, and fills `info` (optional) with the fields of
/// `whichInfo`, as FSGetCatalogInfo does; the item is looked at once for both. Errors are those of
/// FSPathMakeRef and FSGetCatalogInfo.
PLATFORM_API OSErr PlatformGetItem(CFURLRef url, FSCatalogInfoBitmap whichInfo, FSRef* ref,
                                   FSCatalogInfo* info);

/// Opens an iterator over the items of the folder that `url` leads to. It is read by FSGetCatalogInfoBulk and
/// must be closed by FSCloseIterator. There may be any number of iterators; few of their folders are open at
/// one time, the others are opened again when they are read. fnfErr or dirNFErr when there is no such folder,
/// dirNFErr when the item is no folder, and what the file system says.
PLATFORM_API OSErr PlatformOpenIterator(CFURLRef url, FSIterator* iterator);

/// The same location without base, ".", ".." and doubled separators: ".." is the physical parent folder, a
/// relative path starts at the working directory, and symbolic links that are not stepped back over keep
/// their names. The folder that holds the last component must exist; the component itself need not, unless
/// the URL is a directory URL. The result is a directory URL when the item is a folder. Null when the
/// location cannot be resolved; `error` (optional) then tells why.
PLATFORM_API CFURLRef PlatformCreateResolvedURL(CFURLRef url, OSErr* error);

/// The location that an FSSpec names; there need not be an item. Null when its folder is not known or is
/// gone; `error` (optional) then tells why, as FSpMakeFSRef does.
PLATFORM_API CFURLRef PlatformCreateSpecURL(FSSpec const* spec, OSErr* error);

/// Asked before items are looked at, with their number: 1 by a look-up, more by a listing, 0 where a call
/// merely waits. False makes the call answer userCanceledErr. It is called on whatever thread looks up and
/// must not call the platform.
typedef Boolean (*PlatformCheckIn)(UInt32 items);

/// Installs the function that look-ups ask; null installs none. Returns the one that was installed before.
/// PlatformUnresponsiveMount then knows of no failure of the calling thread, and folders that were only held
/// open for look-ups to come are closed: a host installs one for each piece of its work.
PLATFORM_API PlatformCheckIn PlatformSetCheckIn(PlatformCheckIn function);

/// How the calling thread's last call ended that was given up because the file system of a mount does not
/// answer: userCanceledErr when the check-in function said stop, volOffLinErr when it took too long, noErr
/// when there was none. `buffer` of `size` bytes (optional) gets the mount point, cut where it does not fit,
/// and a NUL; of no failure the empty text.
PLATFORM_API OSErr PlatformUnresponsiveMount(char* buffer, UInt32 size);

/// Takes note of that failure: its code is kept, with an item that answers with it, and need not be told of
/// again. And whether there is a failure of the calling thread that nobody has taken note of.
PLATFORM_API void PlatformNoteUnresponsiveMount(void);
PLATFORM_API Boolean PlatformHasUnnotedMount(void);

/// Sets how many milliseconds FSGetVolumeInfo waits for a mount; 5000 at first. Returns what was set before.
PLATFORM_API UInt32 PlatformSetVolumePatience(UInt32 milliseconds);

/// How the calling thread's last call ended that could not open, measure or read a fork, or look an item up
/// by its URL, apart from eofErr and userCanceledErr; noErr when there was none since PlatformSetCheckIn or
/// PlatformForgetFileFailure. `buffer` of `size` bytes (optional) gets the path of the file, cut where it
/// does not fit, and a NUL.
PLATFORM_API OSErr PlatformFileFailure(char* buffer, UInt32 size);
/// Makes PlatformFileFailure, PlatformPropertyListFailure and PlatformSettingsFailure tell the calling thread
/// of none.
PLATFORM_API void PlatformForgetFileFailure(void);

/// Why the first data that the calling thread gave to CFPropertyListCreateFromXMLData in vain, itself or
/// through a call on bundles or preferences, is no property list. False when there was none that is not one
/// since PlatformSetCheckIn or PlatformForgetFileFailure. `file` of `fileSize` bytes (optional) gets the path
/// of the file that the data came from, or of the last sound list when there was no other, the empty text for
/// data of no file; `reason` of `reasonSize` bytes (optional) why, in UTF-8, or the empty text; both cut
/// where they do not fit, and a NUL.
PLATFORM_API Boolean PlatformPropertyListFailure(char* file, UInt32 fileSize, char* reason,
                                                 UInt32 reasonSize);

/// Why a call of the calling thread failed last that could not use a file of settings: FSFindFolder,
/// ICGetPref and others that need it. False when there was none since PlatformSetCheckIn or
/// PlatformForgetFileFailure. `file` and `reason` as in PlatformPropertyListFailure; the reason tells each
/// mistake with its line. Where it is something else that could not be used, as a sound server that does not
/// answer, `file` gets the empty text, and the reason tells what.
PLATFORM_API Boolean PlatformSettingsFailure(char* file, UInt32 fileSize, char* reason, UInt32 reasonSize);
