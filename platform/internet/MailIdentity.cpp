#include "internet/MailIdentity.h"

#include <algorithm>

#include "foundation/AsciiCase.h"
#include "foundation/TextLines.h"

namespace Platform {

namespace {

bool Take(std::string_view& text, std::string_view beginning) {
    if (!text.starts_with(beginning)) return false;
    text.remove_prefix(beginning.size());
    return true;
}

void SkipWhite(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t\r"), line.size()));
}

// ---- git

bool IsKeyCharacter(char character) {
    char const letter = LowerCase(character);
    return (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') || letter == '-';
}

// Reads a configuration from its front to its end.
class GitConfig {
  public:
    using TextOf = std::function<std::string(std::string_view path)>;

    GitConfig(std::string_view text, TextOf const& included)
        : rest(WithoutByteOrderMark(text)), textOf(included) {}

    std::optional<std::string> Email() {
        while (!rest.empty()) {
            line = TakeLine(rest);
            SkipWhite(line);
            while (Take(line, "[")) TakeSection();
            if (section != Section::Other) TakeVariable();
        }
        return std::move(email);
    }

  private:
    std::string_view rest;  // behind the line
    std::string_view line;  // what is left of it
    TextOf const& textOf;   // may be empty
    enum class Section { Other, User, Include } section = Section::Other;
    std::optional<std::string> email;

    // A section with a name of its own in quotes is another one.
    void TakeSection() {
        std::size_t end = 0;
        bool isQuoted = false;
        for (; end < line.size() && (isQuoted || line[end] != ']'); ++end) {
            if (line[end] == '"') isQuoted = !isQuoted;
            if (isQuoted && line[end] == '\\') ++end;
        }
        bool const isClosed = end < line.size();
        section = isClosed ? SectionOf(line.substr(0, end)) : Section::Other;
        line.remove_prefix(isClosed ? end + 1 : line.size());
        SkipWhite(line);
    }

    static Section SectionOf(std::string_view name) {
        if (EqualIgnoringCase(name, "user")) return Section::User;
        return EqualIgnoringCase(name, "include") ? Section::Include : Section::Other;
    }

    void TakeVariable() {
        auto const keyEnd = std::find_if_not(line.begin(), line.end(), IsKeyCharacter);
        std::string_view const key = line.substr(0, static_cast<std::size_t>(keyEnd - line.begin()));
        line.remove_prefix(key.size());
        SkipWhite(line);
        if (key.empty() || !Take(line, "=")) return;
        // The value is read also where it is not wanted: it may go on in the next line.
        auto value = TakeValue();
        if (!value) return;
        if (section == Section::User && EqualIgnoringCase(key, "email")) email = std::move(value);
        if (section == Section::Include && EqualIgnoringCase(key, "path")) Include(*value);
    }

    void Include(std::string const& path) {
        if (!textOf) return;
        std::string const text = textOf(path);
        auto included = GitEmailIn(text);
        if (included) email = std::move(included);
    }

    // Empty when it is no value. A quoted part keeps its blanks, and may hold what begins a comment.
    std::optional<std::string> TakeValue() {
        std::string value;
        std::size_t kept = 0;  // bytes that stay though they be blanks at the end
        bool isQuoted = false;
        SkipWhite(line);
        while (!line.empty() && (isQuoted || (line.front() != '#' && line.front() != ';'))) {
            char const character = line.front();
            line.remove_prefix(1);
            if (character == '"') {
                isQuoted = !isQuoted;
                kept = value.size();
            } else if (character == '\\' && line.empty()) {
                line = TakeLine(rest);
            } else if (character == '\\') {
                auto const meant = Escaped(line.front());
                if (!meant) return std::nullopt;
                line.remove_prefix(1);
                value += *meant;
                kept = value.size();
            } else {
                bool const isBlank = character == ' ' || character == '\t';
                if (isBlank && value.empty() && !isQuoted) continue;
                value += character;
                if (isQuoted || !isBlank) kept = value.size();
            }
        }
        value.resize(kept);
        return isQuoted ? std::nullopt : std::optional(std::move(value));
    }

    static std::optional<char> Escaped(char character) {
        switch (character) {
            case '"':
            case '\\':
                return character;
            case 'n':
                return '\n';
            case 't':
                return '\t';
            case 'b':
                return '\b';
            default:
                return std::nullopt;
        }
    }
};

// ---- Thunderbird

// What a section of a profiles.ini says.
struct Section {
    bool isInstallation = false;
    bool isProfile = false;
    bool isDefault = false;
    std::string_view folder;
};

// The text between the quotes at the front, which is taken.
std::optional<std::string> TakeQuoted(std::string_view& line) {
    if (!Take(line, "\"")) return std::nullopt;
    std::string text;
    while (!line.empty()) {
        char character = line.front();
        line.remove_prefix(1);
        if (character == '"') return text;
        if (character == '\\') {
            if (line.empty() || std::string_view("\"'\\").find(line.front()) == std::string_view::npos) break;
            character = line.front();
            line.remove_prefix(1);
        }
        text += character;
    }
    return std::nullopt;
}

// The text that a line of a prefs.js gives the key.
std::optional<std::string> TextOf(std::string_view line, std::string_view key) {
    SkipWhite(line);
    if (!Take(line, "user_pref")) return std::nullopt;
    SkipWhite(line);
    if (!Take(line, "(")) return std::nullopt;
    SkipWhite(line);
    if (TakeQuoted(line) != key) return std::nullopt;
    SkipWhite(line);
    if (!Take(line, ",")) return std::nullopt;
    SkipWhite(line);
    auto text = TakeQuoted(line);
    SkipWhite(line);
    return line.starts_with(')') ? text : std::nullopt;
}

// The first name of a list separated by commas.
std::string FirstOf(std::optional<std::string> const& list) {
    std::string_view const text = list ? *list : std::string_view();
    return std::string(Trimmed(text.substr(0, text.find(','))));
}

}  // namespace

std::optional<std::string> GitEmailIn(std::string_view config,
                                      std::function<std::string(std::string_view path)> const& textOf) {
    return GitConfig(config, textOf).Email();
}

std::string DefaultProfileIn(std::string_view profiles) {
    std::string_view ofInstallation, marked, first;
    Section section;
    // Counts what the section has said, which ends.
    auto const end = [&] {
        if (section.isInstallation && ofInstallation.empty()) ofInstallation = section.folder;
        if (section.isProfile && section.isDefault && marked.empty()) marked = section.folder;
        if (section.isProfile && first.empty()) first = section.folder;
    };
    while (!profiles.empty()) {
        std::string_view const line = Trimmed(TakeLine(profiles));
        if (line.starts_with('[')) {
            end();
            section = {line.starts_with("[Install"), line.starts_with("[Profile"), false, {}};
            continue;
        }
        std::size_t const sign = line.find('=');
        if (sign == line.npos) continue;
        std::string_view const key = Trimmed(line.substr(0, sign)), value = Trimmed(line.substr(sign + 1));
        if (key == "Path" && section.isProfile) section.folder = value;
        if (key == "Default" && section.isProfile) section.isDefault = value == "1";
        if (key == "Default" && section.isInstallation) section.folder = value;
    }
    end();
    std::string_view const other = marked.empty() ? first : marked;
    return std::string(ofInstallation.empty() ? other : ofInstallation);
}

std::optional<std::string> TextPreferenceIn(std::string_view preferences, std::string_view key) {
    std::optional<std::string> result;
    while (!preferences.empty()) {
        auto text = TextOf(TakeLine(preferences), key);
        if (text) result = std::move(text);
    }
    return result;
}

std::string ThunderbirdEmailIn(std::string_view preferences) {
    std::string account =
        TextPreferenceIn(preferences, "mail.accountmanager.defaultaccount").value_or(std::string());
    if (account.empty()) account = FirstOf(TextPreferenceIn(preferences, "mail.accountmanager.accounts"));
    if (account.empty()) return {};
    std::string const identity =
        FirstOf(TextPreferenceIn(preferences, "mail.account." + account + ".identities"));
    if (identity.empty()) return {};
    return TextPreferenceIn(preferences, "mail.identity." + identity + ".useremail").value_or(std::string());
}

}  // namespace Platform
