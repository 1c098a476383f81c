#include "preferences/PreferenceDomains.h"

#include <algorithm>

#include "foundation/PathStyles.h"
#include "foundation/TextLines.h"
#include "machine/Environment.h"

namespace Platform {

namespace {

constexpr std::size_t kLongestName = 255;
constexpr std::string_view kGlobal = ".GlobalPreferences";

// A file's name of these parts, which ends as those of property lists.
std::string NameOf(std::string_view domain, std::string_view machine = {}) {
    std::string name(domain);
    if (!machine.empty()) name.append(".").append(machine);
    return name + ".plist";
}

bool CanBeDomain(std::string_view application) {
    using namespace std::string_view_literals;
    return !application.empty() && application.find_first_of("/\0"sv) == application.npos &&
           NameOf(application).size() <= kLongestName;
}

// Collects the files of one application.
class Search {
  public:
    Search(std::string_view identifier, PreferenceEnvironment const& from)
        : application(identifier), environment(from) {
        userFolder = from.userFolder.starts_with('/') ? from.userFolder : InHome(".config");
        preferences = InHome("Library/Preferences");
        byHost = InHome("Library/Preferences/ByHost");
        gnustep = GnustepFolder();
        commonFolders = FoldersIn(from.commonFolders.empty() ? "/etc/xdg" : from.commonFolders);
    }

    std::vector<std::string> Collect() {
        AddOfUser(application, application);
        AddOfUser(kGlobal, "NSGlobalDomain");
        for (std::string const& folder : commonFolders) Add(folder, NameOf(application));
        for (std::string const& folder : commonFolders) Add(folder, NameOf(kGlobal));
        return std::move(files);
    }

  private:
    std::string_view const application;
    PreferenceEnvironment const& environment;
    std::string userFolder, preferences, byHost, gnustep;
    std::vector<std::string> commonFolders;
    std::vector<std::string> files;

    // A folder in the user's home; empty where that is not known.
    std::string InHome(std::string_view folder) const {
        return environment.home.starts_with('/') ? JoinPaths(environment.home, folder) : std::string();
    }

    std::string GnustepFolder() const {
        std::string_view folder = environment.gnustepDefaults;
        if (folder.starts_with('/')) return std::string(folder);
        if (folder.starts_with("~/")) folder.remove_prefix(2);
        return InHome(folder.empty() ? "GNUstep/Defaults" : folder);
    }

    void Add(std::string const& folder, std::string const& name) {
        if (folder.starts_with('/') && name.size() <= kLongestName) files.push_back(JoinPaths(folder, name));
    }

    void AddOfUser(std::string_view domain, std::string_view gnustepDomain) {
        if (!environment.machine.empty()) Add(byHost, NameOf(domain, environment.machine));
        Add(userFolder, NameOf(domain));
        Add(preferences, NameOf(domain));
        Add(gnustep, NameOf(gnustepDomain));
    }
};

}  // namespace

std::vector<std::string> PreferenceFiles(std::string_view application,
                                         PreferenceEnvironment const& environment) {
    if (!CanBeDomain(application)) return {};
    return Search(application, environment).Collect();
}

std::string MachineIn(std::string_view text) {
    constexpr std::size_t longest = 64;
    std::string_view const identifier = Trimmed(text.substr(0, text.find('\n')));
    constexpr std::string_view characters = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ-";
    bool const isValid =
        identifier.size() <= longest && identifier.find_first_not_of(characters) == identifier.npos;
    return std::string(isValid ? identifier : std::string_view());
}

}  // namespace Platform
