#pragma once

// Texts of lines, as files of settings are. Pure.

#include <string_view>

namespace Platform {

/// Takes the first line off a text: without its line end, which may be LF or CR LF.
std::string_view TakeLine(std::string_view& text);
/// The text without white space (blank, tab, CR) around it.
std::string_view Trimmed(std::string_view text);

}  // namespace Platform
