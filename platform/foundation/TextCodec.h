#pragma once

// Bytes of an encoding to UTF-16 and back. Pure.

#include <CoreFoundation/CFString.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Platform {

/// The text of `bytes`; empty when they are not valid in the encoding, or the encoding is not known. With
/// `external` a byte-order mark at the front is obeyed and dropped.
std::optional<std::u16string> DecodeText(std::string_view bytes, CFStringEncoding encoding, bool external);

/// One character on its way to bytes.
struct EncodedCharacter {
    std::size_t units = 1;  // UTF-16 units that it takes from the text
    std::size_t size = 0;   // bytes that it becomes; 0 when it has no form in the encoding
    unsigned char bytes[4] = {};
};

/// The bytes of the character at the front of `text`, which is not empty.
EncodedCharacter EncodeCharacter(std::u16string_view text, CFStringEncoding encoding);
/// Whether EncodeCharacter knows the encoding.
bool IsKnownEncoding(CFStringEncoding encoding);

/// A file's name or path as text: UTF-8, and U+DC00 + byte for each byte that is no part of it.
std::u16string TextOfFileName(std::string_view bytes);
/// The way back; empty for text with a NUL or with a lone surrogate that stands for no byte.
std::optional<std::string> FileNameOfText(std::u16string_view text);

}  // namespace Platform
