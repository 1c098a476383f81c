#pragma once

// CoreFoundation references of tests.

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Owns one reference, which may be null.
template <class Reference>
class Owned {
  public:
    Owned(Reference taken) : reference(taken) {}
    Owned(Owned&& other) noexcept : reference(std::exchange(other.reference, nullptr)) {}
    Owned& operator=(Owned const&) = delete;
    ~Owned() {
        if (reference != nullptr) CFRelease(reference);
    }
    operator Reference() const { return reference; }

  private:
    Reference reference;
};

inline UInt8 const* Bytes(std::string_view text) { return reinterpret_cast<UInt8 const*>(text.data()); }

/// A string from bytes; null when they are not valid.
inline CFStringRef NewString(std::string_view bytes, CFStringEncoding encoding = kCFStringEncodingUTF8) {
    return CFStringCreateWithBytes(kCFAllocatorDefault, Bytes(bytes), static_cast<CFIndex>(bytes.size()),
                                   encoding, false);
}

inline std::u16string Units(CFStringRef string) {
    std::vector<UniChar> units(static_cast<std::size_t>(CFStringGetLength(string)));
    CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)), units.data());
    return {units.begin(), units.end()};
}

/// The bytes of a name or path; "(null)" and "(no name)" for what is none.
inline std::string NameBytes(CFStringRef string) {
    if (string == nullptr) return "(null)";
    std::string buffer(static_cast<std::size_t>(CFStringGetMaximumSizeOfFileSystemRepresentation(string)),
                       '\0');
    bool const isName =
        CFStringGetFileSystemRepresentation(string, buffer.data(), static_cast<CFIndex>(buffer.size()));
    return isName ? buffer.c_str() : "(no name)";
}

/// A URL of a POSIX path.
inline CFURLRef NewURL(std::string_view path, bool isDirectory = false) {
    return CFURLCreateFromFileSystemRepresentation(kCFAllocatorDefault, Bytes(path),
                                                   static_cast<CFIndex>(path.size()), isDirectory);
}

/// The path of a URL with what is above it; a directory URL's ends with '/'.
inline std::string PathOf(CFURLRef url) {
    if (url == nullptr) return "(null)";
    std::string buffer(65536, '\0');
    EXPECT_TRUE(CFURLGetFileSystemRepresentation(url, true, reinterpret_cast<UInt8*>(buffer.data()),
                                                 static_cast<CFIndex>(buffer.size())));
    std::string path = buffer.c_str();
    if (CFURLHasDirectoryPath(url) && path.back() != '/') path += '/';
    return path;
}
