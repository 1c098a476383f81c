#pragma once

// The readers of the formats of property lists. Internal to the platform.

#include <CoreFoundation/CFPropertyList.h>

#include <span>
#include <stdexcept>
#include <string_view>

#include "foundation/Path.h"

namespace Platform {

/// Bytes are no property list of the format. What says why, in English, with the line where there is one.
class PropertyListError : public std::runtime_error {
  public:
    using runtime_error::runtime_error;
};

/// The host's check-in function said stop while a list was read. All readers throw it.
class ReadingStopped {};

/// The beginning of a text in UTF-8, as an error shows it: whole characters, at most 40 bytes.
std::string_view Excerpt(std::string_view text);

/// How deep containers may lie in one another. Ten times as deep as any list of use, and little enough for
/// the stack.
inline constexpr unsigned kMostLevels = 512;
/// The error of a list whose containers lie deeper.
[[noreturn]] void RefuseLevels();

/// Whether the bytes begin as a binary list does, and the root of that list, a new object.
bool IsBinaryPropertyList(std::span<UInt8 const> bytes);
CFPropertyListRef ReadBinaryPropertyList(std::span<UInt8 const> bytes);

/// The root of an XML list, a new object. Its encoding is the one that it declares, or UTF-16 by its first
/// bytes, unless it is known to be UTF-8. The document begins with a '<'; errors count lines from those
/// before it.
CFPropertyListRef ReadXmlPropertyList(std::span<UInt8 const> bytes, bool isUtf8, std::size_t linesBefore);

/// The root of a list in old-style text, a new object. The text should be UTF-8 and has no byte-order mark.
CFPropertyListRef ReadTextPropertyList(std::string_view text);

/// The root of a list of any format, a new object.
CFPropertyListRef ReadPropertyList(std::span<UInt8 const> bytes);

/// The property list that a file holds, a new object; null when it cannot be read or holds none. Why not is
/// noted for PlatformFileFailure or PlatformPropertyListFailure. Waits patiently for slow mounts.
CFPropertyListRef ReadPropertyListFile(Path const& file);
/// The same; `error` is the result code of the reading, noErr also for a file that holds no list.
CFPropertyListRef ReadPropertyListFile(Path const& file, OSErr& error);

}  // namespace Platform
