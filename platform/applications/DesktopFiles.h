#pragma once

// The files of desktop entries: $XDG_DATA_HOME/applications, and `applications` in each of $XDG_DATA_DIRS.
//
// An entry's id is its path below such a folder with '-' for '/'. Of several with one id the first counts,
// and if that one is hidden, none. Result codes are noErr unless a wait for a slow mount was given up.

#include <Carbon/Files.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "applications/DesktopEntry.h"

namespace Platform {

/// The folders, those that come first in front; they need not be there.
std::vector<std::string> FoldersOfDesktopFiles();

/// Gets the entry with an id; none where it is hidden, or not there.
OSErr FindDesktopEntry(std::string const& id, std::optional<DesktopEntry>& entry);

/// Calls `visit` with the entries that count, folder by folder and in each by their ids, until it answers
/// true or a result code other than noErr. Folders below a folder count eight deep, and a thousand of them.
OSErr VisitDesktopEntries(std::function<OSErr(DesktopEntry const& entry, bool& isEnough)> const& visit);

/// Gets the path of a program by its absolute path or, for a mere name, by PATH; empty where there is no such
/// file that may be run.
OSErr FindProgram(std::string const& name, std::string& path);
/// Gets the path of the program that an entry starts; empty where it is not there, where another program that
/// the entry wants to be there is not, and for an entry of something else than an application.
OSErr FindProgramOf(DesktopEntry const& entry, std::string& path);

}  // namespace Platform
