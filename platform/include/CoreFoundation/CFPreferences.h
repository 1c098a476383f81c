#pragma once

// Preferences: what users, and administrators for all of them, have set for applications.
//
// They are property lists with a dictionary at the root, one file for each application and domain; a file
// that is no such list counts as empty. <app> is the application's identifier, such as org.example.editor,
// <id> the machine's from /etc/machine-id. The domains in the order in which they are searched:
//
//   user, application, this machine   ~/Library/Preferences/ByHost/<app>.<id>.plist
//   user, application                 $XDG_CONFIG_HOME/<app>.plist (~/.config/<app>.plist)
//                                     ~/Library/Preferences/<app>.plist
//                                     ~/GNUstep/Defaults/<app>.plist
//   user, this machine                ~/Library/Preferences/ByHost/.GlobalPreferences.<id>.plist
//   user                              $XDG_CONFIG_HOME/.GlobalPreferences.plist
//                                     ~/Library/Preferences/.GlobalPreferences.plist
//                                     ~/GNUstep/Defaults/NSGlobalDomain.plist
//   all users, application            <app>.plist in each folder of $XDG_CONFIG_DIRS (/etc/xdg)
//   all users                         .GlobalPreferences.plist in each of them
//
// A user's home is $HOME, or what the user database says. ~/GNUstep/Defaults is the place of GNUstep's
// defaults unless GNUSTEP_USER_DEFAULTS_DIR in /etc/GNUstep/GNUstep.conf names another.

#include <CoreFoundation/CFPropertyList.h>

/// The value of a key for an application, an owned object: that of the first domain that holds the key. Null
/// when none does, and for an identifier that cannot be part of a file's name. Files are looked at anew by
/// each call; one that has not changed need not be read again.
PLATFORM_API CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID);
