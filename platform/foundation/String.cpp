#include "foundation/String.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>

#include "foundation/TextCodec.h"

using Platform::EncodedCharacter;
using Platform::Guarded;

CFTypeID __CFString::TypeID() const { return CFStringGetTypeID(); }

bool __CFString::EqualTo(Platform::Object const& other) const {
    auto const& string = static_cast<__CFString const&>(other);
    if (length != string.length || hasUnits != string.hasUnits) return false;
    return hasUnits ? Units() == string.Units() : Ascii() == string.Ascii();
}

CFHashCode __CFString::Hash() const {
    return hasUnits ? std::hash<std::u16string_view>()(Units()) : std::hash<std::string_view>()(Ascii());
}

std::u16string __CFString::Text() const {
    if (hasUnits) return std::u16string(Units());
    std::string_view const ascii = Ascii();
    return std::u16string(ascii.begin(), ascii.end());
}

namespace Platform {

CFStringRef NewAsciiString(std::string_view ascii) {
    auto* const string = new (Behind{ascii.size()}) __CFString(ascii.size(), true);
    ascii.copy(__CFString::ElementsBehind<char>(string), ascii.size());
    return string;
}

CFStringRef NewString(std::u16string_view text) {
    bool const isAscii = std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
    auto* const string = new (Behind{text.size() * (isAscii ? 1 : 2)}) __CFString(text.size(), isAscii);
    if (isAscii) {
        std::copy(text.begin(), text.end(), __CFString::ElementsBehind<char>(string));
    } else {
        text.copy(__CFString::ElementsBehind<char16_t>(string), text.size());
    }
    return string;
}

CFStringRef NewUtf8String(std::string_view utf8) {
    if (IsAscii(utf8)) return NewAsciiString(utf8);
    auto const text = DecodeText(utf8, kCFStringEncodingUTF8, false);
    return text ? NewString(*text) : nullptr;
}

CFStringRef NewFileNameString(std::string_view bytes) {
    return IsAscii(bytes) ? NewAsciiString(bytes) : NewString(TextOfFileName(bytes));
}

bool IsAscii(std::string_view bytes) noexcept {
    unsigned char all = 0;
    for (char const byte : bytes) all |= static_cast<unsigned char>(byte);
    return all < 0x80;
}

}  // namespace Platform

namespace {

// Where converted bytes go: to a buffer while they fit, or nowhere, to be counted.
class ByteSink {
  public:
    ByteSink(UInt8* buffer, CFIndex size) : to(buffer), room(size < 0 ? 0 : static_cast<std::size_t>(size)) {}

    bool Add(unsigned char const* bytes, std::size_t size) {
        if (to != nullptr) {
            if (size > room - used) return false;
            std::memcpy(to + used, bytes, size);
        }
        used += size;
        return true;
    }
    // Bytes that still fit.
    std::size_t Room() const { return to == nullptr ? SIZE_MAX : room - used; }
    CFIndex Used() const { return static_cast<CFIndex>(used); }

  private:
    UInt8* to;
    std::size_t room;
    std::size_t used = 0;
};

// Encodings whose first 128 characters are those of ASCII, each a byte.
bool BeginsWithAscii(CFStringEncoding encoding) {
    switch (encoding) {
        case kCFStringEncodingMacRoman:
        case kCFStringEncodingMacHFS:
        case kCFStringEncodingISOLatin1:
        case kCFStringEncodingASCII:
        case kCFStringEncodingUTF8:
            return true;
        default:
            return false;
    }
}

// All three return the units converted.
CFIndex ConvertAscii(std::string_view text, ByteSink& sink) {
    auto const bytes = reinterpret_cast<unsigned char const*>(text.data());
    std::size_t const size = std::min(text.size(), sink.Room());
    sink.Add(bytes, size);
    return static_cast<CFIndex>(size);
}
CFIndex ConvertUnits(std::u16string_view text, CFStringEncoding encoding, UInt8 lossByte, ByteSink& sink) {
    std::size_t at = 0;
    while (at < text.size()) {
        EncodedCharacter character = Platform::EncodeCharacter(text.substr(at), encoding);
        if (character.size == 0) {
            if (lossByte == 0) break;
            character.size = 1;
            character.bytes[0] = lossByte;
        }
        if (!sink.Add(character.bytes, character.size)) break;
        at += character.units;
    }
    return static_cast<CFIndex>(at);
}

CFIndex Convert(__CFString const& string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                ByteSink& sink) {
    auto const from = static_cast<std::size_t>(range.location), size = static_cast<std::size_t>(range.length);
    if (!string.IsAscii()) return ConvertUnits(string.Units().substr(from, size), encoding, lossByte, sink);
    std::string_view const ascii = string.Ascii().substr(from, size);
    if (BeginsWithAscii(encoding)) return ConvertAscii(ascii, sink);
    CFIndex converted = 0;
    for (char16_t const unit : ascii) {
        if (ConvertUnits({&unit, 1}, encoding, lossByte, sink) == 0) break;
        ++converted;
    }
    return converted;
}

bool IsWithin(CFRange range, std::size_t size) {
    return range.location >= 0 && range.length >= 0 && static_cast<std::size_t>(range.location) <= size &&
           static_cast<std::size_t>(range.length) <= size - static_cast<std::size_t>(range.location);
}

}  // namespace

