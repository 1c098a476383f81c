#include "folders/FolderRules.h"

#include <algorithm>
#include <utility>

#include "foundation/PathStyles.h"
#include "foundation/TextLines.h"

namespace Platform {

namespace {

constexpr std::string_view kNameCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_";
constexpr std::string_view kFlorin = "ƒ";
constexpr std::array<std::string_view, kDomains> kDomainNames{"system", "local", "network", "user",
                                                              "classic"};

std::optional<Domain> DomainNamed(std::string_view name) {
    auto const found = std::find(kDomainNames.begin(), kDomainNames.end(), name);
    if (found == kDomainNames.end()) return std::nullopt;
    return static_cast<Domain>(found - kDomainNames.begin());
}

// What keeps memory in bounds, whatever the text is.
constexpr std::size_t kLongestPath = 4096;  // with all variables replaced
constexpr std::size_t kMostPaths = 100;     // of a type in a domain
constexpr std::size_t kMostVariables = 100;

// The code of four characters of ASCII and florins.
std::optional<OSType> TypeNamed(std::string_view name) {
    constexpr OSType florin = 0xC4;
    OSType code = 0;
    int characters = 0;
    for (; !name.empty() && characters < 4; ++characters) {
        bool const isFlorin = name.starts_with(kFlorin);
        auto const byte = static_cast<unsigned char>(name.front());
        if (!isFlorin && (byte < 0x20 || byte > 0x7E)) return std::nullopt;
        code = code << 8 | (isFlorin ? florin : byte);
        name.remove_prefix(isFlorin ? kFlorin.size() : 1);
    }
    return characters == 4 && name.empty() ? std::optional(code) : std::nullopt;
}

// A name that a text begins with, behind its '$'; taken off the text with its braces. Empty where none is
// written there.
std::string_view TakeVariableName(std::string_view& text) {
    bool const hasBraces = text.starts_with('{');
    std::string_view const rest = text.substr(hasBraces ? 1 : 0);
    std::string_view const name = rest.substr(0, rest.find_first_not_of(kNameCharacters));
    bool const isWhole = !hasBraces || rest.substr(name.size()).starts_with('}');
    if (name.empty() || !isWhole) return {};
    text.remove_prefix(name.size() + (hasBraces ? 2 : 0));
    return name;
}

// Replaces the variables of a text by what `value` gives for their names. False where a '$' has no name
// behind it, `value` gives nothing, or the result is too long for a path.
template <class Value>
bool ReplaceVariables(std::string_view text, std::string& result, Value const& value) {
    while (true) {
        std::size_t const sign = text.find('$');
        result += text.substr(0, sign);
        if (result.size() > kLongestPath) return false;
        if (sign == text.npos) return true;
        text.remove_prefix(sign + 1);
        std::string_view const name = TakeVariableName(text);
        if (name.empty()) return false;
        std::string const replacement = value(name);
        if (replacement.empty()) return false;
        result += replacement;
    }
}

bool HasHome(std::string_view text) { return text == "~" || text.starts_with("~/"); }

// Whether a path is written as one: absolute, with variables that have names.
bool IsWrittenWell(std::string_view path) {
    std::string ignored;
    bool const begins = path.starts_with('/') || path.starts_with('$') || HasHome(path);
    return begins && path.find('\0') == path.npos &&
           ReplaceVariables(path, ignored, [](std::string_view) { return "x"; });
}

std::string Quoted(std::string_view text) {
    constexpr std::size_t most = 100;
    std::string quoted = "\"";
    quoted += text.substr(0, most);
    return quoted += text.size() > most ? "…\"" : "\"";
}

}  // namespace

std::string DisabledPartner(std::string const& folder) {
    return std::string(WithoutEndSeparators(folder)) + " (Disabled)";
}

std::optional<std::string> PathWithVariables(std::string_view text, VariableValue const& value) {
    std::string path;
    if (HasHome(text)) {
        path = value("HOME");
        text.remove_prefix(1);
    }
    if (!ReplaceVariables(text, path, value) || !path.starts_with('/')) return std::nullopt;
    return path;
}

// Reads a text line by line.
class FolderRulesReader {
  public:
    FolderRulesReader(FolderRules& owner, bool mayAdd, std::vector<std::string>& wrong)
        : rules(owner), mayAddTypes(mayAdd), mistakes(wrong) {}

    void Read(std::string_view text) {
        if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
        while (!text.empty() && mistakes.size() < FolderRules::kMostMistakes) {
            ++number;
            ReadLine(Trimmed(TakeLine(text)));
        }
    }

  private:
    enum class Section : UInt8 { None, Type, Variables, Wrong };

    FolderRules& rules;
    bool const mayAddTypes;
    std::vector<std::string>& mistakes;
    int number = 0;
    Section section = Section::None;
    OSType type = 0;
    // What this text has told of so far, so that its first line replaces and its others add.
    std::map<std::pair<OSType, std::string>, bool> told;

    void Refuse(std::string const& why) { mistakes.push_back("line " + std::to_string(number) + ": " + why); }

    void ReadLine(std::string_view line) {
        if (line.empty() || line.starts_with('#')) return;
        if (line.starts_with('[')) return BeginSection(line);
        if (section == Section::Wrong) return;  // one mistake is enough
        std::size_t const sign = line.find('=');
        if (sign == line.npos) return Refuse(Quoted(line) + " is neither [TYPE] nor KEY = VALUE");
        std::string_view const key = Trimmed(line.substr(0, sign)), value = Trimmed(line.substr(sign + 1));
        if (section == Section::None) return Refuse(Quoted(key) + " stands before any [TYPE]");
        if (section == Section::Variables) return ReadVariable(key, value);
        ReadRule(key, value);
    }

