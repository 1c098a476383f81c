#include <Carbon/MacErrors.h>
#include <Platform/Items.h>

#include <cstring>
#include <type_traits>

#include "Evaluator/MacintoshPlatform.h"

static_assert(std::is_trivially_copyable_v<MacintoshPlatform::MacFileInfo>);

namespace MacintoshPlatform {

MacFileInfo::MacFileInfo(FileLocation const& location) {
    status = PlatformGetItem(location.url, kFields, &reference, &catalog);
    valid = status == noErr ? 1 : 0;
}

std::uint16_t MacFileInfo::FinderFlags() const {
    FileInfo info;
    std::memcpy(&info, catalog.finderInfo, sizeof info);
    return info.finderFlags;
}

bool operator==(MacFileInfo const& left, MacFileInfo const& right) {
    return FSCompareFSRefs(&left.reference, &right.reference) == noErr;
}

bool operator==(FileItem const& left, FileItem const& right) {
    if (left.info.valid != 0 && right.info.valid != 0) return left.info == right.info;
    return static_cast<FileLocation const&>(left) == static_cast<FileLocation const&>(right);
}

}  // namespace MacintoshPlatform

using MacintoshPlatform::FailedToGetFileItem;

FSRef MakeFSRef(CFURLRef url) {
    FSRef reference;
    OSErr const error = PlatformGetItem(url, kFSCatInfoNone, &reference, nullptr);
    if (error != noErr) throw FailedToGetFileItem(error);
    return reference;
}

FSSpec MakeFSSpec(CFURLRef url) {
    FSRef const reference = MakeFSRef(url);
    FSSpec fsSpec;
    OSErr const error = FSGetCatalogInfo(&reference, kFSCatInfoNone, nullptr, nullptr, &fsSpec, nullptr);
    if (error != noErr) throw FailedToGetFileItem(error);
    return fsSpec;
}

AutoCFURL MakeURL(FSRef const& reference) {
    AutoCFURL url(CFURLCreateFromFSRef(kCFAllocatorDefault, &reference));
    if (url == nullptr) throw FailedToGetFileItem(errFSBadFSRef);
    return url;
}
