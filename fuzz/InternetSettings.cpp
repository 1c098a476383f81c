// Any bytes as each of the files that Internet settings are read from, and as what is stored of them.

#include <Carbon/InternetConfig.h>
#include <Carbon/MacErrors.h>
#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <set>
#include <utility>

#include "Invariants.h"
#include "internet/MailIdentity.h"
#include "internet/Proxies.h"
#include "internet/Services.h"
#include "internet/StoredSettings.h"
#include "machine/UserDirectories.h"

using namespace Platform;

namespace {

void HoldServices(std::string_view text) {
    auto const services = ServicesIn(text);
    std::set<std::pair<std::string, UInt16>> seen;
    std::size_t bytes = 2;
    for (InternetService const& service : services) {
        Fuzz::Hold(!service.name.empty() && service.name.size() <= 255, "a name fits a Pascal string");
        Fuzz::Hold(service.flags >= 1 && service.flags <= 3, "a service has a protocol");
        Fuzz::Hold(seen.insert({service.name, service.port}).second, "a name and a port are one service");
        bytes += service.name.size() + 5;
    }
    Fuzz::Hold(std::is_partitioned(services.begin(), services.end(),
                                   [](auto& service) { return service.name.size() >= 4; }),
               "short names come last");
    Fuzz::Hold(PackServices(services).size() == bytes, "services are packed without gaps");
}

void HoldProxies(std::string_view text) {
    for (ProxyKind const kind : {ProxyKind::Socks, ProxyKind::Http, ProxyKind::Ftp}) {
        std::string const host = ProxyHostIn(text, kind, ProxyKind::Http);
        Fuzz::Hold(host.find_first_of("/?#@") == host.npos, "no path, user or password is left");
        Fuzz::Hold(host.size() <= text.size(), "a host is a part of its URL");
    }
}

// What a layout's value has for a size; 0 where it varies.
std::size_t SizeOf(SettingLayout layout) {
    switch (layout) {
        case SettingLayout::Boolean:
            return 1;
        case SettingLayout::FileSpec:
            return sizeof(ICFileSpec);
        case SettingLayout::Font:
            return sizeof(ICFontRecord);
        case SettingLayout::Application:
            return sizeof(ICAppSpec);
        default:
            return 0;
    }
}

void HoldStored(std::string_view stored) {
    for (auto const layout : {SettingLayout::PascalString, SettingLayout::Boolean, SettingLayout::FileSpec,
                              SettingLayout::Font, SettingLayout::Application, SettingLayout::Bytes}) {
        std::string value;
        OSErr const error = NativeSetting(layout, stored, value);
        Fuzz::Hold(error == noErr || error == icPrefDataErr, "a stored value is one, or it is spoilt");
        if (error != noErr) continue;
        std::size_t const size = SizeOf(layout);
        Fuzz::Hold(size == 0 || value.size() == size, "a value has the size of its layout");
        Fuzz::Hold(layout != SettingLayout::PascalString ||
                       value.size() == static_cast<unsigned char>(value[0]) + std::size_t{1},
                   "a text is as long as it says");
    }
}

// A list as the dictionary that settings are stored in.
void HoldList(std::string_view text) {
    CFDataRef const data = CFDataCreate(kCFAllocatorDefault, reinterpret_cast<UInt8 const*>(text.data()),
                                        static_cast<CFIndex>(text.size()));
    CFPropertyListRef const list = CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data, 0, nullptr);
    CFRelease(data);
    for (std::string_view const key :
         {"Email", "UseSocks", "PrinterFont", "Helper\xA5mailto", "Services", ""}) {
        std::string value;
        OSErr const error = StoredSettingIn(list, key, value);
        Fuzz::Hold(error == noErr || error == icPrefNotFoundErr || error == icPrefDataErr,
                   "a setting is stored, or not, or spoilt");
        Fuzz::Hold(list != nullptr || error == icPrefNotFoundErr, "nothing is stored in no list");
    }
    if (list != nullptr) CFRelease(list);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const text = Fuzz::AsQuery(data, size);
    HoldServices(text);
    HoldProxies(text);
    GitEmailIn(text);
    GitEmailIn("[user]\nemail = " + std::string(text));
    DefaultProfileIn(text);
    ThunderbirdEmailIn(text);
    TextPreferenceIn("user_pref(\"k\", \"" + std::string(text), "k");
    std::string const folder = UserDirectoryIn(text, "DOWNLOAD", "/home/u");
    Fuzz::Hold(folder.empty() || folder.front() == '/', "a folder of the user has an absolute path");
    UserDirectoryIn("XDG_DOWNLOAD_DIR=\"" + std::string(text), "DOWNLOAD", "/home/u");
    HoldStored(text);
    // Behind a record with room for an alias, whose fixed part is of the version that has paths.
    std::string alias(256, '\0');
    alias[106 + 4] = '\x7F';
    alias[106 + 7] = 2;
    HoldStored(alias + std::string(text));
    std::string const path = PathInAlias(alias.substr(106) + std::string(text));
    Fuzz::Hold(path.empty() || path.front() == '/', "an alias leads to an absolute path");
    HoldList(text);
    return 0;
}
