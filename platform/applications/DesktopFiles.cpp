#include "applications/DesktopFiles.h"

#include <Carbon/MacErrors.h>
#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <set>
#include <string_view>
#include <tuple>

#include "files/FileCache.h"
#include "files/FileState.h"
#include "files/FolderEntries.h"
#include "files/SlowPaths.h"
#include "files/TextFile.h"
#include "foundation/PathStyles.h"
#include "machine/Environment.h"

namespace Platform {

namespace {

constexpr std::string_view kEnd = ".desktop";
constexpr int kDeepest = 8;         // folders below each other
constexpr int kMostFolders = 1000;  // that are listed; links make more ways than there are folders

OSErr UnlessGivenUp(OSErr error) { return WasGivenUp(error) ? error : OSErr{noErr}; }

// ---- Reading

OSErr ReadEntry(Path const& file, std::shared_ptr<DesktopEntry const>& entry) {
    std::shared_ptr<std::string const> text;
    OSErr const error = ReadTextFile(file, text);
    if (text) entry = std::make_shared<DesktopEntry const>(ParseDesktopEntry(*text));
    return error;
}

// Null where there is no such file.
OSErr GetEntry(std::string const& path, std::shared_ptr<DesktopEntry const>& entry) {
    static auto& cache = *new FileCache<DesktopEntry>(64);
    return GetThrough(cache, path, entry, ReadEntry);
}

// ---- Listing

struct Names {
    std::vector<std::string> folders;  // and what may be one
    std::vector<std::string> entries;

    void Note(FolderEntry const& entry) {
        if (entry.name.ends_with(kEnd)) entries.emplace_back(entry.name);
        if (entry.type == DT_DIR || entry.type == DT_LNK || entry.type == DT_UNKNOWN)
            folders.emplace_back(entry.name);
    }
};

OSErr ListFolder(std::string const& path, Names& names) {
    return Reach(SlowMountBehind(path, LinkRule::Follow), names, [path](Names& seen) -> OSErr {
        SystemPath const place{Path(path)};
        if (place.Error() != 0) return noErr;
        ForEachEntry(place.Get(), [&seen](FolderEntry const& entry) { seen.Note(entry); });
        return noErr;
    });
}

// The files of a folder and of those below it, by their ids.
class Listing {
  public:
    struct Found {
        std::string id;
        std::string path;
    };

    OSErr Add(std::string const& folder) { return Add(folder, {}, 0); }
    // In the order of the ids.
    std::vector<Found> const& Files() {
        std::sort(files.begin(), files.end(), [](Found const& left, Found const& right) {
            return std::tie(left.id, left.path) < std::tie(right.id, right.path);
        });
        return files;
    }

  private:
    OSErr Add(std::string const& folder, std::string const& prefix, int depth) {
        SeenItem item;
        OSErr error = SeeItem(folder, item);
        if (error != noErr || !item.state.isFolder) return UnlessGivenUp(error);
        // A link may lead back to a folder above.
        if (listed == kMostFolders || !above.emplace(item.state.device, item.state.inode).second)
            return noErr;
        ++listed;
        Names names;
        error = ListFolder(folder, names);
        for (std::string const& name : names.entries)
            files.push_back({prefix + name, JoinPaths(folder, name)});
        for (auto at = names.folders.begin(); at != names.folders.end() && error == noErr && depth < kDeepest;
             ++at)
            error = Add(JoinPaths(folder, *at), prefix + *at + "-", depth + 1);
        above.erase({item.state.device, item.state.inode});
        return error;
    }

