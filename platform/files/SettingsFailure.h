#pragma once

// What PlatformSettingsFailure tells.

#include <string>

namespace Platform {

/// Remembers why a file of settings could not be used on this thread.
void NoteSettingsFailure(std::string const& file, std::string const& reason);
/// Makes PlatformSettingsFailure tell of none.
void ForgetSettingsFailure();

}  // namespace Platform
