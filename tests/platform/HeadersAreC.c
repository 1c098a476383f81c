/* The headers are C: this file is, and asks a few questions through them. */

#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>
#include <Platform/Items.h>

_Static_assert(sizeof(FSCatalogInfo) == 144, "the record has its published size");
_Static_assert(sizeof(FSSpec) == 70, "the record has its published size");
_Static_assert(sizeof(ComponentDescription) == 20, "the record has its published size");

/* The number of the code that failed, or 0. */
int AskFromC(char const* folderPath);

int AskFromC(char const* folderPath) {
    CFStringRef const path = CFStringCreateWithFileSystemRepresentation(kCFAllocatorDefault, folderPath);
    CFURLRef const url = CFURLCreateWithFileSystemPath(kCFAllocatorDefault, path, kCFURLPOSIXPathStyle, 1);
    FSRef reference;
    FSCatalogInfo info;
    OSErr error = CFURLGetFSRef(url, &reference) ? noErr : fnfErr;
    if (error == noErr) error = FSGetCatalogInfo(&reference, kFSCatInfoNodeFlags, &info, NULL, NULL, NULL);
    if (error == noErr && (info.nodeFlags & kFSNodeIsDirectoryMask) == 0) error = dirNFErr;
    if (error == noErr && FSOpenResFile(&reference, fsRdPerm) != -1) error = rfNumErr;
    if (error == noErr && ResError() != notAFileErr) error = resFNotFound;
    CFRelease(url);
    CFRelease(path);
    return error;
}
