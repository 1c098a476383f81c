#include "propertylists/TextEncoding.h"

#include <optional>

#include "foundation/TextCodec.h"
#include "propertylists/PropertyLists.h"

namespace Platform {

namespace {

std::string Utf8Of(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        EncodedCharacter const character = EncodeCharacter(text, kCFStringEncodingUTF8);
        if (character.size == 0) throw PropertyListError("the text is not UTF-16");
        bytes.append(reinterpret_cast<char const*>(character.bytes), character.size);
        text.remove_prefix(character.units);
    }
    return bytes;
}

std::string Utf8OfUtf16(std::string_view bytes, bool isBigEndian) {
    auto const text =
        DecodeText(bytes, isBigEndian ? kCFStringEncodingUTF16BE : kCFStringEncodingUTF16LE, false);
    if (!text) throw PropertyListError("the text is not UTF-16");
    return Utf8Of(*text);
}

std::string Utf8OfUtf32(std::string_view bytes, bool isBigEndian) {
    std::u16string text;
    text.reserve(bytes.size() / 4);
    bool isValid = bytes.size() % 4 == 0;
    for (std::size_t at = 0; isValid && at < bytes.size(); at += 4) {
        char32_t number = 0;
        for (std::size_t i = 0; i < 4; ++i)
            number = number << 8 | static_cast<unsigned char>(bytes[at + (isBigEndian ? i : 3 - i)]);
        isValid = number < 0xD800 || (number > 0xDFFF && number <= 0x10FFFF);
        if (number >= 0x10000) {
            text += static_cast<char16_t>(0xD7C0 + (number >> 10));
            text += static_cast<char16_t>(0xDC00 + (number & 0x3FF));
        } else {
            text += static_cast<char16_t>(number);
        }
    }
    if (!isValid) throw PropertyListError("the text is not UTF-32");
    return Utf8Of(text);
}

}  // namespace

ListText::ListText(std::span<UInt8 const> bytes)
    : text(reinterpret_cast<char const*>(bytes.data()), bytes.size()) {
    using namespace std::string_view_literals;
    auto const take = [this](std::string_view mark) {
        if (!text.starts_with(mark)) return false;
        text.remove_prefix(mark.size());
        return true;
    };
    if (take("\0\0\xFE\xFF"sv)) {
        converted = Utf8OfUtf32(text, true);
    } else if (take("\xFF\xFE\0\0"sv)) {
        converted = Utf8OfUtf32(text, false);
    } else if (take("\xEF\xBB\xBF"sv)) {
        return;
    } else if (take("\xFE\xFF"sv) || text.starts_with('\0')) {
        converted = Utf8OfUtf16(text, true);
    } else if (take("\xFF\xFE"sv) || (text.size() > 1 && text[1] == '\0')) {
        converted = Utf8OfUtf16(text, false);
    } else {
        isKnown = false;
        return;
    }
    text = converted;
}

}  // namespace Platform
