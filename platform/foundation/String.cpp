#include "foundation/String.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "foundation/TextCodec.h"

using Platform::EncodedCharacter;
using Platform::Guarded;

CFTypeID __CFString::TypeID() const { return CFStringGetTypeID(); }

bool __CFString::EqualTo(Platform::Object const& other) const {
    return text == static_cast<__CFString const&>(other).text;
}

CFHashCode __CFString::Hash() const { return std::hash<std::u16string>()(text); }

CFStringRef Platform::NewFileNameString(std::string_view bytes) {
    return new __CFString(TextOfFileName(bytes));
}

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
    CFIndex Used() const { return static_cast<CFIndex>(used); }

  private:
    UInt8* to;
    std::size_t room;
    std::size_t used = 0;
};

// Returns the units converted.
CFIndex Convert(std::u16string_view text, CFStringEncoding encoding, UInt8 lossByte, ByteSink& sink) {
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
        auto text = Platform::DecodeText(view, encoding, isExternalRepresentation != 0);
        return text ? new __CFString(std::move(*text)) : nullptr;
    });
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, UniChar const* characters, CFIndex numCharacters) {
    return Guarded<CFStringRef>(nullptr, [&]() -> CFStringRef {
        if (numCharacters < 0) return nullptr;
        return new __CFString(std::u16string(characters, characters + numCharacters));
    });
}

CFStringRef CFStringCreateCopy(CFAllocatorRef, CFStringRef string) {
    string->Retain();
    return string;
}

CFStringRef CFStringCreateWithFileSystemRepresentation(CFAllocatorRef, char const* representation) {
    return Guarded<CFStringRef>(nullptr, [&] { return Platform::NewFileNameString(representation); });
}

CFIndex CFStringGetLength(CFStringRef string) { return static_cast<CFIndex>(string->text.size()); }

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer) {
    if (!IsWithin(range, string->text.size())) return;
    auto const from = string->text.begin() + range.location;
    std::copy(from, from + range.length, buffer);
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex maxBufferLength,
                         CFIndex* usedBufferLength) {
    if (usedBufferLength != nullptr) *usedBufferLength = 0;
    if (!IsWithin(range, string->text.size()) || !Platform::IsKnownEncoding(encoding)) return 0;
    ByteSink sink(buffer, maxBufferLength);
    if (isExternalRepresentation != 0 && encoding == kCFStringEncodingUTF16) {
        char16_t const mark = 0xFEFF;
        if (!sink.Add(reinterpret_cast<unsigned char const*>(&mark), sizeof mark)) return 0;
    }
    auto const text =
        std::u16string_view(string->text)
            .substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
    CFIndex const converted = Convert(text, encoding, lossByte, sink);
    if (usedBufferLength != nullptr) *usedBufferLength = sink.Used();
    return converted;
}

Boolean CFStringGetFileSystemRepresentation(CFStringRef string, char* buffer, CFIndex maxBufferLength) {
    return Guarded<Boolean>(false, [&]() -> Boolean {
        auto const bytes = Platform::FileNameOfText(string->text);
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
