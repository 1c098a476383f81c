#include "filesystem/FileSystemObject.h"

#include "Evaluator/Text.h"
#include "Evaluator/Time.h"
#include "filesystem/LookUps.h"
#include "filesystem/LookupCache.h"

using namespace Inspectors;
using MacintoshPlatform::FileItem;
using MacintoshPlatform::FileLocation;
using MacintoshPlatform::MacFileInfo;

namespace {

LookupCache<filesystem_object, 8, folder> sObjectCache;

moment TimeOf(UTCDateTime const& date) { return AsMoment(MacintoshPlatform::FileTimeToInstant(date)); }

}  // namespace

// A missing item stays FailedToGetFileItem, unlike in the look-ups of files and folders. The information is
// read twice: the second time through the item's own location.
filesystem_object object_of(unsigned char const* name, unsigned long length, folder const& parent) {
    std::string_view const text = TextOf(name, length);
    auto const look = [&] {
        FileItem const item = ItemNamed(text, parent);
        return filesystem_object(FileItem(item, MacFileInfo(item)));
    };
    return OrNoSuchObject<FileNotFoundError, DirectoryNotFoundError, IllegalFileName, IllegalFileNameLength>(
        [&] { return Remembered(sObjectCache, look, text, parent); });
}

filesystem_object sibling_object_of(unsigned char const* name, unsigned long length,
                                    filesystem_object const& object) {
    return object_of(name, length, parent_folder_of(object));
}

moment creation_time_of(filesystem_object const& object) { return TimeOf(object.Info().catalog.createDate); }
moment modification_time_of(filesystem_object const& object) {
    return TimeOf(object.Info().catalog.contentModDate);
}
moment backup_time_of(filesystem_object const& object) { return TimeOf(object.Info().catalog.backupDate); }

folder parent_folder_of(filesystem_object const& object) {
    return folder(ItemAt(FileLocation(object.ParentURL())));
}

inspector_string name_of(filesystem_object const& object) {
    std::string const name = MacintoshPlatform::MakeUTF8String(object.Name());
    return MakeString(ConstData(reinterpret_cast<unsigned char const*>(name.data()), name.size()));
}

bool ItemHasSuffix(filesystem_object const& object, inspector_string const& suffix) {
    std::string const text(TextOf(suffix.bytes, suffix.length));
    return MacintoshPlatform::HasSuffix(object.Name(), text.c_str());
}

void ClearFileSystemObjectCache(void*) { sObjectCache.Clear(); }
