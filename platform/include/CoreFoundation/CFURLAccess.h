#pragma once

// The bytes of what a URL leads to.

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFURL.h>

/// Codes of CFURLCreateDataAndPropertiesFromResource.
enum {
    kCFURLUnknownError = -10,
    kCFURLResourceNotFoundError = -12,
    kCFURLResourceAccessViolationError = -13,
    kCFURLUnknownPropertyKeyError = -16,
    kCFURLTimeoutError = -18
};

/// Reads the regular file that `url` leads to. True when it could be read: `resourceData` (optional) is then
/// its bytes, an owned object, empty of an empty file. A folder, pipe, socket or device cannot be read; nor
/// can a file of more than 256 MiB. `properties` (optional) gets null: there are none to ask for, and
/// `desiredProperties` must be null. False with a code in `errorCode` (optional) otherwise: not there -12,
/// not to be read by this user -13, stopped by the check-in function or a mount that does not answer -18,
/// properties asked for -16, all else -10. PlatformFileFailure then tells more.
PLATFORM_API Boolean CFURLCreateDataAndPropertiesFromResource(CFAllocatorRef allocator, CFURLRef url,
                                                              CFDataRef* resourceData,
                                                              CFDictionaryRef* properties,
                                                              CFArrayRef desiredProperties,
                                                              SInt32* errorCode);
