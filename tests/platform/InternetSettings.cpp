// Internet Config as it is asked for settings.

#include <Carbon/InternetConfig.h>
#include <Carbon/MacErrors.h>
#include <CoreFoundation/CoreFoundation.h>
#include <Platform/Items.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "platform/AliasBuilder.h"
#include "platform/OwnHome.h"
#include "support/Owned.h"
#include "support/Unprivileged.h"

using namespace std::string_literals;

namespace {

constexpr char kNone[] = "error -666";
constexpr char kSpoilt[] = "error -668";

// A connection, and what is asked through it.
class InternetSettings : public OwnHome {
  protected:
    InternetSettings() { EXPECT_EQ(noErr, ICStart(&instance, 0x516D7678)); }
    ~InternetSettings() override { EXPECT_EQ(noErr, ICStop(instance)); }

    static std::vector<unsigned char> Key(std::string_view name) {
        std::vector<unsigned char> key{static_cast<unsigned char>(name.size())};
        key.insert(key.end(), name.begin(), name.end());
        return key;
    }
    // The value, or the result code.
    std::string Get(std::string_view key) const {
        std::vector<char> buffer(100000);
        SInt32 size = 100000, asked = -1;
        ICAttr attributes = 7;
        OSStatus const status = ICGetPref(instance, Key(key).data(), &attributes, buffer.data(), &size);
        EXPECT_EQ(status, ICGetPref(instance, Key(key).data(), nullptr, nullptr, &asked)) << key;
        EXPECT_EQ(size, asked) << key;
        if (status == noErr) {
            EXPECT_EQ(0u, attributes);
            return {buffer.data(), static_cast<std::size_t>(size)};
        }
        EXPECT_EQ(0, size);
        EXPECT_EQ(0xFFFFFFFF, attributes);
        return "error " + std::to_string(status);
    }
    // The characters of a text.
    std::string Text(std::string_view key) const {
        std::string const value = Get(key);
        if (value.starts_with("error")) return value;
        EXPECT_EQ(static_cast<unsigned char>(value[0]) + 1u, value.size());
        return value.substr(1);
    }
    std::string PathOfDownloads() const {
        std::string const value = Get("DownloadFolder");
        if (value.starts_with("error")) return value;
        ICFileSpec spec;
        EXPECT_EQ(sizeof spec, value.size());
        std::memcpy(&spec, value.data(), sizeof spec);
        Owned<CFURLRef> const url(PlatformCreateSpecURL(&spec.fss, nullptr));
        return PathOf(url);
    }
    static void ExpectFailureOf(std::string const& path, std::string const& beginning) {
        char file[4096], reason[2000];
        EXPECT_TRUE(PlatformSettingsFailure(file, sizeof file, reason, sizeof reason));
        EXPECT_EQ(path, file);
        EXPECT_EQ(beginning, std::string(reason).substr(0, beginning.size()));
    }
    // Stores values, which are property lists, under their keys.
    void Store(std::string const& entries) const {
        Write("home/.config/com.apple.internetconfig.plist",
              "{\"Version 2.5.4\" = {\"ic-added\" = {" + entries + "};};}");
    }
    static std::string Data(std::string_view bytes) {
        constexpr char digits[] = "0123456789abcdef";
        std::string text = "{\"ic-data\" = <";
        for (unsigned char const byte : bytes) (text += digits[byte >> 4]) += digits[byte & 15];
        return text + ">; \"ic-attr\" = 0;};";
    }

    ICInstance instance = nullptr;
    // What git says in a folder without a repository.
    std::string GitsEmail() const {
        Variable const system("GIT_CONFIG_SYSTEM", here.Path("machine/etc/gitconfig"));
        FILE* const tool = popen(("cd '" + here.Path() + "' && git config user.email").c_str(), "re");
        std::string text;
        for (int byte = getc(tool); byte != EOF && byte != '\n'; byte = getc(tool))
            text += static_cast<char>(byte);
        int const status = pclose(tool);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) != 127) << "needs the package git";
        return text.empty() ? kNone : text;
    }

    Variable const gitFile{"GIT_CONFIG_GLOBAL", std::nullopt};
    Variable const noSystem{"GIT_CONFIG_NOSYSTEM", std::nullopt};
    Variable const email{"EMAIL", std::nullopt};
    Variable const socks{"socks_proxy", std::nullopt};
    Variable const socksInCapitals{"SOCKS_PROXY", std::nullopt};
    Variable const web{"http_proxy", std::nullopt};
    Variable const ftp{"ftp_proxy", std::nullopt};
    Variable const ftpInCapitals{"FTP_PROXY", std::nullopt};
    Variable const all{"all_proxy", std::nullopt};
    Variable const allInCapitals{"ALL_PROXY", std::nullopt};
};

}  // namespace

