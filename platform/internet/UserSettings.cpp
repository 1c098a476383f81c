#include "internet/UserSettings.h"

#include <Carbon/InternetConfig.h>
#include <Carbon/MacErrors.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "applications/Handlers.h"
#include "files/FileSpecs.h"
#include "files/FileState.h"
#include "files/SettingsFailure.h"
#include "files/TextFile.h"
#include "foundation/AsciiCase.h"
#include "foundation/PascalStrings.h"
#include "foundation/PathStyles.h"
#include "foundation/TextLines.h"
#include "internet/Fonts.h"
#include "internet/MailIdentity.h"
#include "internet/Proxies.h"
#include "internet/Records.h"
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

// ---- Files

// Gets the text of a file below a folder, which may be empty; empty where there is none.
OSErr GetTextBelow(std::string const& folder, std::string_view file, std::string& text) {
    text.clear();
    return folder.empty() ? OSErr{noErr} : GetSettingsFile(JoinPaths(folder, file), text);
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

// git's files of settings, those that count more in front.
std::vector<std::string> GitFiles() {
    std::vector<std::string> files;
    auto const add = [&](std::string const& folder, std::string_view file) {
        if (!folder.empty()) files.push_back(JoinPaths(folder, file));
    };
    if (char const* const own = std::getenv("GIT_CONFIG_GLOBAL")) {
        if (*own != '\0') files.emplace_back(own);
    } else {
        add(HomeFolder(), ".gitconfig");
        add(UserFolder("XDG_CONFIG_HOME", ".config"), "git/config");
    }
    files.push_back(MachinePath("etc/gitconfig"));
    return files;
}

// The file that one of git's files includes; empty where the path is of a form that is not known.
std::string IncludedFile(std::string const& file, std::string_view path) {
    if (path.empty() || path.find('\0') != path.npos) return {};
    if (path.starts_with('/')) return std::string(path);
    if (!path.starts_with('~')) return JoinPaths(FolderOfPath(file), path);
    std::string const home = HomeFolder();
    return path.starts_with("~/") && !home.empty() ? JoinPaths(home, path.substr(2)) : std::string();
}

OSErr GetGitEmail(std::string& email) {
    int left = 10;  // files that may be included
    for (std::string const& file : GitFiles()) {
        std::string text;
        OSErr error = GetSettingsFile(file, text);
        auto const found = GitEmailIn(text, [&](std::string_view path) {
            std::string const included = IncludedFile(file, path);
            std::string inner;
            if (error == noErr && !included.empty() && left-- > 0) error = GetSettingsFile(included, inner);
            return inner;
        });
        if (error != noErr) return error;
        if (!found) continue;
        email = *found;
        return noErr;
    }
    return noErr;
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
    if (error == noErr) error = ReadLongTextFile(item.path, text);
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

// A file that is there but cannot be read is a failure of its own: a list that merely ended would say
// nothing.
OSErr GetServices(std::string& value) {
    std::string const file = MachinePath("etc/services");
    SeenItem item;
    std::shared_ptr<std::string const> text;
    OSErr error = SeeItem(file, item);
    if (error == noErr) error = ReadTextFile(item.path, text);
    if (error == fnfErr || error == dirNFErr) return icPrefNotFoundErr;  // perhaps behind a link
    if (error != noErr) return WasGivenUp(error) ? error : NoteUnreadableSettings(file, error);
    value = PackServices(ServicesIn(*text));
    return noErr;
}

// The scheme in small letters, as types have it; empty for what is none.
std::string SchemeIn(std::string_view name) {
    std::string scheme;
    for (char const character : name) {
        char const letter = LowerCase(character);
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
    if (IsHelperKey(key)) return GetHelper(key.substr(kHelperKey.size()), value);
    for (Source const& source : kSources) {
        if (EqualIgnoringCase(key, source.key)) return source.get(value);
    }
    return icPrefNotFoundErr;
}

}  // namespace Platform
