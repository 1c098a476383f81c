#pragma once

// The table of special folders as text has it: which paths stand for a type in a domain. Pure. The form of
// the text is told at the beginning of folders.conf.

#include <Carbon/Folders.h>

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// The domains that have folders of their own.
enum class Domain : UInt8 { System, Local, Network, User, Classic };
inline constexpr std::size_t kDomains = 5;

/// The value of a variable; empty where it has none.
using VariableValue = std::function<std::string(std::string_view name)>;

class FolderRules {
  public:
    /// How many mistakes end the reading of a text.
    static constexpr std::size_t kMostMistakes = 10;

    /// Reads a text: what it says of a type and a domain takes the place of what was known. Adds what is
    /// wrong with it to `mistakes`, each with its line; at kMostMistakes it stops. Types that are not known
    /// yet are a mistake unless `mayAddTypes`.
    void Read(std::string_view text, bool mayAddTypes, std::vector<std::string>& mistakes);

    /// The paths that lines tell for a type in a domain, in their order; `value` gives the variables that the
    /// text does not.
    std::vector<std::string> PathsOf(OSType type, Domain domain, VariableValue const& value) const;
    /// The type beside whose folders those of a type lie in a domain: see DisabledPartner. Empty where lines
    /// tell of the domain, or nothing tells.
    std::optional<OSType> PairOf(OSType type, Domain domain) const;
    /// The domain that is usual for a type.
    Domain UsualDomainOf(OSType type) const;

  private:
    friend class FolderRulesReader;

    using Lines = std::optional<std::vector<std::string>>;  // paths with variables; nothing: not told
    struct Type {
        std::array<Lines, kDomains> lines;
        Lines everyDomain;
        std::optional<OSType> pair;
        Domain usual = Domain::System;
    };

    Type const* Find(OSType type) const;
    Lines const* LinesOf(OSType type, Domain domain) const;

    std::map<OSType, Type> types;
    std::map<std::string, std::string, std::less<>> variables;
};

/// Where the disabled items of a folder lie: beside it.
std::string DisabledPartner(std::string const& folder);

/// The text with its variables replaced, and "~/" at its beginning by the home, which is the variable HOME.
/// Empty where one of them has no value, and where the result is no absolute path.
std::optional<std::string> PathWithVariables(std::string_view text, VariableValue const& value);

}  // namespace Platform