TEST_F(InternetSettings, AreAskedThroughAConnection) {
    ICInstance other = nullptr;
    ASSERT_EQ(noErr, ICStart(&other, 0));
    EXPECT_NE(instance, other);
    SInt32 size = 5;
    EXPECT_EQ(icPrefNotFoundErr, ICGetPref(other, Key("Email").data(), nullptr, nullptr, &size));
    EXPECT_EQ(noErr, ICStop(other));
    size = 5;
    EXPECT_EQ(paramErr, ICGetPref(other, Key("Email").data(), nullptr, nullptr, &size));
    EXPECT_EQ(0, size);
    EXPECT_EQ(paramErr, ICStop(other));
    EXPECT_EQ(paramErr, ICStop(nullptr));
    EXPECT_EQ(paramErr, ICStart(nullptr, 0));
}

TEST_F(InternetSettings, AreNotAskedForWithoutArguments) {
    email.Set("a@b");
    SInt32 size = -1;
    char byte;
    EXPECT_EQ(paramErr, ICGetPref(instance, nullptr, nullptr, nullptr, &size));
    EXPECT_EQ(paramErr, ICGetPref(instance, Key("Email").data(), nullptr, &byte, nullptr));
    size = -1;
    EXPECT_EQ(paramErr, ICGetPref(instance, Key("Email").data(), nullptr, &byte, &size));
}

TEST_F(InternetSettings, AreCutToTheRoom) {
    email.Set("a@b");
    ICAttr attributes = 7;
    char buffer[4] = {'x', 'x', 'x', 'x'};
    SInt32 size = 3;
    EXPECT_EQ(icTruncatedErr, ICGetPref(instance, Key("Email").data(), &attributes, buffer, &size));
    EXPECT_EQ(4, size);
    EXPECT_EQ(0u, attributes);
    EXPECT_EQ("\3a@x", std::string(buffer, 4));
    EXPECT_EQ(noErr, ICGetPref(instance, Key("Email").data(), &attributes, buffer, &size));
    EXPECT_EQ("\3a@b", std::string(buffer, 4));
}

TEST_F(InternetSettings, HaveKeysWithoutCase) {
    email.Set("a@b");
    EXPECT_EQ("a@b", Text("EMAIL"));
    EXPECT_EQ(kNone, Text("Emai"));
    EXPECT_EQ(kNone, Text("Emails"));
    EXPECT_EQ(kNone, Text(""));
    EXPECT_EQ(kNone, Text("Organization"));
    EXPECT_EQ(kNone, Text("ArchieAll"));
}

TEST_F(InternetSettings, OfTheAddressAreTheFirstThatIsSet) {
    EXPECT_EQ(kNone, Text("Email"));
    Write("home/.config/git/config", "[user]\nemail = config@git\n");
    EXPECT_EQ("config@git", Text("Email"));
    Write("home/.gitconfig", "[user]\nemail = home@git\n");
    EXPECT_EQ("home@git", Text("Email"));
    Write("home/.thunderbird/profiles.ini", "[Profile0]\nPath=p.default\n");
    EXPECT_EQ("home@git", Text("Email"));
    Write(
        "home/.thunderbird/p.default/prefs.js",
        "user_pref(\"mail.accountmanager.defaultaccount\", \"a\");\nuser_pref(\"mail.account.a.identities\", "
        "\"i\");\nuser_pref(\"mail.identity.i.useremail\", \"a@thunderbird\");\n");
    EXPECT_EQ("a@thunderbird", Text("Email"));
    email.Set("a@environment");
    EXPECT_EQ("a@environment", Text("Email"));
    Store("Email = " + Data("\10a@stored"));
    EXPECT_EQ("a@stored", Text("Email"));
}

TEST_F(InternetSettings, OfTheAddressMayBeInAProfileElsewhere) {
    Write("home/.thunderbird/profiles.ini", "[Install1]\nDefault=" + here.Path("elsewhere") + "\n");
    Write("elsewhere/prefs.js",
          "user_pref(\"mail.accountmanager.accounts\", \"a,b\");\nuser_pref(\"mail.account.a.identities\", "
          "\"i\");\nuser_pref(\"mail.identity.i.useremail\", \"a@elsewhere\");\n");
    EXPECT_EQ("a@elsewhere", Text("Email"));
}

