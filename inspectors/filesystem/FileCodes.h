#pragma once

// The four-character codes that say what a file is and whose.

#include <cstdint>

/// The type of a file: four characters as a number, the first one in the top byte.
struct file_type {
    std::uint32_t code;
};
/// The code of a file's creator.
struct file_signature {
    std::uint32_t code;
};

bool operator==(file_type const& left, file_type const& right);
bool operator==(file_signature const& left, file_signature const& right);

/// The code of a text of exactly four bytes, which are taken as they are. NoSuchObject for another length.
file_type file_type_of(unsigned char const* text, unsigned long length);
file_signature file_signature_of(unsigned char const* text, unsigned long length);
