#pragma once

// Internet Config: what the user has set for the Internet.
//
// A setting is looked for in the preferences of "com.apple.internetconfig" first (Carbon's own layout: the
// dictionary "Version 2.5.4", in it "ic-added", in it one dictionary for each key, in it the bytes "ic-data"
// in big-endian form), then where Linux keeps it:
//
//   key                        value          source
//   Email                      Pascal string  EMAIL; Thunderbird's default identity; user.email of git, as
//                                             the user's files and /etc/gitconfig tell it
//   RealName                   Pascal string  the user database
//   Signature                  bytes          ~/.signature as it is
//   UseSocks                   Boolean        whether socks_proxy, or all_proxy with a SOCKS scheme, is set
//   SocksHost                  Pascal string  host:port of the same
//   UseHTTPProxy, UseFTPProxy  Boolean        whether http_proxy, ftp_proxy, or all_proxy with an http scheme
//                                             or none, is set
//   HTTPProxyHost,             Pascal string  host:port of the same
//   FTPProxyHost
//   DownloadFolder             ICFileSpec     XDG_DOWNLOAD_DIR of user-dirs.dirs
//   PrinterFont, ScreenFont,   ICFontRecord   fontconfig's font for "monospace"; those
//   ListFont                                  on file systems that may not answer do not count
//   Helper, byte 0xA5, scheme  ICAppSpec      the application in charge of x-scheme-handler/scheme, where
//                                             its desktop entry tells its creator code
//   Services                   ICServices     /etc/services: TCP and UDP by name and port
//
// A text of more than 255 bytes is passed over. A stored file with an alias gets the FSSpec of the alias's
// path. Text that is not stored is in UTF-8.
//
// Keys are compared without case. Everything is read anew at each call. Nothing is ever written.

#include <Carbon/Files.h>

typedef struct OpaqueICInstance* ICInstance;
typedef UInt32 ICAttr;

#pragma pack(push, 2)

/// The place of a file. Only the FSSpec counts here; the alias has no data.
typedef struct ICFileSpec {
    Str31 volName;
    SInt32 volCreationDate;
    FSSpec fss;
    OSType aliasType;  // 0
    UInt16 aliasSize;  // 0
} ICFileSpec;

/// A font: size in points, style (1 bold, 2 italic), name.
typedef struct ICFontRecord {
    SInt16 size;
    UInt8 face;
    UInt8 pad;
    Str255 font;
} ICFontRecord;

/// An application: its creator code and its name.
typedef struct ICAppSpec {
    OSType fCreator;
    Str63 name;
} ICAppSpec;

// ICServices is no C record: a UInt16 count, then for each service a length byte and so many bytes of name, a
// UInt16 port, and a UInt16 of flags; all big-endian, nothing aligned.
enum { kICServicesTCP = 1, kICServicesUDP = 2 };

#pragma pack(pop)

/// A connection to the settings. Any signature is accepted. End it with ICStop. memFullErr; paramErr.
PLATFORM_API OSStatus ICStart(ICInstance* instance, OSType signature);
/// Ends a connection. paramErr for one that is none.
PLATFORM_API OSStatus ICStop(ICInstance instance);

/// The value of a setting: fixed records in the machine's byte order, streams of bytes as they are. Without a
/// buffer only its size is told. Otherwise `size` says how much room there is and gets the size of the value;
/// icTruncatedErr when it does not fit, and the buffer has its beginning. icPrefNotFoundErr when there is
/// none; icPrefDataErr for a stored value that is shorter than the layout of its key, or no bytes; then, and
/// on every other failure, `size` is 0 and `attributes` (optional) is 0xFFFFFFFF. Otherwise the attributes
/// are 0. A file that is there but cannot be read is a failure, of which PlatformSettingsFailure tells: the
/// code of FSOpenFork, fileBoundsErr for one that is too large, icPrefDataErr for stored settings that are no
/// property list. volOffLinErr and userCanceledErr when a file system does not answer.
PLATFORM_API OSStatus ICGetPref(ICInstance instance, ConstStr255Param key, ICAttr* attributes, void* buffer,
                                SInt32* size);

#ifdef __cplusplus
static_assert(sizeof(ICFileSpec) == 112 && sizeof(ICFontRecord) == 260 && sizeof(ICAppSpec) == 68);
#endif
