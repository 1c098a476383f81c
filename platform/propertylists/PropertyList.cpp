// The formats of property lists: which one some bytes are in.

#include <Carbon/MacErrors.h>
#include <CoreFoundation/CFPropertyList.h>
#include <CoreFoundation/CFURL.h>

#include <algorithm>
#include <string>

#include "files/FileFailure.h"
#include "files/WholeFile.h"
#include "foundation/Data.h"
#include "foundation/Held.h"
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
            // Nothing may stand before an XML declaration, but white space often does.
            std::string_view const xml = text.substr(start);
            auto const lines = static_cast<std::size_t>(std::ranges::count(text.substr(0, start), '\n'));
            return ReadXmlPropertyList({reinterpret_cast<UInt8 const*>(xml.data()), xml.size()},
                                       list.IsKnownToBeUtf8(), lines);
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

}  // namespace

std::string_view Excerpt(std::string_view text) {
    constexpr std::size_t most = 40;
    if (text.size() <= most) return text;
    std::size_t end = most;
    while (end > 0 && (text[end] & 0xC0) == 0x80) --end;
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
    Held<__CFURL const> const url(NewURL(file, false));
    Held<__CFData const> const data(ReadWholeFile(url.get(), error));
    if (!data) return nullptr;
    return CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data.get(), kCFPropertyListImmutable,
                                           nullptr);
}

}  // namespace Platform

CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef, CFDataRef xmlData, UInt32 mutabilityOption,
                                                  CFStringRef* errorString) {
    using namespace Platform;
    if (errorString != nullptr) *errorString = nullptr;
    return Guarded<CFPropertyListRef>(nullptr, [&]() -> CFPropertyListRef {
        auto const refuse = [&](std::string const& reason) {
            if (errorString != nullptr) *errorString = NewUtf8String(reason);
            return nullptr;
        };
        try {
            if (mutabilityOption != kCFPropertyListImmutable)
                throw PropertyListError("there are no property lists that can be changed");
            CFPropertyListRef const list = ReadPropertyList(xmlData->Bytes());
            NotePropertyList(xmlData->origin);
            return list;
        } catch (PropertyListError const& error) {
            NotePropertyListFailure(xmlData->origin, error.what());
            return refuse(error.what());
        } catch (ReadingStopped const&) {
            return refuse("the reading was stopped");
        } catch (std::bad_alloc const&) {
            NoteFileFailure(memFullErr, xmlData->origin);
            return refuse("there is not enough memory");
        }
    });
}
