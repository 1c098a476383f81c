#include "bundles/Bundle.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <optional>

#include "bundles/BundleReading.h"
#include "bundles/BundleVersion.h"
#include "foundation/Number.h"
#include "foundation/String.h"

using namespace Platform;

namespace {

// The low 32 bits of a number without its fraction.
UInt32 PackedNumber(CFNumberRef number) {
    if (!number->IsReal()) return static_cast<UInt32>(number->Whole());
    SInt64 whole = 0;
    CFNumberGetValue(number, kCFNumberSInt64Type, &whole);
    return static_cast<UInt32>(whole);
}

UInt32 VersionIn(CFDictionaryRef information) {
    CFTypeRef value = ValueOf(information, "CFBundleNumericVersion");
    if (value == nullptr) value = ValueOf(information, "CFBundleVersion");
    if (value == nullptr) return 0;
    CFTypeID const type = CFGetTypeID(value);
    if (type == CFNumberGetTypeID()) return PackedNumber(static_cast<CFNumberRef>(value));
    return type == CFStringGetTypeID() ? PackedVersion(static_cast<CFStringRef>(value)->Text()) : 0;
}

// The code of a text of four characters of Mac Roman.
std::optional<UInt32> CodeIn(CFDictionaryRef information, char const* key) {
    CFStringRef const text = StringOf(information, key);
    if (text == nullptr) return std::nullopt;
    UInt8 bytes[5];  // one more than there should be
    CFIndex const length = CFStringGetLength(text);
    CFIndex size = 0;
    CFIndex const taken = CFStringGetBytes(text, CFRangeMake(0, length), kCFStringEncodingMacRoman, 0, false,
                                           bytes, sizeof bytes, &size);
    if (taken != length || size != 4) return std::nullopt;
    return PackageCode(bytes);
}

UInt32 UsualTypeOf(std::string_view name) {
    for (char const* const end : {".app", ".debug", ".profile", ".service"}) {
        if (name.ends_with(end)) return PackageCode("APPL");
    }
    return PackageCode(name.ends_with(".framework") ? "FMWK" : "BNDL");
}

}  // namespace

// ---- Bundles

__CFBundle::__CFBundle(BundleParts ownParts)
    : parts(std::move(ownParts)), version(VersionIn(parts.information.get())) {}

__CFBundle::~__CFBundle() { Bundles::Shared().Remove(this); }

CFTypeID __CFBundle::TypeID() const { return CFBundleGetTypeID(); }

CFDictionaryRef __CFBundle::Local() {
    {
        std::lock_guard const lock(mutex);
        if (isLocalKnown) return local.get();
    }
    // It may take long: others that ask meanwhile read for themselves, and the first one's result counts.
    Held<__CFDictionary const> read;
    if (ReadLocalDictionary(parts, read) != noErr) return nullptr;
    std::lock_guard const lock(mutex);
    if (!isLocalKnown) local = std::move(read);
    isLocalKnown = true;
    return local.get();
}

UInt32 __CFBundle::PackageType() const {
    if (parts.codes.areKnown) return parts.codes.type;
    return CodeIn(Information(), "CFBundlePackageType").value_or(UsualTypeOf(parts.folder.path.Name()));
}

UInt32 __CFBundle::PackageCreator() const {
    if (parts.codes.areKnown) return parts.codes.creator;
    return CodeIn(Information(), "CFBundleSignature").value_or(PackageCode("????"));
}

// ---- The table

Bundles& Bundles::Shared() {
    static Bundles& bundles = *new Bundles;
    return bundles;
}

// Bundles that are about to end stay in the table until they have taken themselves off, and may be looked at.
CFBundleRef Bundles::FindRetained(BundleFolder const& folder) const {
    for (CFBundleRef const bundle : bundles) {
        if (bundle->Folder().IsSame(folder) && bundle->RetainUnlessEnding()) return bundle;
    }
    return nullptr;
}

CFBundleRef Bundles::Find(BundleFolder const& folder) {
    std::lock_guard const lock(mutex);
    return FindRetained(folder);
}

CFBundleRef Bundles::Add(Held<__CFBundle> bundle) {
    std::lock_guard const lock(mutex);
    CFBundleRef const former = FindRetained(bundle->Folder());
    if (former == nullptr) bundles.push_back(bundle.get());
    return former == nullptr ? bundle.release() : former;
}

void Bundles::Remove(CFBundleRef bundle) noexcept {
    std::lock_guard const lock(mutex);
    std::erase(bundles, bundle);
}

CFBundleRef Bundles::FindIdentified(CFStringRef identifier) {
    std::lock_guard const lock(mutex);
    CFBundleRef best = nullptr;
    for (CFBundleRef const bundle : bundles) {
        CFStringRef const own = StringOf(bundle->Information(), "CFBundleIdentifier");
        // Not retained, as giving a last reference back would have to wait for this very lock.
        if (own == nullptr || !own->EqualTo(*identifier) || bundle->Count() == 0) continue;
        if (best == nullptr || bundle->Version() >= best->Version()) best = bundle;
    }
    return best;
}
