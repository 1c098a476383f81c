#include "files/OpenFolders.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "foundation/Threads.h"

namespace Platform {

OpenFolders& OpenFolders::Shared() {
    static OpenFolders& folders = *new OpenFolders(32);
    return folders;
}

void OpenFolders::Hold(FolderUser& user, Path const& path, SharedDescriptor descriptor) {
    Hold({&user, path, std::move(descriptor)});
}

void OpenFolders::Hold(Path const& path, SharedDescriptor descriptor) {
    Hold({nullptr, path, std::move(descriptor)});
}

void OpenFolders::Hold(Held held) {
    SharedDescriptor oldest;  // closed without the lock
    std::lock_guard const lock(mutex);
    folders.push_front(std::move(held));
    if (folders.size() <= most) return;
    oldest = std::move(folders.back().descriptor);
    if (folders.back().user != nullptr) folders.back().user->WillLetGo(*oldest);
    folders.pop_back();
}

template <class Condition>
SharedDescriptor OpenFolders::Use(Condition const& condition) {
    QuickLock const lock(mutex);
    auto const found = std::find_if(folders.begin(), folders.end(), condition);
    if (found == folders.end()) return nullptr;
    folders.splice(folders.begin(), folders, found);
    return found->descriptor;
}

void OpenFolders::LetGoOfUnread() {
    std::list<Held> unread;  // closed without the lock
    std::lock_guard const lock(mutex);
    for (auto held = folders.begin(); held != folders.end();) {
        auto const next = std::next(held);
        if (held->user == nullptr) unread.splice(unread.end(), folders, held);
        held = next;
    }
}

SharedDescriptor OpenFolders::At(Path const& path) {
    return Use([&](Held const& held) { return path.Is(held.path); });
}

SharedDescriptor OpenFolders::Of(FolderUser const& user) {
    return Use([&](Held const& held) { return held.user == &user; });
}

SharedDescriptor OpenFolders::FolderOf(Path const& item) {
    return Use([&](Held const& held) { return item.IsChildOf(held.path); });
}

SharedDescriptor OpenFolders::LetGo(FolderUser const& user) {
    std::lock_guard const lock(mutex);
    auto const found =
        std::find_if(folders.begin(), folders.end(), [&](Held const& held) { return held.user == &user; });
    if (found == folders.end()) return nullptr;
    SharedDescriptor const descriptor = std::move(found->descriptor);
    folders.erase(found);
    return descriptor;
}

}  // namespace Platform
