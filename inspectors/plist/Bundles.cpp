#include "plist/Bundles.h"

#include <string_view>

#include "Evaluator/Exceptions.h"
#include "Evaluator/PlatformStrings.h"
#include "filesystem/LookUps.h"
#include "plist/PlatformValues.h"

namespace {

// The parts of a packed number that both versions have.
MacVersion ReleaseOf(UInt32 number) {
    MacVersion version;
    version.major = static_cast<std::uint16_t>((number >> 28) * 10 + (number >> 24 & 0x0F));
    version.minor = number >> 20 & 0x0F;
    version.bugrev = number >> 16 & 0x0F;
    version.stage = 0;
    return version;
}

// The version that the text of a key stands for.
MacVersion VersionOfKey(CFBundleRef bundle, std::string_view name) {
    AutoCFString const key(MakeCFString({reinterpret_cast<unsigned char const*>(name.data()), name.size()},
                                        kCFStringEncodingMacRoman));
    CFTypeRef const value = CFBundleGetValueForInfoDictionaryKey(bundle, key);
    if (value == nullptr) throw NoSuchObject();
    return TextToVersion(MakeString(CFCast<CFStringRef>(value), kCFStringEncodingMacRoman));
}

// The codes of the package, which stay 0 when there are none.
struct PackageInfo {
    explicit PackageInfo(CFBundleRef bundle) { CFBundleGetPackageInfo(bundle, &type, &creator); }

    UInt32 type = 0;
    UInt32 creator = 0;
};

}  // namespace

Bundle bundle_of(folder const& object) {
    CFBundleRef const bundle = CFBundleCreate(kCFAllocatorDefault, object.url);
    if (bundle == nullptr) throw NoSuchObject();
    return Bundle(bundle);
}

Bundle bundle_named(unsigned char const* name, unsigned long length) {
    if (static_cast<long>(length) < 0) throw NoSuchObject();
    AutoCFString const identifier(MakeCFString({name, length}, kCFStringEncodingMacRoman));
    CFBundleRef const bundle = CFBundleGetBundleWithIdentifier(identifier);
    if (bundle == nullptr) throw NoSuchObject();
    CFRetain(bundle);
    return Bundle(bundle);
}

MacVersion version_of(Bundle const& bundle) {
    UInt32 const number = CFBundleGetVersionNumber(bundle.bundle);
    return number != 0 ? ReleaseOf(number) : VersionOfKey(bundle.bundle, "CFBundleShortVersionString");
}

MacVersion bundle_version_of(Bundle const& bundle) {
    UInt32 const number = CFBundleGetVersionNumber(bundle.bundle);
    if (number == 0) return VersionOfKey(bundle.bundle, "CFBundleVersion");
    MacVersion version = ReleaseOf(number);
    version.stage = static_cast<std::uint8_t>(number >> 8);
    version.nonrel = number & 0xFF;
    return version;
}

file_type type_of(Bundle const& bundle) { return {PackageInfo(bundle.bundle).type}; }
file_signature creator_of(Bundle const& bundle) { return {PackageInfo(bundle.bundle).creator}; }

OSXDictionary global_dictionary_of(Bundle const& bundle) {
    return Inspectors::OrNoSuchObject<CFBundleGetInfoDictionaryFailed>(
        [&] { return OSXDictionary(AutoCFDictionary(Duplicate(BundleGetInfoDictionary(bundle.bundle)))); });
}

OSXDictionary local_dictionary_of(Bundle const& bundle) {
    return Inspectors::OrNoSuchObject<CFBundleGetLocalInfoDictionaryFailed>([&] {
        return OSXDictionary(AutoCFDictionary(Duplicate(BundleGetLocalInfoDictionary(bundle.bundle))));
    });
}

CFDictionaryRef BundleGetInfoDictionary(CFBundleRef bundle) {
    if (CFDictionaryRef const dictionary = CFBundleGetInfoDictionary(bundle)) return dictionary;
    throw CFBundleGetInfoDictionaryFailed();
}

CFDictionaryRef BundleGetLocalInfoDictionary(CFBundleRef bundle) {
    if (CFDictionaryRef const dictionary = CFBundleGetLocalInfoDictionary(bundle)) return dictionary;
    throw CFBundleGetLocalInfoDictionaryFailed();
}
