#pragma once

// The proxies that variables of the environment tell. Pure but for the environment that is passed.

#include <functional>
#include <string>
#include <string_view>

namespace Platform {

enum class ProxyKind { Socks, Http, Ftp };

/// The value of a variable; empty where there is none.
using VariableLookUp = std::function<std::string(char const* name)>;

/// The host of a URL of a proxy, with its port where it has one, without user, password and path. Empty for a
/// proxy of another kind: those of SOCKS have the scheme socks, socks4, socks4a, socks5 or socks5h, all
/// others http or https; one without a scheme is of the kind `unnamed`.
std::string ProxyHostIn(std::string_view url, ProxyKind kind, ProxyKind unnamed);

/// The host of the proxy of a kind: socks_proxy, http_proxy or ftp_proxy says it, else all_proxy, where one
/// without a scheme is one of HTTP. Names in small letters count before those in capitals; HTTP_PROXY does
/// not count at all, since a client can set it for programs that serve the web. Empty where there is none.
std::string ProxyHost(ProxyKind kind, VariableLookUp const& variable);

}  // namespace Platform