CFTypeID CFStringGetTypeID() {
    static CFTypeID const id = Platform::NewTypeID();
    return id;
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, UInt8 const* bytes, CFIndex numBytes,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation) {
    return Guarded<CFStringRef>(nullptr, [&]() -> CFStringRef {
        if (numBytes < 0) return nullptr;
        std::string_view const view(reinterpret_cast<char const*>(bytes), static_cast<std::size_t>(numBytes));
        if (BeginsWithAscii(encoding) && Platform::IsAscii(view)) return Platform::NewAsciiString(view);
        auto const text = Platform::DecodeText(view, encoding, isExternalRepresentation != 0);
        return text ? Platform::NewString(*text) : nullptr;
    });
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, UniChar const* characters, CFIndex numCharacters) {
    return Guarded<CFStringRef>(nullptr, [&]() -> CFStringRef {
        if (numCharacters < 0) return nullptr;
        return Platform::NewString(std::u16string(characters, characters + numCharacters));
    });
}

CFStringRef CFStringCreateCopy(CFAllocatorRef, CFStringRef string) {
    string->Retain();
    return string;
}

CFStringRef CFStringCreateWithFileSystemRepresentation(CFAllocatorRef, char const* representation) {
    return Guarded<CFStringRef>(nullptr, [&] { return Platform::NewFileNameString(representation); });
}

CFIndex CFStringGetLength(CFStringRef string) { return static_cast<CFIndex>(string->Length()); }

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer) {
    if (!IsWithin(range, string->Length())) return;
    auto const copy = [&](auto text) {
        auto const from = text.begin() + range.location;
        std::copy(from, from + range.length, buffer);
    };
    if (string->IsAscii()) {
        copy(string->Ascii());
    } else {
        copy(string->Units());
    }
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex maxBufferLength,
                         CFIndex* usedBufferLength) {
    if (usedBufferLength != nullptr) *usedBufferLength = 0;
    if (!IsWithin(range, string->Length()) || !Platform::IsKnownEncoding(encoding)) return 0;
    ByteSink sink(buffer, maxBufferLength);
    if (isExternalRepresentation != 0 && encoding == kCFStringEncodingUTF16) {
        char16_t const mark = 0xFEFF;
        if (!sink.Add(reinterpret_cast<unsigned char const*>(&mark), sizeof mark)) return 0;
    }
    CFIndex const converted = Convert(*string, range, encoding, lossByte, sink);
    if (usedBufferLength != nullptr) *usedBufferLength = sink.Used();
    return converted;
}

Boolean CFStringGetFileSystemRepresentation(CFStringRef string, char* buffer, CFIndex maxBufferLength) {
    return Guarded<Boolean>(false, [&]() -> Boolean {
        auto const bytes = Platform::FileNameOfText(string->Text());
        if (!bytes || maxBufferLength < 0 || bytes->size() >= static_cast<std::size_t>(maxBufferLength))
            return false;
        std::memcpy(buffer, bytes->c_str(), bytes->size() + 1);
        return true;
    });
}

CFIndex CFStringGetMaximumSizeOfFileSystemRepresentation(CFStringRef string) {
    constexpr CFIndex mostBytesOfAUnit = 3;
    return CFStringGetLength(string) * mostBytesOfAUnit + 1;
}
