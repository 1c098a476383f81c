#include "internet/Proxies.h"

#include <algorithm>

#include "foundation/TextLines.h"

namespace Platform {

namespace {

// A scheme in small letters.
std::string Lowered(std::string_view scheme) {
    std::string letters(scheme);
    for (char& letter : letters) {
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter + 32);
    }
    return letters;
}

bool IsOfKind(std::string_view scheme, ProxyKind kind) {
    constexpr std::string_view socks[] = {"socks", "socks4", "socks4a", "socks5", "socks5h"};
    std::string const name = Lowered(scheme);
    if (kind == ProxyKind::Socks)
        return std::find(std::begin(socks), std::end(socks), name) != std::end(socks);
    return name == "http" || name == "https";
}

// The value of the variable that says it for a kind alone.
std::string OwnValue(ProxyKind kind, VariableLookUp const& variable) {
    if (kind == ProxyKind::Http) return variable("http_proxy");
    bool const isSocks = kind == ProxyKind::Socks;
    std::string value = variable(isSocks ? "socks_proxy" : "ftp_proxy");
    return value.empty() ? variable(isSocks ? "SOCKS_PROXY" : "FTP_PROXY") : value;
}

}  // namespace

std::string ProxyHostIn(std::string_view url, ProxyKind kind, ProxyKind unnamed) {
    url = Trimmed(url);
    std::size_t const colon = url.find("://");
    bool const isOfKind = colon != url.npos ? IsOfKind(url.substr(0, colon), kind)
                                            : (kind == ProxyKind::Socks) == (unnamed == ProxyKind::Socks);
    if (!isOfKind) return {};
    if (colon != url.npos) url.remove_prefix(colon + 3);
    url = url.substr(0, url.find_first_of("/?#"));
    std::size_t const at = url.rfind('@');
    if (at != url.npos) url.remove_prefix(at + 1);
    return std::string(url.starts_with(':') ? std::string_view() : url);
}

std::string ProxyHost(ProxyKind kind, VariableLookUp const& variable) {
    std::string const own = OwnValue(kind, variable);
    if (!own.empty()) return ProxyHostIn(own, kind, kind);
    std::string all = variable("all_proxy");
    if (all.empty()) all = variable("ALL_PROXY");
    return ProxyHostIn(all, kind, ProxyKind::Http);
}

}  // namespace Platform
