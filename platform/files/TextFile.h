#pragma once

// Small text files that hold settings.

#include <Carbon/Files.h>

#include <memory>
#include <string>

#include "foundation/Path.h"

namespace Platform {

/// The largest file of settings that is read; of a larger one nothing is.
inline constexpr SInt64 kMostOfTextFile = SInt64{4} << 20;

/// Gets the bytes of a file that need not be there: then, and when it cannot be read, the text is empty. A
/// failure to read a file that is there, such as fileBoundsErr for one that is too large, is noted for
/// PlatformFileFailure. The result is noErr unless a wait for a slow mount was given up. The files asked for
/// last are kept, and read again when they have changed.
OSErr GetTextFile(std::string const& path, std::string& text);

/// The same for a file that counts, so that nothing may be answered without it: a failure to read one that is
/// there is the result, and noted for PlatformSettingsFailure.
OSErr GetSettingsFile(std::string const& path, std::string& text);

/// Reads the file at a plain path; a result code, noted as above.
OSErr ReadTextFile(Path const& file, std::shared_ptr<std::string const>& text);
/// The same for a text that may be as long as any file that is read as a whole.
OSErr ReadLongTextFile(Path const& file, std::shared_ptr<std::string const>& text);

}  // namespace Platform
