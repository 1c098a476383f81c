#pragma once

// A file's bytes: whether a text occurs in them, also with letters made large or small, and single ones.

#include <cstdint>

#include "Evaluator/Fingerprint.h"
#include "Evaluator/Values.h"
#include "filesystem/FileSystemObject.h"

/// What is done to a file's letters before they are compared. ASCII letters only.
enum class CaseMode : std::uint32_t { AsIs, Lower, Upper };

/// What a file holds: no more than a reference to the file, which must outlive it, and a way to look at it.
struct content {
    file const& owner;
    CaseMode mode;
};

/// Feeds what tells one state of the file from another; the case mode does not count.
Fingerprinter& operator<<(Fingerprinter& print, content const& object);

content content_of(file const& object);
/// The same with all letters made large, or small; the last cast alone counts.
content AsUppercase(content const& object);
content AsLowercase(content const& object);

/// Whether the bytes of a text occur in the file. The text itself is taken as it is. NoSuchObject for a text
/// of more than 32768 bytes, and for every failure to open or read. The empty text occurs in every file, also
/// in one that is missing.
bool Contains(content const& whole, inspector_string const& part);

/// The byte at an offset, from 0 to 255. NoSuchObject past the end, from 4 GiB on, and for every failure.
integer byte_of(unsigned long long index, file const& object);
