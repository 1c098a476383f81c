#include "components/ComponentBundles.h"

#include <Carbon/Folders.h>
#include <CoreFoundation/CFNumber.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <set>
#include <utility>

#include "bundles/Bundle.h"
#include "bundles/BundleReading.h"
#include "files/Errors.h"
#include "files/FileFailure.h"
#include "files/FileState.h"
#include "files/FolderEntries.h"
#include "files/SlowPaths.h"
#include "folders/SpecialFolders.h"
#include "foundation/Containers.h"
#include "foundation/PathStyles.h"
#include "foundation/String.h"

namespace Platform {

namespace {

constexpr std::string_view kEnd = ".component";
constexpr OSType kComponentFolder = 0x636D7064;  // 'cmpd'

// What cannot be read is passed over, and noted where it is there. Of a mount that does not answer the
// patient call has noted as much.
OSErr UnlessStopped(OSErr error, std::string const& path) {
    if (error == userCanceledErr) return error;
    if (error != fnfErr && error != dirNFErr && !WasGivenUp(error)) NoteFileFailure(error, Path(path));
    return noErr;
}

// ---- An information dictionary

std::optional<OSType> CodeOf(CFDictionaryRef entry, std::string_view key) {
    CFStringRef const text = StringOf(entry, key);
    if (text == nullptr || text->Length() != 4) return std::nullopt;
    UInt8 bytes[4];
    CFIndex used = 0;
    constexpr UInt8 noLoss = 0;
    CFIndex const converted =
        CFStringGetBytes(text, {0, 4}, kCFStringEncodingMacRoman, noLoss, 0, bytes, sizeof bytes, &used);
    if (converted != 4 || used != 4) return std::nullopt;
    return PackageCode(bytes);
}

// The text of a key, cut to what a length byte can tell.
std::string TextOf(CFDictionaryRef entry, std::string_view key) {
    CFStringRef const text = StringOf(entry, key);
    if (text == nullptr) return {};
    UInt8 bytes[255];
    CFIndex used = 0;
    CFStringGetBytes(text, {0, static_cast<CFIndex>(text->Length())}, kCFStringEncodingUTF8, '?', 0, bytes,
                     sizeof bytes, &used);
    return {reinterpret_cast<char const*>(bytes), static_cast<std::size_t>(used)};
}

UInt32 VersionOf(CFDictionaryRef entry) {
    CFTypeRef const value = ValueOf(entry, "version");
    SInt64 number = 0;
    bool const isNumber = value != nullptr && CFGetTypeID(value) == CFNumberGetTypeID() &&
                          CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberSInt64Type, &number);
    bool const fits =
        number >= std::numeric_limits<SInt32>::min() && number <= std::numeric_limits<UInt32>::max();
    return isNumber && fits ? static_cast<UInt32>(number) : 0;
}

std::optional<NamedComponent> ComponentOf(CFTypeRef value) {
    if (CFGetTypeID(value) != CFDictionaryGetTypeID()) return std::nullopt;
    auto const entry = static_cast<CFDictionaryRef>(value);
    auto const type = CodeOf(entry, "type"), subtype = CodeOf(entry, "subtype"),
               maker = CodeOf(entry, "manufacturer");
    if (!type || !subtype || !maker) return std::nullopt;
    return NamedComponent{{},
                          {*type, *subtype, *maker, 0, 0},
                          TextOf(entry, "name"),
                          TextOf(entry, "description"),
                          VersionOf(entry)};
}

// ---- Bundles

// Walks through the folders.
class Listing {
  public:
    explicit Listing(std::vector<NamedComponent>& found) : components(found) {}

    OSErr AddDomain(SInt16 domain) {
        std::vector<std::string> paths;
        OSErr error = GetSpecialFolderPaths(kComponentFolder, domain, paths);
        for (std::string const& path : paths) {
            if (error == noErr) error = AddFolder(path);
        }
        return error;
    }

  private:
    OSErr AddFolder(std::string const& path) {
        BundleFolder folder;
        OSErr error = FindBundleFolder(path, folder);
        // A folder that stands in the table twice counts once.
        if (error != noErr || !seen.insert({folder.device, folder.inode}).second)
            return UnlessStopped(error, path);
        std::vector<std::string> names;
        error = ListBundles(path, names);
        for (std::string const& name : names) {
            if (error == noErr) error = AddBundle(JoinPaths(path, name));
        }
        return error;
    }

    static OSErr ListBundles(std::string const& path, std::vector<std::string>& names) {
        OSErr const error = Reach(SlowMountBehind(path, LinkRule::Follow), names,
                                  [path](std::vector<std::string>& found) -> OSErr {
                                      SystemPath const place{Path(path)};
                                      if (place.Error() != 0) return ErrorOfErrno(place.Error());
                                      auto const visit = [&found](FolderEntry const& entry) {
                                          if (entry.name.ends_with(kEnd)) found.emplace_back(entry.name);
                                      };
                                      return ErrorOfErrno(ForEachEntry(place.Get(), visit));
                                  });
        std::ranges::sort(names);
        return UnlessStopped(error, path);
    }

    OSErr AddBundle(std::string const& path) {
        BundleFolder folder;  // whose look-up asks whether to go on
        std::optional<BundleParts> parts;
        OSErr error = FindBundleFolder(path, folder);
        if (error == noErr) error = ReadBundleParts(folder, parts);
        if (!parts) return UnlessStopped(error, path);
        CFTypeRef const list = ValueOf(parts->information.get(), "AudioComponents");
        if (list == nullptr || CFGetTypeID(list) != CFArrayGetTypeID()) return noErr;
        std::size_t index = 0;
        for (CFTypeRef const entry : static_cast<CFArrayRef>(list)->Elements()) {
            if (auto component = ComponentOf(entry)) {
                ComponentDescription const& is = component->description;
                component->place = {path, index, is.componentType, is.componentSubType,
                                    is.componentManufacturer};
                components.push_back(std::move(*component));
            }
            ++index;
        }
        return noErr;
    }

    std::vector<NamedComponent>& components;
    std::set<std::pair<std::uint64_t, std::uint64_t>> seen;
};

}  // namespace

OSErr ListComponents(std::vector<NamedComponent>& components) {
    Listing listing(components);
    OSErr error = noErr;
    for (SInt16 const domain : {kUserDomain, kLocalDomain, kNetworkDomain, kSystemDomain}) {
        if (error == noErr) error = listing.AddDomain(domain);
    }
    return error;
}

}  // namespace Platform
