// The functions of bundles: the edge of the interface.

#include <Carbon/MacErrors.h>
#include <CoreFoundation/CFBundle.h>

#include <set>
#include <string>

#include "bundles/Bundle.h"
#include "bundles/BundleReading.h"
#include "bundles/LoadedImages.h"
#include "files/FileFailure.h"
#include "files/FileState.h"
#include "foundation/Url.h"

using namespace Platform;

namespace {

// The bundle of a folder, which is made unless it exists; null for a folder that is none. A result code.
OSErr GetBundle(std::string const& path, CFBundleRef& bundle) {
    BundleFolder folder;
    if (OSErr const error = FindBundleFolder(path, folder); error != noErr) return error;
    bundle = Bundles::Shared().Find(folder);
    if (bundle != nullptr) return noErr;
    std::optional<BundleParts> parts;
    OSErr const error = ReadBundleParts(folder, parts);
    if (parts) bundle = Bundles::Shared().Add(Held<__CFBundle>(new __CFBundle(std::move(*parts))));
    return error;
}

// The bundles that the program and its libraries lie in. They are kept for good.
class ImageBundles {
  public:
    static ImageBundles& Shared() {
        static ImageBundles& images = *new ImageBundles;
        return images;
    }

    void MakeNew() {
        for (std::string const& path : PathsOfImages()) {
            if (!IsKnown(path)) Make(path);
        }
    }

  private:
    bool IsKnown(std::string const& path) {
        std::lock_guard const lock(mutex);
        return known.contains(path);
    }

    void Make(std::string const& path) {
        CFBundleRef bundle = nullptr;
        auto const folder = BundleFolderOfImage(path);
        OSErr const error = folder ? GetBundle(*folder, bundle) : OSErr{noErr};
        Held<__CFBundle> made(bundle);
        if (WasGivenUp(error)) return;
        std::lock_guard const lock(mutex);
        if (known.insert(path).second && made) kept.push_back(std::move(made));
    }

    std::mutex mutex;
    std::set<std::string> known;  // paths of programs and libraries
    std::vector<Held<__CFBundle>> kept;
};

}  // namespace

CFTypeID CFBundleGetTypeID() {
    static CFTypeID const id = NewTypeID();
    return id;
}

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef bundleURL) {
    return Guarded<CFBundleRef>(nullptr, [&] {
        CFBundleRef bundle = nullptr;
        Path const path = bundleURL->ResolvedPath();
        NoteFileFailure(GetBundle(path.Text(), bundle), path);
        return bundle;
    });
}

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef bundleID) {
    return Guarded<CFBundleRef>(nullptr, [&] {
        ImageBundles::Shared().MakeNew();
        return Bundles::Shared().FindIdentified(bundleID);
    });
}

CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef bundle) { return bundle->Information(); }

CFDictionaryRef CFBundleGetLocalInfoDictionary(CFBundleRef bundle) {
    return Guarded<CFDictionaryRef>(nullptr, [&] { return bundle->Local(); });
}

CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key) {
    CFDictionaryRef const local = CFBundleGetLocalInfoDictionary(bundle);
    CFTypeRef const value = local != nullptr ? local->Find(key) : nullptr;
    return value != nullptr ? value : bundle->Information()->Find(key);
}

UInt32 CFBundleGetVersionNumber(CFBundleRef bundle) { return bundle->Version(); }

void CFBundleGetPackageInfo(CFBundleRef bundle, UInt32* packageType, UInt32* packageCreator) {
    if (packageType != nullptr) *packageType = bundle->PackageType();
    if (packageCreator != nullptr) *packageCreator = bundle->PackageCreator();
}
