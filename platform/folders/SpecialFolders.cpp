// The Folder Manager: the table of special folders on this machine, for this user.

#include "folders/SpecialFolders.h"

#include <Carbon/MacErrors.h>
#include <Platform/Items.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "files/FileCache.h"
#include "files/FileFailure.h"
#include "files/Lookup.h"
#include "files/MountTable.h"
#include "files/SettingsFailure.h"
#include "files/SlowPaths.h"
#include "files/TextFile.h"
#include "folders/BuiltInFolders.h"
#include "folders/FolderRules.h"
#include "foundation/Object.h"
#include "foundation/PathStyles.h"
#include "foundation/TextLines.h"
#include "machine/Environment.h"
#include "machine/GnustepSettings.h"
#include "machine/UserDirectories.h"

namespace Platform {

namespace {

// ---- Variables

struct XdgFolder {
    std::string_view variable;
    std::string_view belowHome;
};
constexpr std::array kXdgFolders{XdgFolder{"XDG_DATA_HOME", ".local/share"},
                                 XdgFolder{"XDG_CONFIG_HOME", ".config"},
                                 XdgFolder{"XDG_CACHE_HOME", ".cache"}};

std::string KernelRelease() {
    std::string release;
    if (GetTextFile(MachinePath("proc/sys/kernel/osrelease"), release) != noErr) return {};
    std::string_view text = release;
    return std::string(Trimmed(TakeLine(text)));
}

// The values of variables. Remembers that a wait was given up.
class Variables {
  public:
    explicit Variables(OSErr& itsError) : error(itsError) {}

    std::string ValueOf(std::string_view name) const {
        if (name == "HOME") return HomeFolder();
        if (name == "RELEASE") return KernelRelease();
        if (name == "TRIPLET") return kLibraryTriplet;
        if (name.starts_with("GNUSTEP_")) return GnustepFolder(name);
        for (auto const& [variable, belowHome] : kXdgFolders) {
            if (name == variable) return UserFolder(std::string(variable).c_str(), belowHome);
        }
        if (name.starts_with("XDG_") && name.ends_with("_DIR") && name != "XDG_RUNTIME_DIR")
            return ChosenFolder(name.substr(4, name.size() - 8));
        return Variable(std::string(name).c_str());
    }

  private:
    OSErr& error;