    void BeginSection(std::string_view line) {
        section = Section::Wrong;
        if (!line.ends_with(']')) return Refuse(Quoted(line) + " has no ] at its end");
        std::string_view const name = line.substr(1, line.size() - 2);
        if (name == "variables") {
            section = Section::Variables;
            return;
        }
        auto const code = TypeNamed(name);
        if (!code || (!mayAddTypes && !rules.types.contains(*code)))
            return Refuse("there is no type of folder " + Quoted(name));
        section = Section::Type;
        type = *code;
        rules.types[type];
    }

    void ReadVariable(std::string_view name, std::string_view value) {
        if (name.empty() || name.find_first_not_of(kNameCharacters) != name.npos)
            return Refuse(Quoted(name) + " is no name of a variable");
        if (!IsWrittenWell(value)) return Refuse(NoPath(value));
        auto path = WithVariablesAbove(value);
        if (!path) return Refuse(Quoted(name) + " is longer than the 4096 bytes of a path");
        rules.variables[std::string(name)] = std::move(*path);
        if (rules.variables.size() > kMostVariables) Refuse("there are more than 100 variables");
    }

    // The variables that this table has set so far are replaced; others are left for whoever asks.
    // Empty where the result is too long.
    std::optional<std::string> WithVariablesAbove(std::string_view text) const {
        std::string result;
        bool const fits = ReplaceVariables(text, result, [&](std::string_view name) {
            auto const known = rules.variables.find(name);
            return known != rules.variables.end() ? known->second
                                                  : std::string("${").append(name).append("}");
        });
        return fits ? std::optional(std::move(result)) : std::nullopt;
    }

    void ReadPair(std::string_view value, FolderRules::Type& rule) {
        auto const pair = TypeNamed(value);
        if (!pair || !rules.types.contains(*pair))
            return Refuse("there is no type of folder " + Quoted(value));
        for (std::optional<OSType> next = pair; next; next = rules.types[*next].pair) {
            if (*next == type) return Refuse(Quoted(value) + " is a pair of this type itself");
        }
        rule.pair = pair;
    }

    void ReadRule(std::string_view key, std::string_view value) {
        FolderRules::Type& rule = rules.types[type];
        if (key == "usual") {
            auto const domain = DomainNamed(value);
            if (!domain) return Refuse(NoDomain(value));
            rule.usual = *domain;
        } else if (key == "pair") {
            ReadPair(value, rule);
        } else if (key == "every") {
            if (!HasTold(key)) ForgetFormerLines(rule);
            Add(key, value, rule.everyDomain);
        } else if (auto const domain = DomainNamed(key)) {
            Add(key, value, rule.lines[static_cast<std::size_t>(*domain)]);
        } else {
            Refuse(NoDomain(key));
        }
    }

    // Those of domains that this text has not told of.
    void ForgetFormerLines(FolderRules::Type& rule) const {
        for (std::size_t i = 0; i < kDomains; ++i) {
            if (!HasTold(kDomainNames[i])) rule.lines[i].reset();
        }
    }

    bool HasTold(std::string_view key) const { return told.contains({type, std::string(key)}); }

    void Add(std::string_view key, std::string_view path, FolderRules::Lines& lines) {
        if (!path.empty() && !IsWrittenWell(path)) return Refuse(NoPath(path));
        if (!HasTold(key)) lines.emplace();
        told[{type, std::string(key)}] = true;
        if (lines->size() == kMostPaths)
            return Refuse("there are more than 100 folders of one type and domain");
        if (!path.empty()) lines->emplace_back(path);
    }

    static std::string NoDomain(std::string_view name) {
        return Quoted(name) +
               " is none of the domains system, local, network, user and classic, nor every, usual, pair";
    }
    static std::string NoPath(std::string_view path) { return Quoted(path) + " is no absolute path"; }
};

void FolderRules::Read(std::string_view text, bool mayAddTypes, std::vector<std::string>& mistakes) {
    FolderRulesReader(*this, mayAddTypes, mistakes).Read(text);
}

FolderRules::Type const* FolderRules::Find(OSType type) const {
    auto const found = types.find(type);
    return found == types.end() ? nullptr : &found->second;
}

FolderRules::Lines const* FolderRules::LinesOf(OSType type, Domain domain) const {
    Type const* const rule = Find(type);
    if (rule == nullptr) return nullptr;
    Lines const& own = rule->lines[static_cast<std::size_t>(domain)];
    return own ? &own : &rule->everyDomain;
}

std::vector<std::string> FolderRules::PathsOf(OSType type, Domain domain, VariableValue const& value) const {
    Lines const* const lines = LinesOf(type, domain);
    if (lines == nullptr || !*lines) return {};
    auto const anyValue = [&](std::string_view name) {
        auto const known = variables.find(name);
        if (known == variables.end()) return value(name);
        return PathWithVariables(known->second, value).value_or(std::string());
    };
    std::vector<std::string> paths;
    for (std::string const& line : **lines) {
        if (auto path = PathWithVariables(line, anyValue)) paths.push_back(std::move(*path));
    }
    return paths;
}

std::optional<OSType> FolderRules::PairOf(OSType type, Domain domain) const {
    Lines const* const lines = LinesOf(type, domain);
    return lines != nullptr && !*lines ? Find(type)->pair : std::nullopt;
}

Domain FolderRules::UsualDomainOf(OSType type) const {
    Type const* const rule = Find(type);
    return rule != nullptr ? rule->usual : Domain::System;
}

}  // namespace Platform
