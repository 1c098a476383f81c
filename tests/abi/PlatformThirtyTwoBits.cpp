// The sizes and offsets of the platform's records on a 32-bit machine, which are those on every machine: they
// are packed to two bytes. This file is only compiled.

#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>

static_assert(sizeof(void*) == 4);
static_assert(sizeof(FSRef) == 80);
static_assert(sizeof(HFSUniStr255) == 512);
static_assert(sizeof(UTCDateTime) == 8);
static_assert(sizeof(FSSpec) == 70 && offsetof(FSSpec, parID) == 2 && offsetof(FSSpec, name) == 6);
static_assert(sizeof(FSPermissionInfo) == 16);
static_assert(sizeof(ProcessSerialNumber) == 8 && sizeof(ProcessInfoRec) == 60);
static_assert(offsetof(ProcessInfoRec, processLauncher) == 40 &&
              offsetof(ProcessInfoRec, processAppSpec) == 56);
static_assert(sizeof(FSCatalogInfo) == 144);
static_assert(sizeof(CFStringRef) == 4 && sizeof(CFIndex) == 4);
