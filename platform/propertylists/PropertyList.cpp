// The formats of property lists: which one some bytes are in.

#include <CoreFoundation/CFPropertyList.h>
#include <CoreFoundation/CFURL.h>

#include <string>

#include "files/WholeFile.h"
#include "foundation/Data.h"
#include "foundation/String.h"
#include "foundation/Url.h"
#include "propertylists/PropertyListFailure.h"
#include "propertylists/PropertyLists.h"
#include "propertylists/TextEncoding.h"

namespace Platform {

namespace {

// XML, or else old-style text, which may begin with a '<' too.
CFPropertyListRef ReadTextOrXml(std::span<UInt8 const> bytes) {
    ListText const list(bytes);
    std::string_view const text = list.Text();
    std::size_t const start = text.find_first_not_of(" \t\r\n");
    std::string reason;
    if (start != text.npos && text[start] == '<') {
        try {
            return ReadXmlPropertyList({reinterpret_cast<UInt8 const*>(text.data()), text.size()},
                                       list.IsKnownToBeUtf8());
        } catch (PropertyListError const& error) {
            reason = "as XML: " + std::string(error.what()) + "; as old-style text: ";
        }
    }
    try {
        return ReadTextPropertyList(text);
    } catch (PropertyListError const& error) {
        throw PropertyListError(reason + error.what());
    }
}

// Why the reading of a list failed, by the exception that is being handled.
std::string Reason() {
    try {
        throw;
    } catch (PropertyListError const& error) {
        return error.what();
    } catch (std::bad_alloc const&) {
        return "there is not enough memory";
    }
}

}  // namespace

std::string_view Excerpt(std::string_view text) {
    constexpr std::size_t most = 40;
    if (text.size() <= most) return text;
    std::size_t end = most;
    while ((text[end] & 0xC0) == 0x80) --end;
    return text.substr(0, end);
}

void RefuseLevels() {
    throw PropertyListError("containers lie more than " + std::to_string(kMostLevels) +
                            " deep in one another, which is the limit");
}

CFPropertyListRef ReadPropertyList(std::span<UInt8 const> bytes) {
    if (bytes.empty()) throw PropertyListError("the data is null or of zero length");
    if (!IsBinaryPropertyList(bytes)) return ReadTextOrXml(bytes);
    try {
        return ReadBinaryPropertyList(bytes);
    } catch (PropertyListError const& error) {
        std::string const reason = error.what();
        // What begins like a binary list may be text all the same.
        try {
            return ReadTextOrXml(bytes);
        } catch (PropertyListError const&) {
            throw PropertyListError(reason);
        }
    }
}

CFPropertyListRef ReadPropertyListFile(Path const& file) {
    OSErr error;
    return ReadPropertyListFile(file, error);
}

CFPropertyListRef ReadPropertyListFile(Path const& file, OSErr& error) {
    CFURLRef const url = NewURL(file, false);
    __CFData const* const data = ReadWholeFile(url, error);
    url->Release();
    if (data == nullptr) return nullptr;
    CFPropertyListRef const list =
        CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data, kCFPropertyListImmutable, nullptr);
    data->Release();
    return list;
}

}  // namespace Platform

CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef, CFDataRef xmlData, UInt32 mutabilityOption,
                                                  CFStringRef* errorString) {
    using namespace Platform;
    if (errorString != nullptr) *errorString = nullptr;
    return Guarded<CFPropertyListRef>(nullptr, [&]() -> CFPropertyListRef {
        std::string reason;
        try {
            if (mutabilityOption != kCFPropertyListImmutable)
                throw PropertyListError("there are no property lists that can be changed");
            CFPropertyListRef const list = ReadPropertyList(xmlData->Bytes());
            NotePropertyList(xmlData->origin);
            return list;
        } catch (...) {
            reason = Reason();
        }
        NotePropertyListFailure(xmlData->origin, reason);
        if (errorString != nullptr) *errorString = NewUtf8String(reason);
        return nullptr;
    });
}
