#include "internet/StoredSettings.h"

#include <Carbon/InternetConfig.h>
#include <Carbon/MacErrors.h>
#include <CoreFoundation/CFData.h>
#include <Platform/Items.h>

#include <algorithm>
#include <climits>
#include <cstring>

#include "files/FileFailure.h"
#include "files/FileSpecs.h"
#include "files/SettingsFailure.h"
#include "foundation/AsciiCase.h"
#include "foundation/Containers.h"
#include "foundation/Data.h"
#include "foundation/Held.h"
#include "foundation/MacRoman.h"
#include "foundation/PathStyles.h"
#include "foundation/String.h"
#include "internet/Records.h"
#include "preferences/Preferences.h"

namespace Platform {

namespace {

struct KnownKey {
    std::string_view key;
    SettingLayout layout;
};

constexpr KnownKey kKeys[] = {
    {"DownloadFolder", SettingLayout::FileSpec},
    {"FTPProxyHost", SettingLayout::PascalString},
    {"FingerHost", SettingLayout::PascalString},
    {"Email", SettingLayout::PascalString},
    {"HTTPProxyHost", SettingLayout::PascalString},
    {"ListFont", SettingLayout::Font},
    {"MailAccount", SettingLayout::PascalString},
    {"NNTPHost", SettingLayout::PascalString},
    {"NTPHost", SettingLayout::PascalString},
    {"Organization", SettingLayout::PascalString},
    {"PhHost", SettingLayout::PascalString},
    {"PrinterFont", SettingLayout::Font},
    {"RealName", SettingLayout::PascalString},
    {"SMTPHost", SettingLayout::PascalString},
    {"ScreenFont", SettingLayout::Font},
    {"SocksHost", SettingLayout::PascalString},
    {"UseFTPProxy", SettingLayout::Boolean},
    {"UseHTTPProxy", SettingLayout::Boolean},
    {"UseSocks", SettingLayout::Boolean},
    {"WWWHomePage", SettingLayout::PascalString},
    {"WhoisHost", SettingLayout::PascalString},
};

// ---- Big-endian numbers

UInt32 NumberAt(std::string_view bytes, std::size_t offset, std::size_t size) {
    UInt32 number = 0;
    for (char const byte : bytes.substr(offset, size))
        number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

// The number that a field of the type T has.
template <class T>
T FieldAt(std::string_view bytes, std::size_t offset) {
    return static_cast<T>(NumberAt(bytes, offset, sizeof(T)));
}

// ---- Alias records

constexpr std::size_t kAliasFixed = 150;  // bytes before the tagged parts
constexpr std::size_t kAliasHeader = 6;   // user type and size
constexpr UInt32 kAliasVersion = 2;
constexpr UInt32 kTagPath = 18, kTagMountPoint = 19, kTagEnd = 0xFFFF;

// ---- The records

// A Pascal string of at most so many characters; empty when there are fewer bytes than it says.
std::optional<std::string_view> PascalString(std::string_view bytes, std::size_t most = 255) {
    if (bytes.empty()) return std::nullopt;
    std::size_t const length = static_cast<unsigned char>(bytes.front());
    if (length > most || bytes.size() <= length) return std::nullopt;
    return bytes.substr(0, 1 + length);
}

// Copies the bytes of a field as they are.
template <std::size_t room>
void CopyField(std::string_view from, unsigned char (&to)[room]) {
    std::memcpy(to, from.data(), room);
}

OSErr NativeFileSpec(std::string_view stored, std::string& value) {
    constexpr std::size_t fss = 36, alias = 106;  // offsets
    constexpr std::size_t name = 6;               // in the FSSpec
    ICFileSpec spec{};
    if (stored.size() < sizeof spec) return icPrefDataErr;
    CopyField(stored, spec.volName);
    spec.volCreationDate = FieldAt<SInt32>(stored, sizeof spec.volName);
    std::string const path = PathInAlias(stored.substr(alias));
    if (!path.empty()) {
        spec.fss = MakeSpecOfPlace(path);
    } else {
        if (!PascalString(stored.substr(fss + name), sizeof(Str63) - 1)) return icPrefDataErr;
        spec.fss.vRefNum = FieldAt<SInt16>(stored, fss);
        spec.fss.parID = FieldAt<SInt32>(stored, fss + 2);
        CopyField(stored.substr(fss + name), spec.fss.name);
    }
    value = BytesOf(spec);
    return noErr;
}

OSErr NativeFont(std::string_view stored, std::string& value) {
    ICFontRecord font{};
    if (stored.size() < sizeof font) return icPrefDataErr;
    font.size = FieldAt<SInt16>(stored, 0);
    font.face = FieldAt<UInt8>(stored, 2);
    CopyField(stored.substr(4), font.font);
    value = BytesOf(font);
    return noErr;
}

OSErr NativeApplication(std::string_view stored, std::string& value) {
    ICAppSpec application{};
    if (stored.size() < sizeof application || !PascalString(stored.substr(4), sizeof(Str63) - 1))
        return icPrefDataErr;
    application.fCreator = FieldAt<OSType>(stored, 0);
    CopyField(stored.substr(4), application.name);
    value = BytesOf(application);
    return noErr;
}

// ---- The preferences

// Null for an object of another type.
__CFDictionary const* DictionaryIn(CFTypeRef object) {
    auto const* const any = static_cast<Object const*>(object);
    bool const isOne = any != nullptr && any->TypeID() == CFDictionaryGetTypeID();
    return isOne ? static_cast<__CFDictionary const*>(any) : nullptr;
}

CFTypeRef ValueOf(__CFDictionary const& dictionary, std::string_view asciiKey) {
    Held<__CFString const> const key(NewAsciiString(asciiKey));
    return dictionary.Find(key.get());
}

// Whether a text is a key in Mac Roman.
bool IsKey(__CFString const& text, std::string_view key) {
    std::u16string const units = text.Text();
    return std::equal(units.begin(), units.end(), key.begin(), key.end(), [](char16_t unit, char byte) {
        auto const other = ToMacRoman(unit);
        return other && LowerCase(static_cast<char>(*other)) == LowerCase(byte);
    });
}

constexpr char const* kStoredSettings = "com.apple.internetconfig";

bool HoldsStoredSettings(std::string_view file) { return LastComponent(file).starts_with(kStoredSettings); }

// The failure to read the file of the stored settings, if there is one that cannot be read. It is noted.
OSErr FailureOfStoredSettings() {
    char file[PATH_MAX + 1], reason[500];
    OSErr const error = PlatformFileFailure(file, sizeof file);
    bool const isMissing = error == noErr || error == fnfErr || error == dirNFErr;
    if (!isMissing && HoldsStoredSettings(file)) return NoteUnreadableSettings(file, error);
    bool const isList = !PlatformPropertyListFailure(file, sizeof file, reason, sizeof reason);
    if (isList || !HoldsStoredSettings(file)) return noErr;
    NoteSettingsFailure(file, std::string("it is no property list: ") + reason);
    return icPrefDataErr;
}

}  // namespace

SettingLayout LayoutOf(std::string_view key) {
    if (IsHelperKey(key)) return SettingLayout::Application;
    for (KnownKey const& known : kKeys) {
        if (EqualIgnoringCase(key, known.key)) return known.layout;
    }
    return SettingLayout::Bytes;
}

bool IsHelperKey(std::string_view key) {
    return EqualIgnoringCase(key.substr(0, kHelperKey.size()), kHelperKey);
}

std::string PathInAlias(std::string_view record) {
    if (record.size() < kAliasHeader) return {};
    record = record.substr(0, NumberAt(record, 4, 2));
    if (record.size() < kAliasFixed || NumberAt(record, 6, 2) != kAliasVersion) return {};
    std::string_view path, mountPoint;
    for (record.remove_prefix(kAliasFixed); record.size() >= 4;) {
        UInt32 const tag = NumberAt(record, 0, 2), length = NumberAt(record, 2, 2);
        record.remove_prefix(4);
        if (tag == kTagEnd || length > record.size()) break;
        if (tag == kTagPath) path = record.substr(0, length);
        if (tag == kTagMountPoint) mountPoint = record.substr(0, length);
        record.remove_prefix(std::min<std::size_t>(length + length % 2, record.size()));
    }
    auto const hasNul = [](std::string_view text) { return text.find('\0') != text.npos; };
    if (path.empty() || hasNul(path) || !mountPoint.starts_with('/') || hasNul(mountPoint)) return {};
    path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
    return path.empty() ? std::string(mountPoint) : JoinPaths(mountPoint, path);
}

OSErr NativeSetting(SettingLayout layout, std::string_view stored, std::string& value) {
    switch (layout) {
        case SettingLayout::PascalString: {
            auto const text = PascalString(stored);
            if (text) value = *text;
            return text ? OSErr{noErr} : OSErr{icPrefDataErr};
        }
        case SettingLayout::Boolean:
            value = stored.substr(0, 1);
            return value.empty() ? OSErr{icPrefDataErr} : OSErr{noErr};
        case SettingLayout::FileSpec:
            return NativeFileSpec(stored, value);
        case SettingLayout::Font:
            return NativeFont(stored, value);
        case SettingLayout::Application:
            return NativeApplication(stored, value);
        case SettingLayout::Bytes:
            break;
    }
    value = stored;
    return noErr;
}

OSErr StoredSettingIn(CFTypeRef version, std::string_view key, std::string& value) {
    if (version == nullptr) return icPrefNotFoundErr;
    auto const* const root = DictionaryIn(version);
    if (root == nullptr) return icPrefDataErr;
    CFTypeRef const added = ValueOf(*root, "ic-added");
    if (added == nullptr) return icPrefNotFoundErr;
    auto const* const settings = DictionaryIn(added);
    if (settings == nullptr) return icPrefDataErr;
    for (auto const& entry : settings->Entries()) {
        if (!IsKey(*entry.key, key)) continue;
        auto const* const setting = DictionaryIn(entry.value);
        auto const* const data =
            setting != nullptr ? static_cast<Object const*>(ValueOf(*setting, "ic-data")) : nullptr;
        if (data == nullptr || data->TypeID() != CFDataGetTypeID()) return icPrefDataErr;
        auto const bytes = static_cast<__CFData const*>(data)->Bytes();
        return NativeSetting(LayoutOf(key), {reinterpret_cast<char const*>(bytes.data()), bytes.size()},
                             value);
    }
    return icPrefNotFoundErr;
}

OSErr GetStoredSetting(std::string_view key, std::string& value) {
    Held<__CFString const> const name(NewAsciiString("Version 2.5.4"));
    Held<Object const> version;
    ForgetFileFailure();  // what was noted before says nothing of this
    OSErr error = CopyPreference(name.get(), kStoredSettings, version);
    if (error == noErr && version.get() == nullptr) error = FailureOfStoredSettings();
    return error == noErr ? StoredSettingIn(version.get(), key, value) : error;
}

}  // namespace Platform
