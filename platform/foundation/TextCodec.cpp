#include "foundation/TextCodec.h"

#include <bit>

#include "foundation/MacRoman.h"

namespace Platform {

namespace {

constexpr char16_t kByteOrderMark = 0xFEFF;
constexpr bool kBigEndianHere = std::endian::native == std::endian::big;

bool IsHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
bool IsEscapedByte(char16_t unit) { return unit >= 0xDC80 && unit <= 0xDCFF; }

unsigned char ByteAt(std::string_view bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }

// A character of valid UTF-8, or size 0. Overlong forms, surrogates and numbers above U+10FFFF are not valid.
struct Utf8Character {
    char32_t number = 0;
    std::size_t size = 0;
};

std::size_t Utf8Size(unsigned char first) {
    if (first < 0x80) return 1;
    if (first < 0xC2) return 0;
    if (first < 0xE0) return 2;
    if (first < 0xF0) return 3;
    return first < 0xF5 ? 4 : 0;
}

Utf8Character DecodeUtf8Character(std::string_view bytes) {
    constexpr char32_t firstBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    std::size_t const size = Utf8Size(ByteAt(bytes, 0));
    if (size == 0 || size > bytes.size()) return {};
    char32_t number = ByteAt(bytes, 0) & firstBits[size];
    for (std::size_t i = 1; i < size; ++i) {
        if ((ByteAt(bytes, i) & 0xC0) != 0x80) return {};
        number = (number << 6) | (ByteAt(bytes, i) & 0x3F);
    }
    bool const surrogate = number >= 0xD800 && number <= 0xDFFF;
    if (number < smallest[size] || number > 0x10FFFF || surrogate) return {};
    return {number, size};
}

void AppendNumber(std::u16string& text, char32_t number) {
    if (number < 0x10000) {
        text += static_cast<char16_t>(number);
        return;
    }
    text += static_cast<char16_t>(0xD800 + ((number - 0x10000) >> 10));
    text += static_cast<char16_t>(0xDC00 + ((number - 0x10000) & 0x3FF));
}

std::optional<std::u16string> DecodeUtf8(std::string_view bytes, bool external) {
    if (external && bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
    std::u16string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        Utf8Character const character = DecodeUtf8Character(bytes);
        if (character.size == 0) return std::nullopt;
        AppendNumber(text, character.number);
        bytes.remove_prefix(character.size);
    }
    return text;
}

char16_t Utf16Unit(std::string_view bytes, std::size_t at, bool bigEndian) {
    unsigned const first = ByteAt(bytes, at);
    unsigned const second = ByteAt(bytes, at + 1);
    return static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
}

std::optional<std::u16string> DecodeUtf16(std::string_view bytes, bool bigEndian, bool obeyMark) {
    if (bytes.size() % 2 != 0) return std::nullopt;
    if (obeyMark && bytes.size() >= 2) {
        bool const mark = Utf16Unit(bytes, 0, bigEndian) == kByteOrderMark;
        bool const otherMark = Utf16Unit(bytes, 0, !bigEndian) == kByteOrderMark;
        if (otherMark) bigEndian = !bigEndian;
        if (mark || otherMark) bytes.remove_prefix(2);
    }
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) text[i] = Utf16Unit(bytes, 2 * i, bigEndian);
    return text;
}

// Encodings of one byte for each character; `limit` is the first byte that is none.
std::optional<std::u16string> DecodeSingleBytes(std::string_view bytes, unsigned limit) {
    std::u16string text(bytes.size(), u'\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (ByteAt(bytes, i) >= limit) return std::nullopt;
        text[i] = ByteAt(bytes, i);
    }
    return text;
}

std::u16string DecodeMacRoman(std::string_view bytes) {
    std::u16string text(bytes.size(), u'\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) text[i] = FromMacRoman(ByteAt(bytes, i));
    return text;
}

// The character at the front of `text`: a surrogate pair counts as one, a lone surrogate as itself.
char32_t NumberAt(std::u16string_view text) {
    if (text.size() < 2 || !IsHighSurrogate(text[0]) || !IsLowSurrogate(text[1])) return text[0];
    return 0x10000 + ((static_cast<char32_t>(text[0]) - 0xD800) << 10) + (text[1] - 0xDC00);
}

EncodedCharacter OneByte(unsigned char byte) { return {1, 1, {byte}}; }

EncodedCharacter EncodeUtf8(std::u16string_view text) {
    char32_t const number = NumberAt(text);
    auto const byte = [number](unsigned lead, int shift) {
        return static_cast<unsigned char>(lead | (shift > 12 ? number >> shift : (number >> shift) & 0x3F));
    };
    if (number < 0x80) return OneByte(static_cast<unsigned char>(number));
    if (number < 0x800) return {1, 2, {byte(0xC0, 6), byte(0x80, 0)}};
    if (number >= 0xD800 && number <= 0xDFFF) return {};
    if (number < 0x10000) return {1, 3, {byte(0xE0, 12), byte(0x80, 6), byte(0x80, 0)}};
    return {2, 4, {byte(0xF0, 18), byte(0x80, 12), byte(0x80, 6), byte(0x80, 0)}};
}

EncodedCharacter EncodeFileName(std::u16string_view text) {
    if (IsEscapedByte(text[0])) return OneByte(static_cast<unsigned char>(text[0] - 0xDC00));
    return EncodeUtf8(text);
}

EncodedCharacter EncodeUtf16(std::u16string_view text, bool bigEndian) {
    std::size_t const units = NumberAt(text) >= 0x10000 ? 2 : 1;
    EncodedCharacter result{units, 2 * units, {}};
    for (std::size_t i = 0; i < units; ++i) {
        auto const high = static_cast<unsigned char>(text[i] >> 8);
        auto const low = static_cast<unsigned char>(text[i] & 0xFF);
        result.bytes[2 * i] = bigEndian ? high : low;
        result.bytes[2 * i + 1] = bigEndian ? low : high;
    }
    return result;
}

EncodedCharacter EncodeMacRoman(std::u16string_view text) {
    std::size_t cluster = 1;
    if (!IsCombiningMark(text[0])) {
        while (cluster < text.size() && IsCombiningMark(text[cluster])) ++cluster;
    }
    std::optional<unsigned char> byte;
    if (cluster == 1) byte = ToMacRoman(text[0]);
    if (cluster == 2) byte = ToMacRoman(text[0], text[1]);
    if (!byte) return {cluster, 0, {}};
    return {cluster, 1, {*byte}};
}

}  // namespace

std::optional<std::u16string> DecodeText(std::string_view bytes, CFStringEncoding encoding, bool external) {
    switch (encoding) {
        case kCFStringEncodingMacRoman:
            return DecodeMacRoman(bytes);
        case kCFStringEncodingMacHFS:
            return TextOfFileName(bytes);
        case kCFStringEncodingISOLatin1:
            return DecodeSingleBytes(bytes, 0x100);
        case kCFStringEncodingASCII:
            return DecodeSingleBytes(bytes, 0x80);
        case kCFStringEncodingUTF8:
            return DecodeUtf8(bytes, external);
        case kCFStringEncodingUTF16:
            return DecodeUtf16(bytes, kBigEndianHere, external);
        case kCFStringEncodingUTF16BE:
            return DecodeUtf16(bytes, true, false);
        case kCFStringEncodingUTF16LE:
            return DecodeUtf16(bytes, false, false);
        default:
            return std::nullopt;
    }
}

bool IsKnownEncoding(CFStringEncoding encoding) { return DecodeText({}, encoding, false).has_value(); }

EncodedCharacter EncodeCharacter(std::u16string_view text, CFStringEncoding encoding) {
    auto const below = [text](char16_t limit) {
        return text[0] < limit ? OneByte(static_cast<unsigned char>(text[0])) : EncodedCharacter{};
    };
    switch (encoding) {
        case kCFStringEncodingMacRoman:
            return EncodeMacRoman(text);
        case kCFStringEncodingMacHFS:
            return EncodeFileName(text);
        case kCFStringEncodingISOLatin1:
            return below(0x100);
        case kCFStringEncodingASCII:
            return below(0x80);
        case kCFStringEncodingUTF8:
            return EncodeUtf8(text);
        case kCFStringEncodingUTF16:
            return EncodeUtf16(text, kBigEndianHere);
        case kCFStringEncodingUTF16BE:
            return EncodeUtf16(text, true);
        case kCFStringEncodingUTF16LE:
            return EncodeUtf16(text, false);
        default:
            return {};
    }
}

std::u16string TextOfFileName(std::string_view bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        Utf8Character const character = DecodeUtf8Character(bytes);
        if (character.size == 0) {
            text += static_cast<char16_t>(0xDC00 + ByteAt(bytes, 0));
            bytes.remove_prefix(1);
        } else {
            AppendNumber(text, character.number);
            bytes.remove_prefix(character.size);
        }
    }
    return text;
}

std::optional<std::string> FileNameOfText(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        EncodedCharacter const character = EncodeFileName(text);
        if (character.size == 0 || text[0] == u'\0') return std::nullopt;
        bytes.append(reinterpret_cast<char const*>(character.bytes), character.size);
        text.remove_prefix(character.units);
    }
    return bytes;
}

}  // namespace Platform
