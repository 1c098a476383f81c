#include "files/FolderIterator.h"

#include <Carbon/MacErrors.h>
#include <dirent.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>

#include "files/CheckIn.h"
#include "files/Errors.h"
#include "files/MacMetadata.h"
#include "foundation/Threads.h"

namespace Platform {

namespace {

constexpr int kOpenFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
constexpr std::string_view kCompanionPrefix = "._";
constexpr std::string_view kCompanionFolder = ".AppleDouble";

bool LooksLikeCompanion(std::string_view name) {
    return name.starts_with(kCompanionPrefix) || name == kCompanionFolder;
}

int LookAtFolder(Descriptor const& folder, struct statx& status) {
    return statx(folder.Number(), "", AT_EMPTY_PATH, STATX_BASIC_STATS, &status) == 0 ? 0 : errno;
}

}  // namespace

// ---- Opening

OSErr FolderIterator::OpenFolder(SharedDescriptor& descriptor) const {
    SystemPath const path(location);
    if (path.Error() != 0) return ErrorOfErrno(path.Error());
    auto const [folder, name] = path.Get();
    int const links = location.rule == LinkRule::Follow ? 0 : O_NOFOLLOW;
    int const number = openat(folder, name, kOpenFlags | links);
    if (number < 0) return ErrorOfErrno(errno);
    descriptor = std::make_shared<Descriptor const>(number);
    return noErr;
}

OSErr FolderIterator::Open(Location const& folder, std::optional<SlowMount> const& mount,
                           std::shared_ptr<FolderIterator>& iterator) {
    if (!MayGoOn(0)) return userCanceledErr;
    std::shared_ptr<FolderIterator> const result(new FolderIterator(folder, mount));
    SharedDescriptor descriptor;
    if (OSErr const error = result->OpenFolder(descriptor); error != noErr) return error;
    if (mount) {
        result->WillLetGo(*descriptor);
    } else {
        OpenFolders::Shared().Hold(*result, folder.path, std::move(descriptor));
    }
    iterator = result;
    return noErr;
}

// What tells the folder from another is learned only when it is let go of, which few folders are.
void FolderIterator::WillLetGo(Descriptor const& folder) noexcept {
    if (LookAtFolder(folder, asLetGo) != 0) asLetGo = {};
}

bool FolderIterator::IsItsFolder(Descriptor const& folder) const {
    struct statx now;
    return LookAtFolder(folder, now) == 0 && now.stx_ino == asLetGo.stx_ino &&
           now.stx_dev_major == asLetGo.stx_dev_major && now.stx_dev_minor == asLetGo.stx_dev_minor;
}

void FolderIterator::GoOnWith(SharedDescriptor descriptor) {
    if (!IsItsFolder(*descriptor)) return;
    OpenFolders::Shared().Hold(*this, location.path, std::move(descriptor));
    reopened = true;
}

// ---- Reading

FolderIterator::Turn::Turn(FolderIterator& its, Surroundings const& around)
    : iterator(its), surroundings(around), folder(its.HeldFolder()) {
    if (folder) return;
    if (error = iterator.OpenFolder(folder); error != noErr) return;
    if (!iterator.IsItsFolder(*folder)) {
        error = fnfErr;
        return;
    }
    if (!iterator.mount) OpenFolders::Shared().Hold(iterator, iterator.location.path, folder);
    iterator.reopened = true;
}

// The first entries tell, with a look at those behind them, whether there are companions.
OSErr FolderIterator::Turn::TakeEntry(FolderEntry& entry) {
    FolderEntries& entries = iterator.entries;
    while (!entries.Take(entry)) {
        if (entries.IsAtEnd()) return errFSNoMoreItems;
        int failure = entries.Read(folder->Number(), std::exchange(iterator.reopened, false));
        if (failure == 0 && !std::exchange(iterator.wasRead, true)) {
            failure = entries.LookAhead(folder->Number(), LooksLikeCompanion, iterator.listing.companions);
        }
        if (failure != 0) return ErrorOfErrno(failure);
    }
    return noErr;
}

bool FolderIterator::Turn::IsCompanion(FolderEntry const& entry) const {
    if (!iterator.listing.companions || !LooksLikeCompanion(entry.name)) return false;
    int const here = folder->Number();
    struct stat status;
    auto const look = [&](char const* name) {
        return fstatat(here, name, &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) == 0;
    };
    auto const isThere = [&](char const* name) { return surroundings.IsMountPoint(name) || look(name); };
    char const* const name = entry.name.data();
    if (entry.name == kCompanionFolder) return look(name) && S_ISDIR(status.st_mode);
    char const* const whose = name + kCompanionPrefix.size();
    return *whose != '\0' && isThere(whose) && IsAppleDouble({here, name});
}

// What can be known of an item that leads onto another mount without asking that one.
OSErr FolderIterator::Turn::LookFromHere(Place place, Item& item) const {
    if (surroundings.IsMountPoint(place.path)) return volOffLinErr;
    return InspectListed(place, LinkRule::Itself, item);
}

OSErr FolderIterator::Turn::Next(FoundItem& found, Place& place, std::optional<SlowMount>& behind) {
    for (FolderEntry entry;;) {
        if (!MayGoOn(1)) return userCanceledErr;
        if (OSErr const failure = TakeEntry(entry); failure != noErr) return failure;
        if (IsCompanion(entry)) continue;
        place = {folder->Number(), entry.name.data()};
        if (surroundings.MayMeetMounts()) behind = surroundings.MountBehind(place, entry);
        OSErr const failure =
            behind ? LookFromHere(place, found.item) : InspectListed(place, LinkRule::Listed, found.item);
        if (failure == fnfErr) continue;
        if (failure != noErr) found.item = Item{};
        found.location = {iterator.location.path.Child(entry.name), LinkRule::Listed};
        return noErr;
    }
}

bool FolderIterator::Turn::HasChanged() {
    struct statx now;
    if (LookAtFolder(*folder, now) != 0) return true;
    auto const& then = iterator.firstTime ? *iterator.firstTime : iterator.firstTime.emplace(now.stx_mtime);
    return then.tv_sec != now.stx_mtime.tv_sec || then.tv_nsec != now.stx_mtime.tv_nsec;
}

// ---- The iterators of the process

FolderIterators& FolderIterators::Shared() {
    static FolderIterators& iterators = *new FolderIterators();
    return iterators;
}

FSIterator FolderIterators::Add(std::shared_ptr<FolderIterator> iterator) {
    std::lock_guard const lock(mutex);
    iterators.emplace_hint(iterators.end(), ++lastNumber, std::move(iterator));
    return reinterpret_cast<FSIterator>(lastNumber);
}

std::shared_ptr<FolderIterator> FolderIterators::Find(FSIterator number) const {
    QuickLock const lock(mutex);
    auto const found = iterators.find(reinterpret_cast<std::uintptr_t>(number));
    return found == iterators.end() ? nullptr : found->second;
}

// A walk opens folders from the top down, so it is among the last that were opened.
std::shared_ptr<FolderIterator> FolderIterators::NewestAbove(Path const& folder) const {
    constexpr int mostLooks = 16;
    int looks = 0;
    for (auto one = iterators.rbegin(); one != iterators.rend() && looks < mostLooks; ++one, ++looks) {
        if (folder.IsChildOf(one->second->Folder().path)) return one->second;
    }
    return nullptr;
}

bool FolderIterators::End(FSIterator number) {
    std::shared_ptr<FolderIterator> ended, above;
    {
        std::lock_guard const lock(mutex);
        auto const found = iterators.find(reinterpret_cast<std::uintptr_t>(number));
        if (found == iterators.end()) return false;
        ended = std::move(found->second);
        iterators.erase(found);
        above = NewestAbove(ended->Folder().path);
    }
    SharedDescriptor const folder = ended->GiveBack();
    if (!above || !folder || above->OnSlowMount() || above->HeldFolder()) return true;
    int const up = openat(folder->Number(), "..", kOpenFlags);
    if (up >= 0) above->GoOnWith(std::make_shared<Descriptor const>(up));
    return true;
}

}  // namespace Platform