TEST_F(InternetSettings, OfTheAddressFollowGitsFolder) {
    Write("other/git/config", "[user]\nemail = other@git\n");
    userFolder.Set(here.Path("other"));
    EXPECT_EQ("other@git", Text("Email"));
}

TEST_F(InternetSettings, OfTheAddressAreThoseOfGitsFiles) {
    std::string const files[] = {"machine/etc/gitconfig", "home/.config/git/config", "home/.gitconfig"};
    int number = 0;
    EXPECT_EQ(kNone, GitsEmail());
    for (std::string const& file : files) {
        std::string const address = std::to_string(++number) + "@git";
        Write(file, "\xEF\xBB\xBF[user]\nemail = " + address + "\n");
        EXPECT_EQ(address, Text("Email")) << file;
        EXPECT_EQ(address, GitsEmail()) << file;
    }
    gitFile.Set(here.Path("none"));
    EXPECT_EQ("1@git", Text("Email"));
    EXPECT_EQ("1@git", GitsEmail());
    gitFile.Set("");
    EXPECT_EQ("1@git", Text("Email"));
    EXPECT_EQ("1@git", GitsEmail());
    gitFile.Set(Write("other", "[user]\nemail = other@git\n"));
    EXPECT_EQ("other@git", Text("Email"));
    EXPECT_EQ("other@git", GitsEmail());
}

TEST_F(InternetSettings, OfTheAddressMayBeInFilesThatGitIncludes) {
    Write("home/.config/git/config", "[include]\npath = inner/a\n");
    Write("home/.config/git/inner/a", "[user]\nemail = a@git\n");
    Write("home/b", "\xEF\xBB\xBF[user]\nemail = b@git\n");
    EXPECT_EQ("a@git", Text("Email"));
    EXPECT_EQ("a@git", GitsEmail());
    for (std::string const& path : {"~/b"s, "../../b"s, here.Path("home/b")}) {
        Write("home/.config/git/config",
              "[include]\npath = inner/a\npath = \"" + path + "\"\npath = gone\n[user]\nname = x\n");
        EXPECT_EQ("b@git", Text("Email")) << path;
        EXPECT_EQ("b@git", GitsEmail()) << path;
    }
}

TEST_F(InternetSettings, OfTheAddressMayBeInTenFilesThatGitIncludes) {
    std::string lines = "[include]\n";
    for (int number = 1; number <= 11; ++number) {
        std::string const name = "i" + std::to_string(number);
        lines += "path = " + name + "\n";
        Write("home/" + name, "[user]\nemail = " + name + "@git\n");
    }
    Write("home/.gitconfig", lines);
    EXPECT_EQ("i10@git", Text("Email"));
}

TEST_F(InternetSettings, OfTheAddressHave255BytesAtMost) {
    email.Set(std::string(255, 'a'));
    EXPECT_EQ(std::string(255, 'a'), Text("Email"));
    email.Set(std::string(256, 'a'));
    EXPECT_EQ(kNone, Text("Email"));
}

TEST_F(InternetSettings, OfTheNameAreTheUserDatabases) {
    passwd const* const user = getpwuid(getuid());
    std::string name = user != nullptr ? user->pw_gecos : "";
    name = name.substr(0, name.find(','));
    EXPECT_EQ(name.empty() ? kNone : name, Text("RealName"));
}

TEST_F(InternetSettings, OfTheSignatureAreTheFileAsItIs) {
    EXPECT_EQ(kNone, Get("Signature"));
    Write("home/.signature", "-- \r\nMe\0\xE9\n"s);
    EXPECT_EQ("-- \r\nMe\0\xE9\n"s, Get("Signature"));
    Write("home/.signature", "");
    EXPECT_EQ("", Get("Signature"));
    Write("home/.signature", std::string(70000, 'a'));
    EXPECT_EQ(std::string(70000, 'a'), Get("Signature"));
}

TEST_F(InternetSettings, OfTheSignatureMayBeLargerThanFilesOfSettings) {
    std::filesystem::resize_file(Write("home/.signature", "me"), (4 << 20) + 1);
    SInt32 size = 0;
    EXPECT_EQ(noErr, ICGetPref(instance, Key("Signature").data(), nullptr, nullptr, &size));
    EXPECT_EQ((4 << 20) + 1, size);
}

