#include <Carbon/MacErrors.h>
#include <Platform/Items.h>

#include <algorithm>
#include <utility>

#include "Evaluator/MacintoshPlatform.h"
#include "files/FolderFailures.h"

namespace MacintoshPlatform {

namespace {

constexpr std::size_t kFirstItems = 32;  // read at one time; twice as many each next time
constexpr std::size_t kMostItems = 64;

[[noreturn]] void Fail(OSErr error, CFURLRef folder) {
    switch (error) {
        case fnfErr:
        case dirNFErr:
            throw DirectoryNotFoundError(Evaluator::NoteFolderFailure(folder));
        case permErr:
        case afpAccessDenied:
            throw FilePermissionError(Evaluator::NoteFolderFailure(folder));
        default:
            ThrowRealOSError(error);
    }
}

}  // namespace

namespace {

// The room of the loop that ended last, for the next one to use: a walk begins and ends one for each folder.
std::vector<FileItem>& SpareRoom() {
    static thread_local std::vector<FileItem> room;
    return room;
}

}  // namespace

FileLoop::FileLoop() = default;
FileLoop::~FileLoop() { End(); }

void FileLoop::End() {
    if (iterator != nullptr) FSCloseIterator(std::exchange(iterator, nullptr));
    buffer.clear();
    if (SpareRoom().capacity() < buffer.capacity()) SpareRoom().swap(buffer);
    buffer = {};
    atEnd = 1;
}

void FileLoop::Start(FileLocation const& location) {
    End();
    folder = location.url;
    if (OSErr const error = PlatformOpenIterator(folder, &iterator); error != noErr) Fail(error, folder);
    atEnd = 0;
    isLastRead = false;
    GoTo(0);
}

FileLoop& FileLoop::operator++() {
    if (atEnd == 0) GoTo(current + 1);
    return *this;
}

// The iterator stays open to the end: the folders among the items are opened from there.
void FileLoop::GoTo(std::size_t item) {
    try {
        current = item;
        while (current == buffer.size()) {
            if (isLastRead) return End();
            ReadItems();
        }
        FileItem& found = buffer[current];
        if (found.info.valid == 0) found.info = MacFileInfo(found);
        // An item of a file system that does not answer tells of that when it is asked for more than its
        // name.
        if (found.info.status == volOffLinErr) PlatformNoteUnresponsiveMount();
    } catch (...) {
        End();
        throw;
    }
}

void FileLoop::ReadItems() {
    FSRef references[kMostItems];
    FSCatalogInfo catalogs[kMostItems];
    ItemCount count = 0;
    auto const most = static_cast<ItemCount>(std::clamp(2 * buffer.size(), kFirstItems, kMostItems));
    OSErr const error = FSGetCatalogInfoBulk(iterator, most, &count, nullptr, MacFileInfo::kFields, catalogs,
                                             references, nullptr, nullptr);
    isLastRead = error == errFSNoMoreItems;
    if (error != noErr && !isLastRead) Fail(error, folder);
    buffer.clear();
    if (buffer.capacity() == 0) buffer.swap(SpareRoom());
    buffer.reserve(count);
    current = 0;
    for (ItemCount i = 0; i < count; ++i) {
        FileLocation location(MakeURL(references[i]));
        if (catalogs[i].nodeID != 0) {
            buffer.emplace_back(std::move(location), references[i], catalogs[i]);
        } else {
            buffer.emplace_back(std::move(location), MacFileInfo());  // looked up when its turn comes
        }
    }
}

}  // namespace MacintoshPlatform
