#pragma once

// The user's Internet settings, as the platform's Internet Config keeps them.
//
// Every question reads the setting anew. All of them throw NoSuchObject for a setting without a value and
// OSError with the platform's status for any other failure, icPrefDataErr among them: a value that is shorter
// than its layout. Strings and rows point into inspector memory.

#include <Carbon/InternetConfig.h>

#include "Evaluator/Values.h"
#include "filesystem/FileCodes.h"
#include "filesystem/Folder.h"

/// The connection to Internet Config. It is made when it is first asked for, and ends when the library is
/// unloaded.
class ICRecord {
  public:
    /// Throws OSError when there can be no connection; the next call tries again.
    static ICRecord const& theICRecord();

    ICRecord(ICRecord const&) = delete;
    ICRecord& operator=(ICRecord const&) = delete;

    ICInstance instance;

  private:
    ICRecord();
    ~ICRecord();
};

/// The settings: a token, which has nothing to remember.
struct InternetConfig {
    /// The readers of a setting by its key, which is a Pascal string. The bytes of what they give lie in
    /// inspector memory; a text's are the Pascal string's characters, or the whole value.
    static inspector_string GetPString(ConstStr255Param key);
    static ConstData GetText(ConstStr255Param key);
    static ICFileSpec GetFileSpec(ConstStr255Param key);
    static bool GetBoolean(ConstStr255Param key);
    static ICFontRecord const& GetFont(ConstStr255Param key);
    static ICAppSpec const& GetAppSpec(ConstStr255Param key);
};

InternetConfig InternetConfig_of();
inspector_string email_of(InternetConfig const& settings);
inspector_string signature_of(InternetConfig const& settings);
/// Whether connections go through a SOCKS firewall.
boolean socks_of(InternetConfig const& settings);
/// Throws FailedToGetFileItem when there is no such item.
folder download_of(InternetConfig const& settings);
/// The name of the printer's font.
inspector_string font_of(InternetConfig const& settings);
/// The creator code of the application for a protocol. NoSuchObject for a name of more than 248 bytes.
file_signature helper_of(unsigned char const* name, unsigned long length, InternetConfig const& settings);

/// Where the reading of a list of strings is: a big-endian count of 16 bits, and so many Pascal strings.
class STRSharp {
  public:
    STRSharp() = default;
    /// The first string of a list. One of fewer than two bytes has none.
    explicit STRSharp(ConstData list);
    /// The string at hand, and goes on to the next one. NoSuchObject behind the last one, and where the list
    /// is cut off.
    inspector_string NextString();

  private:
    std::uint16_t count = 0;
    std::uint16_t next = 0;  // index
    unsigned char const* position = nullptr;
    unsigned char const* end = nullptr;
};

/// The names of the Archie servers, in order; NoSuchObject ends them.
class ArchieIterator {
  public:
    inspector_string First(InternetConfig const& settings);
    inspector_string Next(InternetConfig const& settings);

  private:
    STRSharp strings;
};

/// A service of the network. Its name lies in the memory of the iteration.
struct ICService {
    inspector_string name;
    std::uint16_t port = 0;
    std::uint16_t flags = 0;  // kICServicesTCP, kICServicesUDP
};

inspector_string name_of(ICService const& service);
integer port_of(ICService const& service);
/// Whether it is offered by TCP, and by UDP.
boolean tcp_of(ICService const& service);
boolean udp_of(ICService const& service);

/// The services, in order. NoSuchObject ends them: behind the last one, at one whose name has fewer than four
/// characters, and at one that is cut off.
class ICServiceIterator {
  public:
    ICService First(InternetConfig const& settings);
    ICService Next(InternetConfig const& settings);

  private:
    ICService NextService();

    ConstData bytes;
    std::uint16_t count = 0;
    std::uint16_t next = 0;  // index
    unsigned char const* position = nullptr;
};
