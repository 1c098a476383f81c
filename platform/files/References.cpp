#include "files/References.h"

#include <sys/random.h>

#include <algorithm>
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

std::uint64_t SealOf(Identity const& identity) {
    std::uint64_t const mixed = Secret() ^ identity.serial * 0xFF51AFD7ED558CCD ^
                                identity.device * 0xC4CEB9FE1A85EC53 ^ identity.inode * 0x9E3779B97F4A7C15;
    return (mixed ^ mixed >> 32) * 0xD6E8FEB86659FD93;
}

}  // namespace

Identity IdentityOf(Item const& item) { return {0, item.Device(), item.status.stx_ino}; }

ReferenceTable& ReferenceTable::Shared() {
    static ReferenceTable& table = *new ReferenceTable(1024);
    return table;
}

std::uint64_t ReferenceTable::BeginRow() {
    QuickLock const lock(mutex);
    rows.emplace_back();
    return firstRow + rows.size() - 1;
}

// Also forgets the oldest rows.
void ReferenceTable::EndRow(std::uint64_t number, std::vector<RememberedLocation> locations) noexcept {
    QuickLock const lock(mutex);
    if (number < firstRow) return;
    count += locations.size();
    rows[number - firstRow] = std::move(locations);
    while (rows.size() > 1 && count - rows.front().size() >= least) {
        count -= rows.front().size();
        rows.pop_front();
        ++firstRow;
    }
}

ReferenceTable::Row::Row(ReferenceTable& owner, std::size_t most) : table(owner), number(owner.BeginRow()) {
    locations.reserve(std::min(most, kMost));
}

ReferenceTable::Row::~Row() { table.EndRow(number, std::move(locations)); }

FSRef ReferenceTable::Row::Add(Location const& location, Item const& item) {
    ReferenceBytes bytes{IdentityOf(item), 0, {}};
    bytes.identity.serial = number * kMost + locations.size();
    bytes.seal = SealOf(bytes.identity);
    locations.push_back({location, item.IsFolder()});
    return std::bit_cast<FSRef>(bytes);
}

FSRef ReferenceTable::Remember(Location const& location, Item const& item) {
    return Row(*this, 1).Add(location, item);
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
    std::uint64_t const row = identity->serial / Row::kMost;
    std::size_t const place = identity->serial % Row::kMost;
    if (row < firstRow || row - firstRow >= rows.size()) return std::nullopt;
    auto const& locations = rows[row - firstRow];
    return place < locations.size() ? std::optional(locations[place]) : std::nullopt;
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