    std::string ChosenFolder(std::string_view name) const {
        std::string path;
        Keep(GetUserDirectory(name, path));
        return path;
    }
    std::string GnustepFolder(std::string_view name) const {
        std::string path;
        Keep(GetGnustepFolder(name, path));
        return path;
    }
    void Keep(OSErr result) const {
        if (error == noErr) error = result;
    }
};

// ---- The table

constexpr std::string_view kAdministratorsFile = "etc/zelq/folders.conf";

struct Table {
    FolderRules rules;
    std::string mistakes;  // empty when there are none
};

std::string Joined(std::vector<std::string> const& mistakes) {
    std::string text;
    for (std::size_t i = 0; i < mistakes.size(); ++i) text.append(i == 0 ? "" : "; ").append(mistakes[i]);
    if (mistakes.size() == FolderRules::kMostMistakes) text += "; and perhaps more";
    return text;
}

std::shared_ptr<Table const> ReadTable(std::string_view administrators) {
    auto const table = std::make_shared<Table>();
    std::vector<std::string> mistakes;
    table->rules.Read(kBuiltInFolders, true, mistakes);
    table->rules.Read(administrators, false, mistakes);
    table->mistakes = Joined(mistakes);
    return table;
}

OSErr ReadAdministratorsTable(Path const& file, std::shared_ptr<Table const>& table) {
    std::shared_ptr<std::string const> text;
    OSErr const error = ReadTextFile(file, text);
    if (text) table = ReadTable(*text);
    return error;
}

// The table of the built-in text alone, or with that of the administrator's file where there is one.
OSErr GetTable(std::shared_ptr<Table const>& table) {
    static auto& builtIn = *new std::shared_ptr<Table const>(ReadTable({}));
    static auto& cache = *new FileCache<Table>(1);
    std::string const path = MachinePath(kAdministratorsFile);
    SeenItem item;
    OSErr error = SeeItem(path, item);
    if (error == fnfErr || error == dirNFErr) {
        table = builtIn;
        return noErr;
    }
    if (error == noErr) {
        error = GetThrough(cache, path, table, ReadAdministratorsTable);
        if (error == noErr && !table) error = PlatformFileFailure(nullptr, 0);
    }
    if (WasGivenUp(error)) return error;
    if (!table) {
        NoteUnreadableSettings(path, error);
    } else if (table->mistakes.empty()) {
        return noErr;
    } else {
        NoteSettingsFailure(path, table->mistakes);
    }
    return badFolderDescErr;
}

// ---- Domains

bool IsDomain(SInt16 number) { return number <= kClassicDomain; }

Domain DomainOf(SInt16 number, OSType type, FolderRules const& rules) {
    switch (number) {
        case kSystemDomain:
            return Domain::System;
        case kLocalDomain:
            return Domain::Local;
        case kNetworkDomain:
            return Domain::Network;
        case kUserDomain:
            return Domain::User;
        case kClassicDomain:
            return Domain::Classic;
        default:
            return rules.UsualDomainOf(type);
    }
}

bool IsMounted(FSVolumeRefNum number) {
    auto const volumes = MountTable::Shared().Volumes();
    return std::any_of(volumes.begin(), volumes.end(),
                       [&](Volume const& volume) { return volume.number == number; });
}

// Finds the folder at a path; fnfErr when none is there. One that may not be looked at is a failure: which
// folder is meant is not known then.
OSErr FindFolderAt(std::string const& path, FoundItem& found) {
    OSErr const error = Reach(SlowMountBehind(path, LinkRule::Follow), found, [path](FoundItem& result) {
        return FindItemOfText(path, LinkRule::Follow, result);
    });
    if (error == noErr && found.item.IsFolder()) return noErr;
    if (error == afpAccessDenied || error == permErr) return NoteFileFailure(error, Path(path));
    return WasGivenUp(error) ? error : OSErr{fnfErr};
}

OSErr GetPaths(FolderRules const& rules, OSType type, Domain domain, std::vector<std::string>& paths);

// The folders beside those of another type: beside the one that is there, or beside each where none is.
OSErr GetPathsBeside(FolderRules const& rules, OSType pair, Domain domain, std::vector<std::string>& paths) {
    if (OSErr const error = GetPaths(rules, pair, domain, paths); error != noErr) return error;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        FoundItem found;
        OSErr const error = FindFolderAt(paths[i], found);
        if (error != noErr && error != fnfErr) return error;
        if (error == noErr) paths = {std::string(paths[i])};
    }
    std::transform(paths.begin(), paths.end(), paths.begin(), DisabledPartner);
    return noErr;
}

OSErr GetPaths(FolderRules const& rules, OSType type, Domain domain, std::vector<std::string>& paths) {
    if (auto const pair = rules.PairOf(type, domain)) return GetPathsBeside(rules, *pair, domain, paths);
    OSErr error = noErr;
    Variables const variables(error);
    paths = rules.PathsOf(type, domain, [&](std::string_view name) { return variables.ValueOf(name); });
    return error;
}

OSErr FindSpecialFolder(SInt16 domain, OSType type, FoundItem& found) {
    if (!IsDomain(domain) && !IsMounted(domain)) return nsvErr;
    std::vector<std::string> paths;
    if (OSErr const error = GetSpecialFolderPaths(type, domain, paths); error != noErr) return error;
    for (std::string const& path : paths) {
        OSErr const error = FindFolderAt(path, found);
        if (error == fnfErr) continue;
        bool const isElsewhere = error == noErr && !IsDomain(domain) && VolumeOf(found.item) != domain;
        return isElsewhere ? OSErr{fnfErr} : error;
    }
    return fnfErr;
}

}  // namespace

OSErr GetSpecialFolderPaths(OSType type, SInt16 domain, std::vector<std::string>& paths) {
    std::shared_ptr<Table const> table;
    if (OSErr const error = GetTable(table); error != noErr) return error;
    return GetPaths(table->rules, type, DomainOf(domain, type, table->rules), paths);
}

}  // namespace Platform

using namespace Platform;

OSErr FSFindFolder(FSVolumeRefNum vRefNum, OSType folderType, Boolean, FSRef* foundRef) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (foundRef == nullptr) return paramErr;
        FoundItem found;
        OSErr const error = FindSpecialFolder(vRefNum, folderType, found);
        if (error == noErr) *foundRef = MakeReference(found);
        return error;
    });
}