    std::vector<Found> files;
    int listed = 0;
    std::set<std::pair<std::uint64_t, std::uint64_t>> above;
};

// ---- Looking up

// Finds the file with an id below a folder, where each '-' may stand for a '/'.
OSErr FindBelow(std::string const& folder, std::string_view id, int depth,
                std::shared_ptr<DesktopEntry const>& entry) {
    OSErr error = GetEntry(JoinPaths(folder, id), entry);
    for (std::size_t dash = id.find('-'); error == noErr && !entry && depth < kDeepest && dash != id.npos;
         dash = id.find('-', dash + 1)) {
        if (dash == 0 || IsDots(id.substr(0, dash))) continue;
        std::string const below = JoinPaths(folder, id.substr(0, dash));
        SeenItem item;
        error = UnlessGivenUp(SeeItem(below, item));
        if (error == noErr && item.state.isFolder)
            error = FindBelow(below, id.substr(dash + 1), depth + 1, entry);
    }
    return error;
}

// ---- Programs

OSErr MayBeRun(std::string const& path, bool& mayBeRun) {
    return Reach(SlowMountBehind(path, LinkRule::Follow), mayBeRun, [path](bool& may) -> OSErr {
        may = access(path.c_str(), X_OK) == 0;
        return noErr;
    });
}

OSErr IsProgram(std::string const& path, bool& isProgram) {
    SeenItem item;
    OSErr const error = SeeItem(path, item);
    isProgram = false;
    if (error != noErr || item.state.isFolder) return UnlessGivenUp(error);
    return MayBeRun(path, isProgram);
}

}  // namespace

std::vector<std::string> FoldersOfDesktopFiles() {
    std::vector<std::string> folders = FolderList("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    std::string const own = UserFolder("XDG_DATA_HOME", ".local/share");
    if (!own.empty()) folders.insert(folders.begin(), own);
    for (std::string& folder : folders) folder = JoinPaths(folder, "applications");
    return folders;
}

OSErr FindDesktopEntry(std::string const& id, std::optional<DesktopEntry>& entry) {
    entry.reset();
    bool const isId = id.size() > kEnd.size() && id.ends_with(kEnd) && id.find('/') == std::string::npos &&
                      id.find('\0') == std::string::npos;
    if (!isId) return noErr;
    for (std::string const& folder : FoldersOfDesktopFiles()) {
        std::shared_ptr<DesktopEntry const> found;
        if (OSErr const error = FindBelow(folder, id, 0, found); error != noErr) return error;
        if (!found) continue;
        if (!found->isHidden) entry = *found;
        return noErr;
    }
    return noErr;
}

OSErr VisitDesktopEntries(std::function<OSErr(DesktopEntry const& entry, bool& isEnough)> const& visit) {
    std::set<std::string> met;
    for (std::string const& folder : FoldersOfDesktopFiles()) {
        Listing listing;
        if (OSErr const error = listing.Add(folder); error != noErr) return error;
        for (auto const& [id, path] : listing.Files()) {
            if (met.count(id) != 0) continue;
            std::shared_ptr<DesktopEntry const> entry;
            if (OSErr const error = GetEntry(path, entry); error != noErr) return error;
            if (!entry) continue;
            met.insert(id);
            bool isEnough = false;
            OSErr const error = entry->isHidden ? OSErr{noErr} : visit(*entry, isEnough);
            if (error != noErr || isEnough) return error;
        }
    }
    return noErr;
}

OSErr FindProgram(std::string const& name, std::string& path) {
    path.clear();
    std::vector<std::string> candidates;
    if (name.starts_with('/')) {
        candidates.push_back(name);
    } else if (!name.empty() && name.find('/') == std::string::npos) {
        for (std::string const& folder : FolderList("PATH", "/usr/local/bin:/usr/bin:/bin"))
            candidates.push_back(JoinPaths(folder, name));
    }
    for (std::string const& candidate : candidates) {
        bool isProgram = false;
        if (OSErr const error = IsProgram(candidate, isProgram); error != noErr) return error;
        if (!isProgram) continue;
        path = candidate;
        return noErr;
    }
    return noErr;
}

OSErr FindProgramOf(DesktopEntry const& entry, std::string& path) {
    path.clear();
    std::vector<std::string> const command = CommandOf(entry.exec);
    if (!entry.isApplication || command.empty()) return noErr;
    if (!entry.tryExec.empty()) {
        OSErr const error = FindProgram(entry.tryExec, path);
        if (error != noErr || path.empty()) return error;
    }
    return FindProgram(command[0], path);
}

}  // namespace Platform
