#pragma once

// The settings of Internet Config where Linux keeps them.

#include <CoreFoundation/CFBase.h>

#include <string>
#include <string_view>

namespace Platform {

/// Gets the value of a key, without regard to its case, as it lies in memory; Carbon/InternetConfig.h tells
/// where it comes from. icPrefNotFoundErr when there is none; the code of a wait that was given up, and
/// of a failure to read a file that counts, which is noted for PlatformSettingsFailure.
OSErr GetUserSetting(std::string_view key, std::string& value);

}  // namespace Platform
