// GetHandler: the search through the files that tell which application is in charge of a kind.

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "applications/DesktopFiles.h"
#include "applications/Handlers.h"
#include "files/TextFile.h"
#include "foundation/AsciiCase.h"
#include "foundation/PathStyles.h"
#include "machine/Environment.h"

namespace Platform {

namespace {

// A folder that may tell.
struct Teller {
    std::string folder;
    bool hasEntries = false;  // it has desktop entries, and a cache of what they are for
};

std::vector<Teller> Tellers() {
    std::vector<Teller> tellers;
    std::string const own = UserFolder("XDG_CONFIG_HOME", ".config");
    if (!own.empty()) tellers.push_back({own});
    for (std::string& folder : FolderList("XDG_CONFIG_DIRS", "/etc/xdg")) tellers.push_back({folder});
    for (std::string& folder : FoldersOfDesktopFiles()) tellers.push_back({folder, true});
    return tellers;
}

// The list for all desktops.
constexpr std::string_view kListOfAll = "mimeapps.list";

// The names of the files in a folder: those of the user's desktops, then the one of all.
std::vector<std::string> NamesOfLists() {
    std::vector<std::string> names;
    std::string desktops = Variable("XDG_CURRENT_DESKTOP");
    std::transform(desktops.begin(), desktops.end(), desktops.begin(), LowerCase);
    for (std::size_t at = 0; at < desktops.size();) {
        std::string const desktop = desktops.substr(at, desktops.find(':', at) - at);
        at += desktop.size() + 1;
        if (!desktop.empty() && desktop.find('/') == std::string::npos)
            names.push_back(desktop + "-mimeapps.list");
    }
    names.emplace_back(kListOfAll);
    return names;
}

class Search {
  public:
    Search(std::string_view mimeType, HandlingApplication& found) : type(mimeType), application(found) {}

    OSErr Run() {
        std::vector<Teller> const tellers = Tellers();
        for (Teller const& teller : tellers) {
            if (OSErr const error = LookForDefault(teller); error != noErr || isFound) return error;
        }
        for (Teller const& teller : tellers) {
            if (OSErr const error = LookForAssociation(teller); error != noErr || isFound) return error;
        }
        return noErr;
    }

  private:
    OSErr LookForDefault(Teller const& teller) {
        for (std::string const& name : lists) {
            std::string text;
            OSErr error = GetTextFile(JoinPaths(teller.folder, name), text);
            if (error == noErr) error = TakeFirst(IdsIn(text, "Default Applications"));
            if (error != noErr || isFound) return error;
        }
        return noErr;
    }

    // The lists of desktops tell of defaults only.
    OSErr LookForAssociation(Teller const& teller) {
        std::string text;
        OSErr error = GetTextFile(JoinPaths(teller.folder, kListOfAll), text);
        if (error == noErr) error = TakeFirst(Remaining(IdsIn(text, "Added Associations")));
        if (error != noErr || isFound) return error;
        // What a file removes are the associations of those behind it.
        for (std::string& id : IdsIn(text, "Removed Associations")) removed.insert(std::move(id));
        return teller.hasEntries ? LookBesideEntries(teller.folder) : OSErr{noErr};
    }

    OSErr LookBesideEntries(std::string const& folder) {
        struct File {
            std::string_view name, group;
        };
        for (File const& file :
             {File{"defaults.list", "Default Applications"}, File{"mimeinfo.cache", "MIME Cache"}}) {
            std::string text;
            OSErr error = GetTextFile(JoinPaths(folder, file.name), text);
            if (error == noErr) error = TakeFirst(Remaining(IdsIn(text, file.group)));
            if (error != noErr || isFound) return error;
        }
        return noErr;
    }

    std::vector<std::string> IdsIn(std::string_view text, std::string_view group) const {
        return ElementsOf(ValueInGroup(text, group, type).value_or(std::string_view()));
    }

    std::vector<std::string> Remaining(std::vector<std::string> ids) const {
        std::erase_if(ids, [this](std::string const& id) { return removed.count(id) != 0; });
        return ids;
    }

    // Takes the first application that is there.
    OSErr TakeFirst(std::vector<std::string> const& ids) {
        for (std::string const& id : ids) {
            std::optional<DesktopEntry> entry;
            OSErr error = FindDesktopEntry(id, entry);
            std::string program;
            if (error == noErr && entry) error = FindProgramOf(*entry, program);
            if (error != noErr) return error;
            if (program.empty()) continue;
            application = {id, entry->name, entry->creator};
            isFound = true;
            return noErr;
        }
        return noErr;
    }

    std::string_view const type;
    std::vector<std::string> const lists = NamesOfLists();
    std::set<std::string> removed;
    HandlingApplication& application;
    bool isFound = false;
};

}  // namespace

OSErr GetHandler(std::string_view mimeType, HandlingApplication& application) {
    application = {};
    return Search(mimeType, application).Run();
}

}  // namespace Platform
