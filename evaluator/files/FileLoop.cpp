#include <Carbon/MacErrors.h>
#include <Platform/Items.h>

#include <algorithm>
#include <utility>

#include "Evaluator/MacintoshPlatform.h"

namespace MacintoshPlatform {

namespace {

constexpr std::size_t kFirstItems = 16;  // read at one time; twice as many each next time
constexpr std::size_t kMostItems = 64;

[[noreturn]] void Fail(OSErr error) {
    switch (error) {
        case fnfErr:
        case dirNFErr:
            throw DirectoryNotFoundError();
        case permErr:
        case afpAccessDenied:
            throw FilePermissionError();
        default:
            ThrowRealOSError(error);
    }
}

}  // namespace

FileLoop::~FileLoop() { End(); }

void FileLoop::End() {
    if (iterator != nullptr) FSCloseIterator(std::exchange(iterator, nullptr));
    buffer = {};
    current = {};
    atEnd = 1;
}

void FileLoop::Start(FileLocation const& location) {
    End();
    folder = location.url;
    taken = 0;
    isLastRead = false;
    if (OSErr const error = PlatformOpenIterator(folder, &iterator); error != noErr) Fail(error);
    atEnd = 0;
    ++*this;
}

FileLoop& FileLoop::operator++() {
    if (atEnd != 0) return *this;
    try {
        Advance();
    } catch (...) {
        End();
        throw;
    }
    return *this;
}

// The iterator stays open to the end: the folders among the items are opened from there.
void FileLoop::Advance() {
    while (taken == buffer.size()) {
        if (isLastRead) return End();
        ReadItems();
    }
    current = std::move(buffer[taken++]);
    if (current.info.valid == 0) current.info = MacFileInfo(current);
}

void FileLoop::ReadItems() {
    FSRef references[kMostItems];
    FSCatalogInfo catalogs[kMostItems];
    ItemCount count = 0;
    std::size_t const most = std::clamp(2 * buffer.size(), kFirstItems, kMostItems);
    OSErr const error = FSGetCatalogInfoBulk(iterator, most, &count, nullptr, MacFileInfo::kFields, catalogs,
                                             references, nullptr, nullptr);
    isLastRead = error == errFSNoMoreItems;
    if (error != noErr && !isLastRead) Fail(error);
    buffer.clear();
    buffer.reserve(count);
    taken = 0;
    for (ItemCount i = 0; i < count; ++i) {
        bool const isKnown = catalogs[i].nodeID != 0;  // else the look-up to come says why not
        buffer.emplace_back(FileLocation(MakeURL(references[i])),
                            isKnown ? MacFileInfo(references[i], catalogs[i]) : MacFileInfo());
    }
}

}  // namespace MacintoshPlatform
