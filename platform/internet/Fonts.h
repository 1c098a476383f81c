#pragma once

// The fonts of this machine, as fontconfig chooses them.

#include <CoreFoundation/CFBase.h>

#include <string>

namespace Platform {

/// A font that was chosen.
struct ChosenFont {
    std::string name;  // of the family, in UTF-8
    SInt16 size = 0;   // in points
    UInt8 face = 0;    // 1 bold, 2 italic
};

/// Gets the font that stands for a family such as "monospace". The library is opened when it is first asked.
/// Its caches are read and never written: a folder of fonts that they do not know is looked through each
/// time. Fonts on mounts whose servers may not answer do not count. The result is icPrefNotFoundErr where
/// there is no such library, configuration or font; userCanceledErr when the check-in function says stop; and
/// the code of a wait for the user's settings that was given up.
OSErr GetFont(char const* family, ChosenFont& font);

}  // namespace Platform
