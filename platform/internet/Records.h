#pragma once

// The records of Carbon/InternetConfig.h as bytes.

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace Platform {

/// The bytes of a record as they lie in memory.
template <class Record>
std::string BytesOf(Record const& record) {
    return {reinterpret_cast<char const*>(&record), sizeof record};
}

/// Makes a Pascal string of as many whole characters of a UTF-8 text as there is room for.
template <std::size_t room>
void CopyPascal(std::string_view text, unsigned char (&to)[room]) {
    std::size_t length = std::min(text.size(), room - 1);
    if (length < text.size()) {
        while (length > 0 && (text[length] & 0xC0) == 0x80) --length;
    }
    to[0] = static_cast<unsigned char>(length);
    std::memcpy(to + 1, text.data(), length);
}

}  // namespace Platform
