#include "internet/Proxies.h"

#include <gtest/gtest.h>

#include <map>

using namespace Platform;

namespace {

using Variables = std::map<std::string, std::string>;

std::string Host(ProxyKind kind, Variables const& variables) {
    return ProxyHost(kind, [&](char const* name) {
        auto const found = variables.find(name);
        return found == variables.end() ? std::string() : found->second;
    });
}
std::string SocksHost(std::string const& value) { return Host(ProxyKind::Socks, {{"socks_proxy", value}}); }

}  // namespace

TEST(Proxies, OfSocksHaveItsSchemes) {
    for (char const* const scheme : {"socks", "socks4", "socks4a", "socks5", "socks5h", "SOCKS5"})
        EXPECT_EQ("h:1080", SocksHost(scheme + std::string("://h:1080"))) << scheme;
    for (char const* const scheme : {"http", "socks6", "", "socks5 "})
        EXPECT_EQ("", SocksHost(scheme + std::string("://h:1080"))) << scheme;
    EXPECT_EQ("h:1080", SocksHost("h:1080"));
}

TEST(Proxies, AreHostsWithPorts) {
    EXPECT_EQ("h:1", SocksHost("socks://user:secret@h:1/path"));
    EXPECT_EQ("h:1", SocksHost("socks://user:a@b@h:1?query"));
    EXPECT_EQ("h:1", SocksHost(" h:1/ "));
    EXPECT_EQ("h", SocksHost("socks5://h"));
    EXPECT_EQ("[::1]:1080", SocksHost("socks5://[::1]:1080/"));
    for (char const* const nothing : {"socks5://", "socks5://:1080", "socks5:///h", "user@", "/"})
        EXPECT_EQ("", SocksHost(nothing)) << nothing;
}

TEST(Proxies, OfOneKindComeBeforeThoseOfAll) {
    Variables const variables{{"all_proxy", "socks5://all:1"}, {"socks_proxy", "socks:1"}};
    EXPECT_EQ("socks:1", Host(ProxyKind::Socks, variables));
    EXPECT_EQ("all:1", Host(ProxyKind::Socks, {{"all_proxy", "socks5://all:1"}}));
    EXPECT_EQ("",
              Host(ProxyKind::Socks, {{"all_proxy", "socks5://all:1"}, {"socks_proxy", "http://other:1"}}));
}

TEST(Proxies, OfAllAreOfTheKindOfTheirScheme) {
    Variables const socks{{"all_proxy", "socks5h://h:1"}}, web{{"all_proxy", "http://h:2"}},
        plain{{"all_proxy", "h:3"}};
    EXPECT_EQ("h:1", Host(ProxyKind::Socks, socks));
    EXPECT_EQ("", Host(ProxyKind::Http, socks));
    EXPECT_EQ("", Host(ProxyKind::Ftp, socks));
    EXPECT_EQ("", Host(ProxyKind::Socks, web));
    EXPECT_EQ("h:2", Host(ProxyKind::Http, web));
    EXPECT_EQ("h:2", Host(ProxyKind::Ftp, web));
    EXPECT_EQ("", Host(ProxyKind::Socks, plain));
    EXPECT_EQ("h:3", Host(ProxyKind::Http, plain));
}

TEST(Proxies, MayBeInCapitals) {
    EXPECT_EQ("h", Host(ProxyKind::Socks, {{"SOCKS_PROXY", "h"}}));
    EXPECT_EQ("small", Host(ProxyKind::Socks, {{"SOCKS_PROXY", "h"}, {"socks_proxy", "small"}}));
    EXPECT_EQ("h", Host(ProxyKind::Ftp, {{"FTP_PROXY", "http://h"}}));
    EXPECT_EQ("h", Host(ProxyKind::Socks, {{"ALL_PROXY", "socks://h"}}));
    EXPECT_EQ("small", Host(ProxyKind::Http, {{"ALL_PROXY", "h"}, {"all_proxy", "small"}}));
}

TEST(Proxies, OfTheWebAreNotInCapitals) {
    EXPECT_EQ("", Host(ProxyKind::Http, {{"HTTP_PROXY", "h"}}));
    EXPECT_EQ("h:80", Host(ProxyKind::Http, {{"http_proxy", "https://h:80"}}));
}

TEST(Proxies, ThatNobodySetAreNone) {
    for (ProxyKind const kind : {ProxyKind::Socks, ProxyKind::Http, ProxyKind::Ftp})
        EXPECT_EQ("", Host(kind, {}));
}
