#pragma once

// The settings that are stored in the preferences of "com.apple.internetconfig", in Carbon's own layout.

#include <CoreFoundation/CFBase.h>

#include <optional>
#include <string>
#include <string_view>

namespace Platform {

/// How the value of a key lies in memory, as Carbon/InternetConfig.h tells.
enum class SettingLayout { PascalString, Boolean, FileSpec, Font, Application, Bytes };
/// That of a key, whose case does not count; Bytes of one that is not known.
SettingLayout LayoutOf(std::string_view key);

/// What keys of helpers begin with, before the scheme; and whether a key does, in any case.
inline constexpr std::string_view kHelperKey = "Helper\xA5";
bool IsHelperKey(std::string_view key);

/// The path that the data of an alias record tell: its folder of the volume and the path there. Empty when
/// they are of another version, are cut off, or tell none.
std::string PathInAlias(std::string_view record);

/// Gets the value of a setting from its stored form, which is big-endian, and from which what lies behind the
/// layout is left out. A file that an alias leads to gets an FSSpec of its path. icPrefDataErr for bytes that
/// are fewer than the layout has.
OSErr NativeSetting(SettingLayout layout, std::string_view stored, std::string& value);

/// Gets the value of a key from the dictionary "Version 2.5.4", which may be null. icPrefNotFoundErr when it
/// has none; icPrefDataErr for one that is no bytes of the key's layout, or where a dictionary is wanted.
OSErr StoredSettingIn(CFTypeRef version, std::string_view key, std::string& value);
/// The same from the preferences as they are now. Also the code of a wait for one of their files that was
/// given up, and of a failure to read the user's file: icPrefDataErr for one that is no property list. It is
/// noted for PlatformSettingsFailure.
OSErr GetStoredSetting(std::string_view key, std::string& value);

}  // namespace Platform
