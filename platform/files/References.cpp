#include "files/References.h"

#include <sys/random.h>

#include <bit>

#include "foundation/Threads.h"

namespace Platform {

namespace {

// The bytes of a reference. The seal ties the numbers together with a secret of the process, so that bytes of
// another process, or of nobody, are not taken for a reference.
struct ReferenceBytes {
    Identity identity;
    std::uint64_t seal;
    unsigned char unused[sizeof(FSRef) - sizeof(Identity) - sizeof(std::uint64_t)];
};
static_assert(sizeof(ReferenceBytes) == sizeof(FSRef));

std::uint64_t Secret() {
    static std::uint64_t const secret = [] {
        std::uint64_t value = 0x9E3779B97F4A7C15;  // serves when the kernel has no random numbers yet
        [[maybe_unused]] ssize_t const got = getrandom(&value, sizeof value, GRND_NONBLOCK);
        return value;
    }();
    return secret;
}

std::uint64_t Mix(std::uint64_t state, std::uint64_t value) {
    state = (state ^ value) * 0xFF51AFD7ED558CCD;
    return state ^ (state >> 32);
}

std::uint64_t SealOf(Identity const& identity) {
    return Mix(Mix(Mix(Secret(), identity.serial), identity.device), identity.inode);
}

}  // namespace

Identity IdentityOf(Item const& item) { return {0, item.Device(), item.status.stx_ino}; }

ReferenceTable& ReferenceTable::Shared() {
    static ReferenceTable& table = *new ReferenceTable(1024);
    return table;
}

FSRef ReferenceTable::Remember(Location const& location, Item const& item) {
    ReferenceBytes bytes{IdentityOf(item), 0, {}};
    {
        QuickLock const lock(mutex);
        bytes.identity.serial = ++lastSerial;
        Place& place = places[lastSerial % places.size()];
        place.remembered.location = location;
        place.remembered.isFolder = item.IsFolder();
        place.serial = lastSerial;
    }
    bytes.seal = SealOf(bytes.identity);
    return std::bit_cast<FSRef>(bytes);
}

std::optional<Identity> ReferenceTable::IdentityIn(FSRef const& reference) {
    auto const bytes = std::bit_cast<ReferenceBytes>(reference);
    if (bytes.seal != SealOf(bytes.identity)) return std::nullopt;
    return bytes.identity;
}

std::optional<RememberedLocation> ReferenceTable::Find(FSRef const& reference) const {
    auto const identity = IdentityIn(reference);
    if (!identity) return std::nullopt;
    QuickLock const lock(mutex);
    Place const& place = places[identity->serial % places.size()];
    if (place.serial != identity->serial) return std::nullopt;
    return place.remembered;
}

FolderTable& FolderTable::Shared() {
    static FolderTable& table = *new FolderTable(1024);
    return table;
}

void FolderTable::Remember(FSVolumeRefNum volume, SInt32 number, Path const& path) {
    std::lock_guard const lock(mutex);
    Key const key(volume, number);
    if (auto const known = index.find(key); known != index.end()) {
        folders.splice(folders.begin(), folders, known->second);
        folders.front().path = path;
        return;
    }
    folders.push_front({key, path});
    index.emplace(key, folders.begin());
    if (folders.size() <= most) return;
    index.erase(folders.back().key);
    folders.pop_back();
}

std::optional<Path> FolderTable::Find(FSVolumeRefNum volume, SInt32 number) const {
    std::lock_guard const lock(mutex);
    auto const found = index.find(Key(volume, number));
    if (found == index.end()) return std::nullopt;
    return found->second->path;
}

}  // namespace Platform
