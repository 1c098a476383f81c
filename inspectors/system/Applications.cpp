#include "system/Applications.h"

#include <Carbon/LaunchServices.h>
#include <Carbon/MacErrors.h>

#include "filesystem/FileCodes.h"

using MacintoshPlatform::FailedToGetFileItem;
using MacintoshPlatform::FileItem;
using MacintoshPlatform::FileLocation;
using MacintoshPlatform::MacFileInfo;

file application_of(unsigned char const* creator, unsigned long length) {
    FSRef reference;
    OSType const code = file_type_of(creator, length).code;
    OSStatus const result = LSGetApplicationForInfo(
        kLSUnknownType, code, nullptr, static_cast<LSRolesMask>(kLSRolesAll), &reference, nullptr);
    if (result != noErr) throw FileNotFoundError();
    FileLocation const location(MakeURL(reference));
    MacFileInfo const info(location);
    if (info.valid == 0) throw FailedToGetFileItem(info.status);
    return file(FileItem(location, info));
}
