#pragma once

// The Resource Manager: reading what files keep in their resource forks.
//
// A resource is a row of bytes with a type of four characters and a number. Resource forks are found where
// Mac-aware programs leave them on Linux: in extended attributes, and in AppleDouble files beside the file.
// They are read only; nothing is written.
//
// Open resource files form a chain, the one opened last in front. One of them is current, or none is: that is
// the number 0. A resource that was asked for is given as a handle, the same each time, which belongs to its
// file and is good until that is closed. The chain, the current file and whether resources are read when they
// are found are one for the process, as is what ResError tells; so whoever asks several questions that belong
// together must do it on one thread at a time.

#include <Carbon/Files.h>

/// The result code of the last of the calls below that was made, whichever it was.
PLATFORM_API OSErr ResError(void);

/// The number of the current resource file; 0 for none.
PLATFORM_API SInt16 CurResFile(void);
/// Makes an open resource file current, or none with 0. resFNotFound for any other number; the current one
/// then stays.
PLATFORM_API void UseResFile(SInt16 refNum);
/// Whether resources that are found are read into memory: not with `load` 0; they are at first.
PLATFORM_API void SetResLoad(Boolean load);

/// Opens the resource fork of the referenced file, or of what it leads to when it is a link, and makes it
/// current. Returns its number, from 1, which is the caller's until CloseResFile. A file that is open already
/// has the same number again. Nothing is read but the map, whatever SetResLoad was told.
///
/// Returns -1 when it cannot, and the current file stays. ResError tells eofErr for a file without a resource
/// fork and for an empty one, mapReadErr for a fork that is none, fnfErr when the file is gone, notAFileErr
/// for a folder, errFSBadFSRef for a stale reference, permErr for a permission to write and paramErr for none
/// of the permissions, tmfoErr when 32767 are open, and what the file system says; but a companion file that
/// cannot be opened counts as absent. A server that does not answer is waited for as by all that looks items
/// up; this holds for reading too.
PLATFORM_API SInt16 FSOpenResFile(FSRef const* ref, SInt8 permission);
/// Closes a resource file and ends its handles. When it was current, the file that was opened before it is so
/// then, or none. resFNotFound when it is not open.
PLATFORM_API void CloseResFile(SInt16 refNum);

/// The resource of that type and number in the current file. Null when there is none: ResError tells
/// resNotFound, but noErr when the file has no resource of the type at all, and resFNotFound when no file is
/// current.
///
/// Unless SetResLoad was told otherwise, the resource is read, and the handle leads to its bytes; else it
/// leads to null until the resource is asked for with reading. Null too when it cannot be read: eofErr for a
/// resource that does not lie within its file's data, CantDecompress for one that is compressed, memFullErr
/// for one of more than 16 MiB, and what reading files gives.
PLATFORM_API Handle Get1Resource(ResType theType, SInt16 theID);
/// The most bytes that a resource can have, by where the next one begins; nothing is read. 0, and
/// resNotFound, for what is no handle of a resource.
PLATFORM_API SInt32 GetMaxResourceSize(Handle theResource);
/// Reads `count` bytes of a resource from an offset on into `buffer`, from the file, also when the resource
/// is in memory. When it has fewer there, those that it has are read: inputOutOfBounds, as for an offset that
/// is negative or behind its end and for a negative count. resNotFound for what is no handle of a resource,
/// paramErr for null, and as Get1Resource.
PLATFORM_API void ReadPartialResource(Handle theResource, SInt32 offset, void* buffer, SInt32 count);
