#include <algorithm>
#include <cstring>
#include <string_view>

#include "Evaluator/MacintoshPlatform.h"

namespace {

constexpr std::size_t kLongestName = 255;

// UTF-8 names are taken as the volumes' encoding, which is UTF-8 that minds no other byte.
CFStringEncoding NameEncoding(unsigned long encoding) {
    return encoding == kCFStringEncodingUTF8 ? CFStringEncoding{kCFStringEncodingMacHFS}
                                             : static_cast<CFStringEncoding>(encoding);
}

// Throws for a name that no file has.
void Check(CFStringRef text) {
    std::string bytes(static_cast<std::size_t>(CFStringGetMaximumSizeOfFileSystemRepresentation(text)), '\0');
    if (!CFStringGetFileSystemRepresentation(text, bytes.data(), static_cast<CFIndex>(bytes.size())))
        throw IllegalFileName();
    bytes.resize(std::strlen(bytes.c_str()));
    bool const isDots = bytes == "." || bytes == "..";
    if (bytes.empty() || isDots || bytes.find('/') != std::string::npos) throw IllegalFileName();
    if (bytes.size() > kLongestName) throw IllegalFileNameLength();
}

}  // namespace

bool operator==(HFSUniStr255 const& left, HFSUniStr255 const& right) {
    return std::equal(left.unicode, left.unicode + left.length, right.unicode, right.unicode + right.length);
}

namespace MacintoshPlatform {

HFSUniStr255 ExactFileName(UStringRef<UTF8> name, unsigned long encoding) {
    AutoCFString const text(CFStringCreateWithBytes(
        kCFAllocatorDefault, name.begin(), static_cast<CFIndex>(name.Size()), NameEncoding(encoding), false));
    if (text == nullptr) throw IllegalFileName();
    Check(text);
    HFSUniStr255 result{};
    result.length = static_cast<UInt16>(CFStringGetLength(text));
    CFStringGetCharacters(text, CFRangeMake(0, result.length), result.unicode);
    return result;
}

std::string MakeUTF8String(HFSUniStr255 const& name) {
    AutoCFString const text(CFStringCreateWithCharacters(kCFAllocatorDefault, name.unicode, name.length));
    if (text == nullptr) throw MemoryFullError();
    CFRange const all = CFRangeMake(0, name.length);
    std::string bytes(static_cast<std::size_t>(CFStringGetMaximumSizeOfFileSystemRepresentation(text)), '\0');
    CFIndex size = 0;
    CFStringGetBytes(text, all, kCFStringEncodingMacHFS, '?', false, reinterpret_cast<UInt8*>(bytes.data()),
                     static_cast<CFIndex>(bytes.size()), &size);
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
}

bool HasSuffix(HFSUniStr255 const& name, char const* suffix) {
    return MakeUTF8String(name).ends_with(suffix);
}

}  // namespace MacintoshPlatform