TEST_F(InternetSettings, InFilesThatAreTooLargeFail) {
    std::string const services = Write("machine/etc/services", "http 80/tcp\n");
    std::string const git = Write("home/.gitconfig", "[user]\nemail = a@git\n");
    Write("machine/etc/gitconfig", "[user]\nemail = b@git\n");
    for (auto const& [key, path] : {std::pair("Services", services), std::pair("Email", git)}) {
        std::filesystem::resize_file(path, 4 << 20);
        EXPECT_FALSE(Get(key).starts_with("error"));
        std::filesystem::resize_file(path, (4 << 20) + 1);
        PlatformForgetFileFailure();
        EXPECT_EQ("error " + std::to_string(fileBoundsErr), Get(key));
        ExpectFailureOf(path, "it is too large");
    }
}

// Without them another place would answer.
TEST_F(InternetSettings, InAStoredFileThatCannotBeUsedFail) {
    email.Set("a@environment");
    EXPECT_EQ("a@environment", Text("Email"));
    std::string const list = Write("home/.config/com.apple.internetconfig.plist", "{a = ");
    PlatformForgetFileFailure();
    EXPECT_EQ(kSpoilt, Get("Email"));
    ExpectFailureOf(list, "it is no property list: ");
    std::filesystem::resize_file(list, SInt64{300} << 20);
    PlatformForgetFileFailure();
    EXPECT_EQ("error " + std::to_string(fileBoundsErr), Get("UseSocks"));
    ExpectFailureOf(list, "it is too large");
}

TEST_F(InternetSettings, OfAListThatIsNotTheirsAreNotLookedFor) {
    Write("home/.config/.GlobalPreferences.plist", "{a = ");
    email.Set("a@environment");
    EXPECT_EQ("a@environment", Text("Email"));
}

TEST_F(InternetSettings, InALinkThatLeadsNowhereAreNone) {
    here.MakeFolder("machine/etc");
    here.Link("machine/etc/services", "nothing");
    EXPECT_EQ(kNone, Get("Services"));
}

TEST_F(InternetSettings, OfTheSignatureThatMayNotBeReadAreNoneAndNoted) {
    std::filesystem::permissions(here.Path(), std::filesystem::perms::all);
    std::filesystem::permissions(Write("home/.signature", "me"), std::filesystem::perms::none);
    Unprivileged const user;
    PlatformForgetFileFailure();
    EXPECT_EQ(kNone, Get("Signature"));
    EXPECT_NE(noErr, PlatformFileFailure(nullptr, 0));
}

TEST_F(InternetSettings, OfProxiesAreTheEnvironments) {
    for (char const* const key : {"UseSocks", "UseHTTPProxy", "UseFTPProxy"})
        EXPECT_EQ("\0"s, Get(key)) << key;
    for (char const* const key : {"SocksHost", "HTTPProxyHost", "FTPProxyHost"})
        EXPECT_EQ(kNone, Get(key)) << key;
    socks.Set("socks5://s:1");
    web.Set("http://w:2");
    ftp.Set("http://f:3");
    for (char const* const key : {"UseSocks", "UseHTTPProxy", "UseFTPProxy"})
        EXPECT_EQ("\1", Get(key)) << key;
    EXPECT_EQ("s:1", Text("SocksHost"));
    EXPECT_EQ("w:2", Text("HTTPProxyHost"));
    EXPECT_EQ("f:3", Text("FTPProxyHost"));
    Store("UseSocks = " + Data("\0"s));
    EXPECT_EQ("\0"s, Get("UseSocks"));
    EXPECT_EQ("s:1", Text("SocksHost"));
}

TEST_F(InternetSettings, OfTheDownloadFolderAreTheUsers) {
    EXPECT_EQ(kNone, PathOfDownloads());
    Write("home/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Got\"\n");
    EXPECT_EQ(here.Path("home/Got"), PathOfDownloads()) << "it need not be there";
    here.MakeFolder("home/Got");
    EXPECT_EQ(here.Path("home/Got/"), PathOfDownloads());
    std::string const other = here.MakeFolder("other");
    Store("DownloadFolder = " + Data(std::string(106, '\0') + AliasOf(other)));
    EXPECT_EQ(other + "/", PathOfDownloads());
}

TEST_F(InternetSettings, OfFontsAreTheOneForMonospace) {
    std::string const font = Get("PrinterFont");
    ASSERT_EQ(260u, font.size()) << "needs fontconfig and a font";
    EXPECT_NE(0, font[4]);
    EXPECT_EQ(font, Get("ScreenFont"));
    EXPECT_EQ(font, Get("ListFont"));
    Store("PrinterFont = " + Data("\0\x0C\1\0\4Mono"s + std::string(251, '\0')));
    ICFontRecord stored;
    ASSERT_EQ(260u, Get("PrinterFont").size());
    std::memcpy(&stored, Get("PrinterFont").data(), sizeof stored);
    EXPECT_EQ(12, stored.size);
    EXPECT_EQ(0, std::memcmp("\4Mono", stored.font, 6));
    EXPECT_EQ(font, Get("ListFont"));
}

