#pragma once

// Finding items: from paths and references to locations and back.

#include <Carbon/Files.h>

#include <optional>
#include <string>
#include <string_view>

#include "files/Catalog.h"
#include "files/References.h"

namespace Platform {

/// Finds the item at a plain path; a result code.
OSErr FindItem(Path const& path, LinkRule rule, FoundItem& found);
/// Finds the item at a path that is made plain first. One that ends with '/', "." or ".." wants a folder.
OSErr FindItemOfText(std::string_view path, LinkRule rule, FoundItem& found);
/// Finds the item that a reference stands for; a result code.
OSErr FindReferenced(FSRef const& reference, FoundItem& found);
/// A new reference to a found item.
FSRef MakeReference(FoundItem const& found);

/// noErr for bytes that can be a file's name; bdNamErr, errFSMissingName or errFSNameTooLong for others.
OSErr CheckName(std::string_view name);
/// The Carbon form of a name of at most 255 bytes.
HFSUniStr255 CarbonName(std::string_view name);

}  // namespace Platform
