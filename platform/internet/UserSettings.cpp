#include "internet/UserSettings.h"

#include <Carbon/InternetConfig.h>
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "applications/Handlers.h"
#include "files/FileSpecs.h"
#include "files/FileState.h"
#include "files/TextFile.h"
#include "foundation/PathStyles.h"
#include "foundation/TextLines.h"
#include "internet/Fonts.h"
#include "internet/MailIdentity.h"
#include "internet/Proxies.h"
#include "internet/Services.h"
#include "internet/StoredSettings.h"
#include "machine/Environment.h"
#include "machine/UserDirectories.h"

namespace Platform {

namespace {

// ---- Forms of values

// That of a text; there is none for an empty one, and for one that is too long.
OSErr MakeText(std::string_view text, std::string& value) {
    if (text.empty() || text.size() > 255) return icPrefNotFoundErr;
    value = std::string(1, static_cast<char>(text.size())).append(text);
    return noErr;
}

OSErr MakeBoolean(bool truth, std::string& value) {
    value.assign(1, truth ? '\1' : '\0');
    return noErr;
}

template <class Record>
std::string BytesOf(Record const& record) {
    return {reinterpret_cast<char const*>(&record), sizeof record};
}

// Copies as many whole characters of UTF-8 as there is room for.
template <std::size_t room>
void CopyPascal(std::string_view text, unsigned char (&to)[room]) {
    std::size_t length = std::min(text.size(), room - 1);
    if (length < text.size()) {
        while (length > 0 && (text[length] & 0xC0) == 0x80) --length;
    }
    to[0] = static_cast<unsigned char>(length);
    std::memcpy(to + 1, text.data(), length);
}

// ---- Files

// Gets the text of a file below a folder, which may be empty; empty where there is none.
OSErr GetTextBelow(std::string const& folder, std::string_view file, std::string& text) {
    text.clear();
    return folder.empty() ? OSErr{noErr} : GetTextFile(JoinPaths(folder, file), text);
}

// ---- The e-mail address

OSErr GetThunderbirdEmail(std::string& email) {
    std::string const home = HomeFolder();
    if (home.empty()) return noErr;
    std::string const folder = JoinPaths(home, ".thunderbird");
    std::string text;
    if (OSErr const error = GetTextBelow(folder, "profiles.ini", text); error != noErr) return error;
    std::string const profile = DefaultProfileIn(text);
    if (profile.empty() || profile.find('\0') != profile.npos) return noErr;
    OSErr const error =
        GetTextBelow(profile.starts_with('/') ? profile : JoinPaths(folder, profile), "prefs.js", text);
    email = ThunderbirdEmailIn(text);
    return error;
}

// The file in the home counts, as it does for git.
OSErr GetGitEmail(std::string& email) {
    std::string text;
    OSErr error = GetTextBelow(HomeFolder(), ".gitconfig", text);
    auto found = GitEmailIn(text);
    if (error == noErr && !found) {
        error = GetTextBelow(UserFolder("XDG_CONFIG_HOME", ".config"), "git/config", text);
        found = GitEmailIn(text);
    }
    email = found.value_or(std::string());
    return error;
}

OSErr GetEmail(std::string& value) {
    if (MakeText(Variable("EMAIL"), value) == noErr) return noErr;
    std::string email;
    if (OSErr const error = GetThunderbirdEmail(email); error != noErr) return error;
    if (MakeText(email, value) == noErr) return noErr;
    if (OSErr const error = GetGitEmail(email); error != noErr) return error;
    return MakeText(email, value);
}

// ---- The others

// What the user database says before the first comma.
OSErr GetRealName(std::string& value) {
    std::string const gecos = CurrentUser().gecos;
    return MakeText(Trimmed(std::string_view(gecos).substr(0, gecos.find(','))), value);
}

OSErr GetSignature(std::string& value) {
    std::string const home = HomeFolder();
    if (home.empty()) return icPrefNotFoundErr;
    SeenItem item;
    std::shared_ptr<std::string const> text;
    OSErr error = SeeItem(JoinPaths(home, ".signature"), item);
    if (error == noErr) error = ReadTextFile(item.path, text);
    if (text) value = *text;
    return error == noErr || WasGivenUp(error) ? error : OSErr{icPrefNotFoundErr};
}

std::string HostOf(ProxyKind kind) { return ProxyHost(kind, Variable); }

OSErr GetDownloadFolder(std::string& value) {
    std::string path;
    if (OSErr const error = GetUserDirectory("DOWNLOAD", path); error != noErr) return error;
    if (path.empty()) return icPrefNotFoundErr;
    ICFileSpec spec{};
    spec.fss = MakeSpecOfPlace(path);
    value = BytesOf(spec);
    return noErr;
}

OSErr GetMonospace(std::string& value) {
    ChosenFont font;
    if (OSErr const error = GetFont("monospace", font); error != noErr) return error;
    ICFontRecord record{};
    record.size = font.size;
    record.face = font.face;
    CopyPascal(font.name, record.font);
    value = BytesOf(record);
    return noErr;
}

OSErr GetServices(std::string& value) {
    std::string text;
    if (OSErr const error = GetTextFile(MachinePath("etc/services"), text); error != noErr) return error;
    if (text.empty()) return icPrefNotFoundErr;
    value = PackServices(ServicesIn(text));
    return noErr;
}

// The scheme in small letters, as types have it; empty for what is none.
std::string SchemeIn(std::string_view name) {
    std::string scheme;
    for (char const character : name) {
        bool const isCapital = character >= 'A' && character <= 'Z';
        char const letter = isCapital ? static_cast<char>(character + 32) : character;
        bool const belongs = (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') ||
                             letter == '+' || letter == '-' || letter == '.';
        if (!belongs) return {};
        scheme += letter;
    }
    return scheme;
}

OSErr GetHelper(std::string_view name, std::string& value) {
    std::string const scheme = SchemeIn(name);
    if (scheme.empty()) return icPrefNotFoundErr;
    HandlingApplication application;
    if (OSErr const error = GetHandler("x-scheme-handler/" + scheme, application); error != noErr)
        return error;
    if (application.creator == 0) return icPrefNotFoundErr;
    ICAppSpec spec{};
    spec.fCreator = application.creator;
    CopyPascal(application.name, spec.name);
    value = BytesOf(spec);
    return noErr;
}

struct Source {
    std::string_view key;
    OSErr (*get)(std::string& value);
};

constexpr Source kSources[] = {
    {"Email", GetEmail},
    {"RealName", GetRealName},
    {"Signature", GetSignature},
    {"UseSocks", [](std::string& value) { return MakeBoolean(!HostOf(ProxyKind::Socks).empty(), value); }},
    {"SocksHost", [](std::string& value) { return MakeText(HostOf(ProxyKind::Socks), value); }},
    {"UseHTTPProxy", [](std::string& value) { return MakeBoolean(!HostOf(ProxyKind::Http).empty(), value); }},
    {"HTTPProxyHost", [](std::string& value) { return MakeText(HostOf(ProxyKind::Http), value); }},
    {"UseFTPProxy", [](std::string& value) { return MakeBoolean(!HostOf(ProxyKind::Ftp).empty(), value); }},
    {"FTPProxyHost", [](std::string& value) { return MakeText(HostOf(ProxyKind::Ftp), value); }},
    {"DownloadFolder", GetDownloadFolder},
    {"PrinterFont", GetMonospace},
    {"ScreenFont", GetMonospace},
    {"ListFont", GetMonospace},
    {"Services", GetServices},
};

}  // namespace

OSErr GetUserSetting(std::string_view key, std::string& value) {
    constexpr std::string_view helper = "Helper\xA5";  // before the scheme
    if (EqualKeys(key.substr(0, helper.size()), helper)) return GetHelper(key.substr(helper.size()), value);
    for (Source const& source : kSources) {
        if (EqualKeys(key, source.key)) return source.get(value);
    }
    return icPrefNotFoundErr;
}

}  // namespace Platform
