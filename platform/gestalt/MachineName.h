#pragma once

// The name of the machine, where an answer of 32 bits can point at it.

#include <Carbon/MacErrors.h>
#include <Carbon/MacTypes.h>

#include <string>
#include <string_view>

namespace Platform {

/// Gets the name of the machine's model; that of the host where the firmware tells none. As GetFact.
OSErr GetMachineName(std::string& name);

/// Gets the address of a Str255 with a text, cut to 255 bytes at the end of a UTF-8 character. The string is
/// in memory below 4 GiB, and stays as it is until fifteen other texts have been asked for. memFullErr when
/// there is no such memory. Safe from any thread.
OSErr GetLowString(std::string_view text, UInt32& address);

}  // namespace Platform
