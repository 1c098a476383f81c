#pragma once

// What PlatformSettingsFailure tells.

#include <CoreFoundation/CFBase.h>

#include <string>

namespace Platform {

/// Remembers why a file of settings could not be used on this thread.
void NoteSettingsFailure(std::string const& file, std::string const& reason);
/// Remembers why something that is no file could not be used: the reason says what it is.
void NoteFailure(std::string const& reason);
/// Remembers that a file of settings that is there could not be read. Returns the code that tells why.
OSErr NoteUnreadableSettings(std::string const& file, OSErr error);
/// Makes PlatformSettingsFailure tell of none.
void ForgetSettingsFailure();

}  // namespace Platform
