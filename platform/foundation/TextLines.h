#pragma once

// Texts of lines, as files of settings are. Pure.

#include <string>
#include <string_view>

namespace Platform {

/// The text without the UTF-8 byte order mark that it may begin with.
std::string_view WithoutByteOrderMark(std::string_view text);
/// Takes the first line off a text: without its line end, which may be LF or CR LF.
std::string_view TakeLine(std::string_view& text);
/// The text without white space (blank, tab, CR) around it.
std::string_view Trimmed(std::string_view text);
/// The first line of a text, without white space around it.
std::string_view FirstLine(std::string_view text);

/// The value of a variable in a text of lines NAME=value, as GNUstep.conf is one: that of the last line with
/// it, without white space and quotes around it. Empty where there is none.
std::string VariableIn(std::string_view text, std::string_view name);

}  // namespace Platform
