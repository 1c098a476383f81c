#pragma once

// Facts of the machine as Gestalt answers with them.

#include <Carbon/MacErrors.h>
#include <Carbon/MacTypes.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// A number as 32 bits hold it: the largest one for a larger number.
UInt32 Saturated(UInt64 number);

/// Reads a fact of the machine, at most `most` bytes. gestaltUndefSelectorErr when there is none;
/// gestaltUnknownErr, with a note for PlatformSettingsFailure, when it may not be read.
OSErr GetFact(std::string_view path, std::string& text, std::size_t most);
/// The same for a fact of one line: without white space around it.
OSErr GetFactLine(std::string_view path, std::string& line);
/// Gets the names in a folder of facts, sorted bytewise: none where there is no such folder.
/// gestaltUnknownErr as above.
OSErr GetFactNames(std::string_view path, std::vector<std::string>& names);
/// Notes that a fact makes no sense, and why. Returns gestaltUnknownErr.
OSErr NoteSenseless(std::string_view path, std::string const& reason);

/// The value of the first line "NAME : value" of a text, as those of /proc are; empty where there is none.
std::string_view ValueOf(std::string_view name, std::string_view text);

}  // namespace Platform
