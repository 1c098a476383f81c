#pragma once

// Locations of files. A URL here is a POSIX path, absolute or relative to a base, and knows whether it is
// meant as a folder's ("directory URL"). Making or taking apart a URL never looks at the disk: "." and ".."
// stay, symbolic links are not followed and nothing need exist.
//
// Path styles. POSIX: names with '/' between them, absolute with a '/' in front. HFS: names with ':' between
// them and '/' for a POSIX ':' within a name; absolute unless it begins with ':', and then the first name is
// that of a mounted volume, or "/" for the root. Each ':' beyond one goes one level up, a single one at the
// end is ignored. "." and ".." are no names in this style.

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>

struct FSRef;
typedef struct __CFURL const* CFURLRef;

typedef enum CFURLPathStyle {
    kCFURLPOSIXPathStyle = 0,
    kCFURLHFSPathStyle = 1,
    /// Not known here: refused.
    kCFURLWindowsPathStyle = 2
} CFURLPathStyle;

/// The number of the type of URLs. Two URLs are equal when their paths, byte for byte and with the '/' at the
/// end of a directory URL, and their bases are; the files are not looked at.
PLATFORM_API CFTypeID CFURLGetTypeID(void);

/// A URL from a path in the given style; a relative one has no base. A POSIX path with '/' at its end is a
/// directory URL in any case. Null for an empty path, one that cannot be a path (a NUL in it), a style that
/// is not known, and an absolute HFS path whose first name is no volume's.
PLATFORM_API CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef path,
                                                    CFURLPathStyle style, Boolean isDirectory);
/// The same; a relative path is relative to `base` (optional), an absolute one ignores it.
PLATFORM_API CFURLRef CFURLCreateWithFileSystemPathRelativeToBase(CFAllocatorRef allocator, CFStringRef path,
                                                                  CFURLPathStyle style, Boolean isDirectory,
                                                                  CFURLRef base);
/// A URL from the bytes of a POSIX path. Null for no bytes and for a NUL among them.
PLATFORM_API CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, UInt8 const* buffer,
                                                              CFIndex length, Boolean isDirectory);
/// The same; a relative path is relative to `base` (optional), an absolute one ignores it.
PLATFORM_API CFURLRef CFURLCreateFromFileSystemRepresentationRelativeToBase(
    CFAllocatorRef allocator, UInt8 const* buffer, CFIndex length, Boolean isDirectory, CFURLRef base);

/// The URL's own path, without its base's and without a separator at the end. In HFS style an absolute path
/// begins with the name of the volume that it lies on, a relative one with ':'. Null for a style that is not
/// known, and in HFS style for an absolute path on no listed volume.
PLATFORM_API CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style);
/// Writes the path's bytes and a NUL to `buffer`; with `resolveAgainstBase` behind its base's path. No
/// separator at the end. False when they do not fit.
PLATFORM_API Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                                      CFIndex maxBufferLength);
/// Whether the URL is a directory URL: made as one, or a path that ends with '/', "." or "..".
PLATFORM_API Boolean CFURLHasDirectoryPath(CFURLRef url);

/// The last name of the path; "/" of the root.
PLATFORM_API CFStringRef CFURLCopyLastPathComponent(CFURLRef url);
/// The folder's URL: the path without its last name. The root gives "/../", a last name "." or ".." gets
/// "../" behind it, a single name gives "./".
PLATFORM_API CFURLRef CFURLCreateCopyDeletingLastPathComponent(CFAllocatorRef allocator, CFURLRef url);
/// The URL of `component` below `url`. Null for a component that is empty or cannot be part of a path.
PLATFORM_API CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef allocator, CFURLRef url,
                                                            CFStringRef component, Boolean isDirectory);

/// A reference to the item that the URL leads to, as FSPathMakeRef makes it. False when there is none, or it
/// may not be looked at.
PLATFORM_API Boolean CFURLGetFSRef(CFURLRef url, struct FSRef* reference);
/// The location that a reference was made with; a directory URL when it was a folder. Null for a reference
/// that is no longer known, and for one that never was.
PLATFORM_API CFURLRef CFURLCreateFromFSRef(CFAllocatorRef allocator, struct FSRef const* reference);
