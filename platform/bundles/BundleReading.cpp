#include "bundles/BundleReading.h"

#include <Carbon/MacErrors.h>
#include <CoreFoundation/CFPreferences.h>

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include "bundles/BundleLayout.h"
#include "bundles/Languages.h"
#include "files/FileState.h"
#include "files/WholeFile.h"
#include "foundation/PathStyles.h"
#include "foundation/String.h"
#include "foundation/TextCodec.h"
#include "foundation/Url.h"
#include "propertylists/PropertyLists.h"

namespace Platform {

namespace {

using Dictionary = Held<__CFDictionary const>;

Path PathBelow(Path const& folder, std::string const& below) {
    return below.empty() ? folder : Path(JoinPaths(folder.Text(), below));
}

// The dictionary that a file holds; null for a file that cannot be read or holds none.
OSErr ReadDictionary(Path const& file, Dictionary& dictionary) {
    OSErr error = noErr;
    Held<Object const> list(static_cast<Object const*>(ReadPropertyListFile(file, error)));
    if (list && list->TypeID() == CFDictionaryGetTypeID())
        dictionary.reset(static_cast<CFDictionaryRef>(list.release()));
    return WasGivenUp(error) ? error : OSErr{noErr};
}

OSErr ReadPackageCodes(Path const& file, PackageCodes& codes) {
    std::array<UInt8, 8> bytes;
    std::size_t actual = 0;
    Held<__CFURL const> const url(NewURL(file, false));
    OSErr const error = ReadFileBeginning(url.get(), bytes, actual);
    if (WasGivenUp(error)) return error;
    if (actual == bytes.size()) codes = {PackageCode(bytes.data()), PackageCode(bytes.data() + 4), true};
    return noErr;
}

OSErr ReadInformation(Path const& folder, BundleLayout const& layout, Dictionary& information) {
    if (!layout.information.empty()) {
        OSErr const error = ReadDictionary(PathBelow(folder, layout.information), information);
        if (error != noErr) return error;
    }
    if (!information) information.reset(NewDictionary({}));
    return noErr;
}

// Languages that are looked for at most, whatever the preferences and the environment say.
constexpr std::size_t kMostLanguages = 64;

void AddLanguage(CFStringRef language, std::vector<std::string>& languages) {
    auto text = FileNameOfText(language->Text());
    if (text) languages.push_back(std::move(*text));
}

void AddPreferredLanguages(std::string_view key, std::vector<std::string>& languages) {
    // Asked for as an application of that name, the global domain is all that there is.
    Held<__CFString const> const domain(NewAsciiString(".GlobalPreferences")), name(NewAsciiString(key));
    Held<Object const> const value(
        static_cast<Object const*>(CFPreferencesCopyAppValue(name.get(), domain.get())));
    if (!value || value->TypeID() != CFArrayGetTypeID()) return;
    for (CFTypeRef const element : static_cast<__CFArray const&>(*value).Elements()) {
        if (languages.size() == kMostLanguages) return;
        if (CFGetTypeID(element) == CFStringGetTypeID())
            AddLanguage(static_cast<CFStringRef>(element), languages);
    }
}

std::vector<std::string> LanguagesOfUser() {
    std::vector<std::string> languages;
    AddPreferredLanguages("AppleLanguages", languages);
    AddPreferredLanguages("NSLanguages", languages);
    for (char const* const variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
        char const* const locales = std::getenv(variable);
        for (std::string& language : LanguagesOfLocales(locales != nullptr ? locales : "")) {
            if (languages.size() < kMostLanguages) languages.push_back(std::move(language));
        }
    }
    return languages;
}

// The dictionary in a folder's InfoPlist.strings; null where there is no such file.
OSErr ReadStrings(Path const& folder, Dictionary& dictionary) {
    Path const file(JoinPaths(folder.Text(), "InfoPlist.strings"));
    SeenItem item;
    OSErr const error = SeeItem(file.Text(), item);
    if (WasGivenUp(error)) return error;
    return error == noErr ? ReadDictionary(file, dictionary) : OSErr{noErr};
}

}  // namespace

OSErr FindBundleFolder(std::string_view path, BundleFolder& folder) {
    SeenItem item;
    if (OSErr const error = SeeItem(path, item); error != noErr) return error;
    if (!item.state.isFolder) return dirNFErr;
    folder = {item.path, item.state.device, item.state.inode, item.state.born};
    return noErr;
}

OSErr ReadBundleParts(BundleFolder const& folder, std::optional<BundleParts>& parts) {
    auto const look = [&folder](std::string_view below, BundleMarks& marks) {
        return LookIntoFolderAt(PathBelow(folder.path, std::string(below)).Text(), marks);
    };
    std::optional<BundleLayout> layout;
    OSErr error = FindBundleLayout(folder.path.Name(), look, layout);
    if (error != noErr || !layout) return error;
    Dictionary information;
    PackageCodes codes;
    error = ReadInformation(folder.path, *layout, information);
    if (error == noErr && !layout->packageInfo.empty())
        error = ReadPackageCodes(PathBelow(folder.path, layout->packageInfo), codes);
    if (error != noErr) return error;
    parts = BundleParts{folder, PathBelow(folder.path, layout->resources), std::move(information), codes};
    return noErr;
}

OSErr ReadLocalDictionary(BundleParts const& parts, Dictionary& dictionary) {
    SeenItem resources;
    OSErr error = SeeItem(parts.resources.Text(), resources);
    if (error != noErr) return WasGivenUp(error) ? error : OSErr{noErr};
    error = ReadStrings(resources.path, dictionary);
    if (error != noErr || dictionary) return error;
    std::vector<std::string> languages = LanguagesOfUser();
    if (CFStringRef const made = StringOf(parts.information.get(), "CFBundleDevelopmentRegion");
        made != nullptr)
        AddLanguage(made, languages);
    languages.push_back("en");
    for (std::string const& name : FoldersOfLanguages(languages)) {
        error = ReadStrings(Path(JoinPaths(resources.path.Text(), name + ".lproj")), dictionary);
        if (error != noErr || dictionary) return error;
    }
    return noErr;
}

CFTypeRef ValueOf(CFDictionaryRef dictionary, std::string_view key) {
    return dictionary->Find(Held<__CFString const>(NewAsciiString(key)).get());
}

CFStringRef StringOf(CFDictionaryRef dictionary, std::string_view key) {
    CFTypeRef const value = ValueOf(dictionary, key);
    bool const isString = value != nullptr && CFGetTypeID(value) == CFStringGetTypeID();
    return isString ? static_cast<CFStringRef>(value) : nullptr;
}

}  // namespace Platform
