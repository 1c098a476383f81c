#pragma once

// Small text files that hold settings.

#include <Carbon/Files.h>

#include <memory>
#include <string>
#include <string_view>

#include "foundation/Path.h"

namespace Platform {

/// Gets the bytes of a file that need not be there: then, and when it cannot be read, the text is empty. A
/// failure to read a file that is there is noted for PlatformFileFailure. The result is noErr unless a wait
/// for a slow mount was given up. The files asked for last are kept, and read again when they have changed.
OSErr GetTextFile(std::string const& path, std::string& text);

/// Reads the file at a plain path; a result code, noted as above.
OSErr ReadTextFile(Path const& file, std::shared_ptr<std::string const>& text);

/// Takes the first line off a text: without its line end, and without the CR of one that has it.
std::string_view TakeLine(std::string_view& text);
/// The text without white space (blank, tab, CR) around it.
std::string_view Trimmed(std::string_view text);

}  // namespace Platform
