#include "system/SpecialFolders.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "filesystem/Folder.h"
#include "filesystem/LookUps.h"

using MacintoshPlatform::FileItem;
using MacintoshPlatform::FileLocation;

namespace {

constexpr OSType kFrameworks = 0x6672616D;

std::array<SpecialFolderDomainCacheEntry, 10> cache;
std::size_t used = 0;
std::size_t next = 0;

SpecialFolderDomainCacheEntry const* FindEntry(OSType type, SInt16 domainCode) {
    auto const end = cache.begin() + static_cast<std::ptrdiff_t>(used);
    auto const entry = std::find_if(cache.begin(), end, [&](SpecialFolderDomainCacheEntry const& known) {
        return known.domainCode == domainCode && known.type == type;
    });
    return entry == end ? nullptr : &*entry;
}

}  // namespace

void SpecialFolderDomainCacheEntry::LookupFolder(FileLocation const& location) {
    found = folder(FileItem(location));
    Inspectors::AsFolder(found);
}

folder SpecialFolder(OSType type, SInt16 domainCode) {
    if (auto const* const known = FindEntry(type, domainCode)) return known->found;
    SpecialFolderDomainCacheEntry entry{{}, domainCode, type};
    Inspectors::OrNoSuchObject<MacintoshPlatform::CannotCreateSpecialFolder, FileNotFoundError>([&] {
        entry.LookupFolder(MacintoshPlatform::MakeFileLocation(type, domainCode, false));
        return true;
    });
    cache[next] = entry;
    next = (next + 1) % cache.size();
    used = std::min(used + 1, cache.size());
    return entry.found;
}

folder framework_folder_of_domain(unsigned char const* name, unsigned long length, domain const& object) {
    std::string const framework = std::string(Inspectors::TextOf(name, length)) + ".framework";
    return folder_of(reinterpret_cast<unsigned char const*>(framework.data()), framework.size(),
                     special_folder_of_domain<kFrameworks>(object));
}

folder framework_folder(unsigned char const* name, unsigned long length) {
    return framework_folder_of_domain(name, length, domain{kSystemDomain});
}

void ClearSpecialFolderCaches(void*) { used = next = 0; }