TEST_F(InternetSettings, OfServicesAreTheMachines) {
    EXPECT_EQ(kNone, Get("Services"));
    Write("machine/etc/services", "ftp 21/tcp\nhttp 80/tcp\nhttp 80/udp\n");
    EXPECT_EQ("\0\2\4http\0\x50\0\3\3ftp\0\x15\0\1"s, Get("Services"));
    Write("machine/etc/services", "# none\n");
    EXPECT_EQ("\0\0"s, Get("Services"));
    Store("Services = " + Data("\7"));
    EXPECT_EQ("\7", Get("Services"));
}

TEST_F(InternetSettings, OfHelpersThatNobodyChoseAreNone) {
    EXPECT_EQ(kNone, Get("Helper\xA5no-such-scheme"));
    EXPECT_EQ(kNone, Get("Helper\xA5"));
    EXPECT_EQ(kNone, Get("Helper\xA5../a"));
    EXPECT_EQ(kNone, Get("Helper"));
}

TEST_F(InternetSettings, OfHelpersMayBeStored) {
    Store("\"Helper\u2022mailto\" = " + Data("MAIL\6Mailer" + std::string(57, '\0')));
    ICAppSpec spec;
    std::string const value = Get("helper\xA5MAILTO");
    ASSERT_EQ(sizeof spec, value.size()) << value;
    std::memcpy(&spec, value.data(), sizeof spec);
    EXPECT_EQ(0x4D41494Cu, +spec.fCreator);
    EXPECT_EQ(0, std::memcmp("\6Mailer", spec.name, 8));
}

TEST_F(InternetSettings, ThatAreStoredAreOfAnyKey) {
    Store("\"My own\" = " + Data("abc") + "ArchieAll = " + Data("\0\1\1a"s) +
          "Organization = " + Data("\2Us"));
    EXPECT_EQ("abc", Get("My own"));
    EXPECT_EQ("abc", Get("MY OWN"));
    EXPECT_EQ("\0\1\1a"s, Get("ArchieAll"));
    EXPECT_EQ("Us", Text("Organization"));
    EXPECT_EQ(kNone, Get("My"));
}

TEST_F(InternetSettings, ThatAreStoredHaveTheirLayouts) {
    email.Set("a@b");
    Store("Email = " + Data("\5a@b") + "UseSocks = " + Data("") + "PrinterFont = " + Data("\0\x0C"s) +
          "DownloadFolder = " + Data("\1") + "\"Helper\u2022x\" = " + Data("MAIL"));
    for (char const* const key : {"Email", "UseSocks", "PrinterFont", "DownloadFolder", "Helper\xA5x"})
        EXPECT_EQ(kSpoilt, Get(key)) << key;
}

TEST_F(InternetSettings, ThatAreNoBytesAreSpoilt) {
    email.Set("a@b");
    for (char const* const entry : {"Email = abc;", "Email = {};", "Email = {\"ic-data\" = abc;};"}) {
        Store(entry);
        EXPECT_EQ(kSpoilt, Get("Email")) << entry;
        EXPECT_EQ("\0"s, Get("UseSocks")) << entry;
    }
    for (char const* const list :
         {"{\"Version 2.5.4\" = a;}", "{\"Version 2.5.4\" = {\"ic-added\" = (a);};}"}) {
        Write("home/.config/com.apple.internetconfig.plist", list);
        EXPECT_EQ(kSpoilt, Get("Email")) << list;
    }
    for (char const* const list : {"{\"Version 2.5.4\" = {};}", "{\"Version 2\" = a;}"}) {
        Write("home/.config/com.apple.internetconfig.plist", list);
        EXPECT_EQ("a@b", Text("Email")) << list;
    }
}

TEST_F(InternetSettings, WithoutAHomeAreTheMachines) {
    home.Set("/nonexistent");
    EXPECT_EQ(kNone, Get("Email"));
    EXPECT_EQ(kNone, Get("Signature"));
    EXPECT_EQ(kNone, Get("DownloadFolder"));
    Write("machine/etc/services", "http 80/tcp\n");
    EXPECT_EQ(11u, Get("Services").size());
}
