#pragma once

// Settings files: lines with a key and its value, under section headers.
//
//     [client]
//     Port = 3306        ; what stands behind a ';' is no part of the value
//     <server>           the brackets are [], <>, () or {}
//     name: "alpha"
//
// Keys and names are compared without regard to the case of ASCII letters. Blanks are space and tab. There is
// no quoting, no escaping and no continuation. Lines are cut as FileLineLoop.h tells; one of more than 65536
// bytes comes in pieces.

#include <cstdint>

#include "Evaluator/MacintoshPlatform.h"
#include "Evaluator/Values.h"
#include "filesystem/FileSystemObject.h"

/// A section of a file: where it is, not what it holds. The file is opened again for each key.
class file_section {
  public:
    /// `start` is the offset behind the header's line, `end` that of the line that ends the section, or of
    /// the end of the file. An empty section has the end 0, and no key.
    file_section(MacintoshPlatform::FileLocation const& location, unsigned long start, unsigned long end);

    MacintoshPlatform::FileLocation location;
    std::uint32_t start;
    std::uint32_t end;
};

/// The value of a key in the first line that has it, whatever the section. NoSuchObject when none has, and
/// for a file that must not be read. This and the next two let the failures of opening and reading through.
inspector_string key_of_file(inspector_string const& key, Of, file const& object);
/// The section with the first header of that name. NoSuchObject when there is none, when nothing follows the
/// header, and for a file that must not be read.
file_section section_of_file(inspector_string const& name, Of, file const& object);
/// The value of a key in the first line of the section that has it. NoSuchObject when none has.
inspector_string key_of_section(inspector_string const& key, Of, file_section const& section);

/// The value of the key in a line, in inspector memory. Throws KeyNotFoundInLine when the line has another
/// key, none, or no value.
inspector_string GetValueForKey(inspector_string const& key, ConstData const& line);
/// Whether a line is the header of the section of that name. Of a line that opens with a bracket `open` and
/// `close` get the pair, whatever its name.
bool FindSectionStart(inspector_string const& name, ConstData const& line, char& open, char& close);
/// Whether a line ends a section whose header has that pair of brackets: it is a header with the same.
bool FindSectionEnd(ConstData const& line, char open, char close);
