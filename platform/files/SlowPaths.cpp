#include "files/SlowPaths.h"

#include <dirent.h>
#include <limits.h>
#include <unistd.h>

#include <algorithm>

#include "files/References.h"
#include "foundation/PathStyles.h"

namespace Platform {

namespace {

// The text of a link; empty when the item is none, or cannot be read.
std::string TextOfLink(Place place) {
    char text[PATH_MAX];
    ssize_t const size = readlinkat(place.folder, place.path, text, sizeof text);
    return size > 0 ? std::string(text, static_cast<std::size_t>(size)) : std::string();
}

void GoUp(std::string& path) { path.resize(std::max<std::size_t>(path.rfind('/'), 1)); }

// Goes along a path, name by name.
class Walk {
  public:
    Walk(std::string_view path, LinkRule atEnd) : rest(path), rule(atEnd) {
        bool const isRelative = !path.starts_with('/');
        if (!isRelative || WorkingDirectory(way.end) != 0) way.end = "/";
    }

    Way Go() {
        for (;;) {
            if (auto mount = table.SlowMountOf(way.end)) return Onto(std::move(*mount));
            if (mayBeLink && FollowLink()) continue;
            if (!TakeName()) return std::move(way);
        }
    }

  private:
    bool TakeName() {
        mayBeLink = false;
        rest.erase(0, rest.find_first_not_of('/'));
        if (rest.empty()) return false;
        std::string const name = rest.substr(0, rest.find('/'));
        rest.erase(0, name.size());
        if (name == "..") {
            GoUp(way.end);
        } else if (name != ".") {
            AppendName(way.end, name);
            mayBeLink = !rest.empty() || rule != LinkRule::Itself;
        }
        return true;
    }

    bool FollowLink() {
        constexpr int mostLinks = 40;
        mayBeLink = false;
        std::string target = TextOfLink({AT_FDCWD, way.end.c_str()});
        if (target.empty() || ++links > mostLinks) return false;
        if (target.front() == '/') {
            way.end = "/";
        } else {
            GoUp(way.end);
        }
        rest.insert(0, target);
        return true;
    }

    // What is left of the path is not looked at any more. It may lead on to a mount below this one.
    Way Onto(SlowMount mount) {
        rule = LinkRule::Itself;
        while (TakeName()) {
        }
        way.mount = table.SlowMountOf(way.end);
        if (!way.mount) way.mount = std::move(mount);
        return std::move(way);
    }

    MountTable& table = MountTable::Shared();
    Way way;
    std::string rest;
    LinkRule rule;
    bool mayBeLink = false;  // what the way has come to
    int links = 0;
};

}  // namespace

Way WayAlong(std::string_view path, LinkRule rule) { return Walk(path, rule).Go(); }

std::optional<SlowMount> SlowMountBehind(std::string_view path, LinkRule rule) {
    if (!MountTable::Shared().HasSlowMounts()) return std::nullopt;
    return WayAlong(path, rule).mount;
}

std::optional<SlowMount> SlowMountBehind(Location const& location) {
    if (!MountTable::Shared().HasSlowMounts()) return std::nullopt;
    return WayAlong(location.path.Text(), location.rule).mount;
}

std::optional<SlowMount> SlowMountBehind(FSRef const& reference) {
    if (!MountTable::Shared().HasSlowMounts()) return std::nullopt;
    auto const remembered = ReferenceTable::Shared().Find(reference);
    return remembered ? SlowMountBehind(remembered->location) : std::nullopt;
}

std::optional<SlowMount> SlowMountBehind(FSRef const& folder, std::string const& name) {
    if (!MountTable::Shared().HasSlowMounts()) return std::nullopt;
    auto const remembered = ReferenceTable::Shared().Find(folder);
    if (!remembered) return std::nullopt;
    return SlowMountBehind(JoinPaths(remembered->location.path.Text(), name), LinkRule::Follow);
}

Surroundings::Surroundings(Location const& folder, std::optional<SlowMount> itsMount)
    : mount(std::move(itsMount)) {
    MountTable& table = MountTable::Shared();
    mayMeetMounts = table.HasSlowMounts();
    if (!mayMeetMounts) return;
    path = WayAlong(folder.path.Text(), folder.rule).end;
    mountPoints = table.SlowMountPointsIn(path);
}

bool Surroundings::IsMountPoint(std::string_view name) const {
    return std::find(mountPoints.begin(), mountPoints.end(), name) != mountPoints.end();
}

std::optional<SlowMount> Surroundings::MountBehind(Place place, FolderEntry const& entry) const {
    if (IsMountPoint(entry.name)) return MountTable::Shared().SlowMountOf(JoinPaths(path, entry.name));
    if (entry.type != DT_LNK && entry.type != DT_UNKNOWN) return std::nullopt;
    std::string const target = TextOfLink(place);
    if (target.empty()) return std::nullopt;
    bool const isAbsolute = target.front() == '/';
    auto behind = SlowMountBehind(isAbsolute ? target : JoinPaths(path, target), LinkRule::Follow);
    bool const isOwn = behind && mount && behind->id == mount->id;
    return isOwn ? std::nullopt : behind;
}

}  // namespace Platform
