#include "files/OpenFolders.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "foundation/Threads.h"

namespace Platform {

Descriptor::~Descriptor() { close(number); }

OpenFolders& OpenFolders::Shared() {
    static OpenFolders& folders = *new OpenFolders(32);
    return folders;
}

void OpenFolders::Hold(FolderUser& user, Path const& path, SharedDescriptor descriptor) {
    SharedDescriptor oldest;  // closed without the lock
    std::lock_guard const lock(mutex);
    folders.push_front({&user, path, std::move(descriptor)});
    if (folders.size() <= most) return;
    oldest = std::move(folders.back().descriptor);
    folders.back().user->WillLetGo(*oldest);
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
