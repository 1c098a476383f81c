#pragma once

// Bundles: folders that hold a program, framework or plug-in with all that belongs to it.
//
// A folder is one when one of these layouts holds an information dictionary or a file PkgInfo. A framework (a
// folder whose name ends with ".framework") is looked at in the order old, Contents, Support Files, flat, any
// other folder in the order Contents, old, Support Files, flat; a layout with an information dictionary comes
// before all that only have a PkgInfo.
//
//                   information dictionary     PkgInfo            localised folders
//   Contents        Contents/                  Contents/          Contents/Resources/
//   old             Resources/                 the folder         Resources/
//   Support Files   Support Files/             Support Files/     Support Files/Resources/
//   flat            the folder                 the folder         the folder
//
// A framework without Resources has those of Versions/Current. The information dictionary is a property list
// of any format called Info-macos.plist, Info.plist or Info-gnustep.plist, in this order; names count in
// whatever case. One that cannot be read is empty. No keys are added to it.

#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFURL.h>

typedef struct __CFBundle* CFBundleRef;

/// The number of the type of bundles. A bundle equals itself only.
PLATFORM_API CFTypeID CFBundleGetTypeID(void);

/// The bundle of a folder. Null when there is no such folder or it is no bundle. While a bundle of the folder
/// exists it is given again, with one more reference, and keeps what it was when it was first made.
PLATFORM_API CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef bundleURL);

/// Lends the bundle of that identifier (CFBundleIdentifier, letter by letter) among those that the process
/// knows: bundles that exist now, that of the program, and those that loaded libraries lie in. Of several
/// that of the highest version number, and of equal ones the one that was made last. Null when there is none.
/// A bundle that the program or a library lies in is kept for good once it was found.
PLATFORM_API CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef bundleID);

/// Lends the information dictionary; empty when the bundle has none that can be read.
PLATFORM_API CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef bundle);
/// Lends the dictionary of InfoPlist.strings, a property list of any format: the one in the folder of the
/// localised folders, else that of the first <language>.lproj which has one, by the languages of the user
/// (AppleLanguages and NSLanguages of the preferences, then LANGUAGE, LC_ALL, LC_MESSAGES, LANG), the one
/// that the bundle was made in (CFBundleDevelopmentRegion), and English. A language is known by its code and
/// by its English name: "fr", "French"; of "fr_CA" also "fr". Null when there is none.
PLATFORM_API CFDictionaryRef CFBundleGetLocalInfoDictionary(CFBundleRef bundle);
/// Lends the value of a key: from the local dictionary, else from the information dictionary; null when
/// neither has it.
PLATFORM_API CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);

/// The version as a packed number: of the major revision two decimal digits of four bits, of the minor and
/// the bug revision four bits each, the stage (0x20 development, 0x40 alpha, 0x60 beta, 0x80 final), and the
/// number within the stage. It is the value of CFBundleNumericVersion, else of CFBundleVersion: a number as
/// it is, a text such as "1.2.3" or "1.2b12" by its parts. 0 for a text that has another form or does not
/// fit.
PLATFORM_API UInt32 CFBundleGetVersionNumber(CFBundleRef bundle);
/// The codes of the package's type and of its creator, which are both optional: the first eight bytes of
/// PkgInfo; else CFBundlePackageType and CFBundleSignature, each if it is four characters of Mac Roman; else
/// the type 'APPL' for folders called .app, .debug, .profile and .service, 'FMWK' for .framework, 'BNDL' for
/// all others, and the creator '????'.
PLATFORM_API void CFBundleGetPackageInfo(CFBundleRef bundle, UInt32* packageType, UInt32* packageCreator);
