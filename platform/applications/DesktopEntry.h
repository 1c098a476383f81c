#pragma once

// Desktop entries, and the other files of their form: groups of keys with values. Pure; any bytes do.

#include <Carbon/Files.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// The value of a key in a group, as it is written; the first one that there is. Lent of the text, which may
/// begin with a byte order mark.
std::optional<std::string_view> ValueInGroup(std::string_view text, std::string_view group,
                                             std::string_view key);

/// What a written value stands for: \s is a blank, \n, \t, \r and \\ are what they are elsewhere, and any
/// other pair stands for itself.
std::string Unescaped(std::string_view value);

/// The elements of a written list, in which ';' ends each, and "\;" is no end. Empty ones are left out.
std::vector<std::string> ElementsOf(std::string_view value);

/// The program and its arguments of the value of Exec: words between blanks, of which those in double quotes
/// may hold blanks, and `\` before `"`, '`', `$` and `\`. Field codes, such as %f, are left out, and words
/// that are nothing else; %% is a percent sign. Empty where a quote is not closed.
std::vector<std::string> CommandOf(std::string_view exec);

/// What an entry says of its application.
struct DesktopEntry {
    std::string name;     // as it is not translated
    std::string exec;     // unescaped
    std::string tryExec;  // a program that must be there
    OSType creator = 0;   // the four bytes of X-Creator-Code; 0 where there are no four
    bool isApplication = false;
    bool isHidden = false;  // counts as if there was no such entry, not even a later one
};
DesktopEntry ParseDesktopEntry(std::string_view text);

}  // namespace Platform
