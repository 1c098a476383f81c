// The calls of Carbon/LaunchServices.h.

#include <Carbon/Folders.h>
#include <Carbon/LaunchServices.h>
#include <Carbon/MacErrors.h>
#include <dirent.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "applications/DesktopFiles.h"
#include "bundles/Bundle.h"
#include "bundles/BundleReading.h"
#include "files/FileState.h"
#include "files/FolderEntries.h"
#include "files/Lookup.h"
#include "files/SlowPaths.h"
#include "folders/SpecialFolders.h"
#include "foundation/Held.h"
#include "foundation/PathStyles.h"
#include "foundation/Url.h"

using namespace Platform;

namespace {

// What bundles have that tell of no creator; no application's code.
constexpr OSType kNobodysCode = PackageCode("????");

// ---- Bundles

// Those of applications in a folder, by their names.
OSErr ListBundles(std::string const& folder, std::vector<std::string>& paths) {
    OSErr const error = Reach(SlowMountBehind(folder, LinkRule::Follow), paths,
                              [folder](std::vector<std::string>& seen) -> OSErr {
                                  SystemPath const place{Path(folder)};
                                  if (place.Error() != 0) return noErr;
                                  ForEachEntry(place.Get(), [&](FolderEntry const& entry) {
                                      if (entry.name.ends_with(".app") && entry.type != DT_REG)
                                          seen.push_back(JoinPaths(folder, entry.name));
                                  });
                                  return noErr;
                              });
    std::sort(paths.begin(), paths.end());
    return error;
}

// The best bundle so far.
struct BestBundle {
    std::optional<Path> folder;
    UInt32 version = 0;

    // Takes the one at a path if it has the code and a higher version.
    OSErr Consider(std::string const& path, OSType creator) {
        BundleFolder found;
        std::optional<BundleParts> parts;
        OSErr error = FindBundleFolder(path, found);
        if (error == noErr) error = ReadBundleParts(found, parts);
        if (error != noErr || !parts) return WasGivenUp(error) ? error : OSErr{noErr};
        Held<__CFBundle> const bundle(new __CFBundle(std::move(*parts)));
        if (bundle->PackageCreator() != creator || (folder && bundle->Version() <= version)) return noErr;
        folder = found.path;
        version = bundle->Version();
        return noErr;
    }
};

OSErr FindBundle(OSType creator, std::optional<Path>& found) {
    BestBundle best;
    for (SInt16 const domain : {kUserDomain, kLocalDomain, kNetworkDomain, kSystemDomain}) {
        std::vector<std::string> folders;
        OSErr error = GetSpecialFolderPaths(PackageCode("apps"), domain, folders);
        for (std::string const& folder : folders) {
            std::vector<std::string> paths;
            if (error == noErr) error = ListBundles(folder, paths);
            for (std::string const& path : paths) {
                if (error == noErr) error = best.Consider(path, creator);
            }
        }
        if (error != noErr) return error;
    }
    found = best.folder;
    return noErr;
}

// ---- Desktop entries

OSErr FindEntry(OSType creator, std::optional<Path>& found) {
    return VisitDesktopEntries([&](DesktopEntry const& entry, bool& isEnough) -> OSErr {
        if (entry.creator != creator) return noErr;
        std::string path;
        if (OSErr const error = FindProgramOf(entry, path); error != noErr) return error;
        isEnough = !path.empty();
        if (isEnough) found = Path(path);
        return noErr;
    });
}

// ---- Answers

OSErr FindApplication(OSType creator, FoundItem& application) {
    std::optional<Path> path;
    OSErr error = FindBundle(creator, path);
    if (error == noErr && !path) error = FindEntry(creator, path);
    if (error != noErr || !path) return error != noErr ? error : OSErr{fnfErr};
    std::string const text = path->Text();
    return Reach(SlowMountBehind(text, LinkRule::Follow), application,
                 [text](FoundItem& result) { return FindItemOfText(text, LinkRule::Follow, result); });
}

}  // namespace

OSStatus LSGetApplicationForInfo(OSType type, OSType creator, CFStringRef extension, LSRolesMask,
                                 FSRef* outAppRef, CFURLRef* outAppURL) {
    return Guarded<OSStatus>(memFullErr, [&]() -> OSStatus {
        if (type == kLSUnknownType && creator == kLSUnknownCreator && extension == nullptr) return paramErr;
        if (creator == kLSUnknownCreator || creator == kNobodysCode) return kLSApplicationNotFoundErr;
        FoundItem application;
        OSErr const error = FindApplication(creator, application);
        if (error == fnfErr) return kLSApplicationNotFoundErr;
        if (error != noErr) return error;
        if (outAppURL != nullptr) *outAppURL = NewURL(application.location.path, application.item.IsFolder());
        if (outAppRef != nullptr) *outAppRef = MakeReference(application);
        return noErr;
    });
}
