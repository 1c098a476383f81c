#include "applications/DesktopEntry.h"

#include "bundles/Bundle.h"
#include "foundation/TextLines.h"

namespace Platform {

namespace {

constexpr std::string_view kBlanks = " \t\n\r";

// The name in a line [Name]; empty for another line.
std::optional<std::string_view> GroupIn(std::string_view line) {
    line = Trimmed(line);
    if (!line.starts_with('[') || !line.ends_with(']')) return std::nullopt;
    return line.substr(1, line.size() - 2);
}

// Takes the words of a command one after the other.
class Words {
  public:
    explicit Words(std::string_view command) : rest(command) {}

    bool IsSound() const { return isSound; }

    // False at the end, and where a quote is not closed. `word` stays empty for one that field codes make up.
    bool Take(std::string& word) {
        word.clear();
        std::size_t const begin = rest.find_first_not_of(kBlanks);
        rest.remove_prefix(begin == std::string_view::npos ? rest.size() : begin);
        if (rest.empty()) return false;
        while (!rest.empty() && kBlanks.find(rest[0]) == std::string_view::npos) {
            if (rest[0] == '"') {
                TakeQuoted(word);
            } else {
                TakeCharacter(word);
            }
        }
        return isSound;
    }

  private:
    char Next() {
        char const next = rest[0];
        rest.remove_prefix(1);
        return next;
    }

    void TakeCharacter(std::string& word) {
        char const character = Next();
        if (character != '%') {
            word += character;
        } else if (!rest.empty() && kBlanks.find(rest[0]) == std::string_view::npos && Next() == '%') {
            word += '%';
        }
    }

    void TakeQuoted(std::string& word) {
        Next();
        while (!rest.empty() && rest[0] != '"') {
            constexpr std::string_view escaped = "\"`$\\";
            bool const isPair = rest[0] == '\\' && rest.size() > 1 && escaped.find(rest[1]) != escaped.npos;
            if (isPair) Next();
            word += Next();
        }
        isSound = !rest.empty();
        if (isSound) Next();
    }

    std::string_view rest;
    bool isSound = true;
};

}  // namespace

std::optional<std::string_view> ValueInGroup(std::string_view text, std::string_view group,
                                             std::string_view key) {
    bool isInside = false;
    text = WithoutByteOrderMark(text);
    while (!text.empty()) {
        std::string_view const line = TakeLine(text);
        if (auto const name = GroupIn(line)) {
            isInside = *name == group;
            continue;
        }
        std::size_t const sign = line.find('=');
        if (!isInside || line.starts_with('#') || sign == std::string_view::npos) continue;
        if (Trimmed(line.substr(0, sign)) == key) return Trimmed(line.substr(sign + 1));
    }
    return std::nullopt;
}

std::string Unescaped(std::string_view value) {
    constexpr std::string_view letters = "sntr\\", meanings = " \n\t\r\\";
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        std::size_t const which =
            value[i] == '\\' && i + 1 < value.size() ? letters.find(value[i + 1]) : std::string_view::npos;
        bool const isPair = which != std::string_view::npos;
        text += isPair ? meanings[which] : value[i];
        if (isPair) ++i;
    }
    return text;
}

std::vector<std::string> ElementsOf(std::string_view value) {
    std::vector<std::string> elements;
    std::string element;
    auto const end = [&] {
        if (!element.empty()) elements.push_back(Unescaped(element));
        element.clear();
    };
    for (std::size_t i = 0; i < value.size(); ++i) {
        bool const isPair = value[i] == '\\' && i + 1 < value.size();
        if (value[i] == ';') {
            end();
        } else if (isPair && value[i + 1] == ';') {
            element += value[++i];
        } else {
            element += value[i];
            if (isPair) element += value[++i];
        }
    }
    end();
    return elements;
}

std::vector<std::string> CommandOf(std::string_view exec) {
    std::vector<std::string> command;
    Words words(exec);
    for (std::string word; words.Take(word);) {
        if (!word.empty()) command.push_back(word);
    }
    if (!words.IsSound()) command.clear();
    return command;
}

DesktopEntry ParseDesktopEntry(std::string_view text) {
    auto const value = [text](std::string_view key) {
        return Unescaped(ValueInGroup(text, "Desktop Entry", key).value_or(std::string_view()));
    };
    DesktopEntry entry{value("Name"), value("Exec"), value("TryExec")};
    std::string const creator = value("X-Creator-Code");
    if (creator.size() == 4) entry.creator = PackageCode(creator.data());
    entry.isApplication = value("Type") == "Application";
    entry.isHidden = value("Hidden") == "true";
    return entry;
}

}  // namespace Platform
