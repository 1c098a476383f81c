#pragma once

// Which paths lead onto mounts whose servers may not answer, found out without asking them anything: by the
// texts of the paths, and of the symbolic links on the way as far as they lie elsewhere.

#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "files/FolderEntries.h"
#include "files/Location.h"
#include "files/MountTable.h"
#include "files/Patience.h"

namespace Platform {

/// Where a path leads.
struct Way {
    std::string end;                 // without ".", ".." and, as far as the mount, without links
    std::optional<SlowMount> mount;  // whose server may not answer; empty when the way leads onto none
};
/// The way along a path; a relative one starts at the working directory. Up to 40 links are followed, one at
/// the path's end unless `rule` is Itself.
Way WayAlong(std::string_view path, LinkRule rule);

/// The mount whose server may not answer on the way to a place: along a path of text, to a location, to the
/// item of a reference, and to the item called `name` in the folder of a reference. Cheap where there is no
/// such mount at all.
std::optional<SlowMount> SlowMountBehind(std::string_view path, LinkRule rule);
std::optional<SlowMount> SlowMountBehind(Location const& location);
std::optional<SlowMount> SlowMountBehind(FSRef const& reference);
std::optional<SlowMount> SlowMountBehind(FSRef const& folder, std::string const& name);

/// Does the work of a call that was asked for a place: there and then, or patiently when a mount is on the
/// way to it, for as long as the host wants. `work` fills in the outputs that it is passed, and must own what
/// it needs; what it finds in them at its start is what is in `outputs`, which get them back when it
/// succeeds.
template <class Outputs, class Work>
OSErr Reach(std::optional<SlowMount> const& mount, Outputs& outputs, Work const& work) {
    if (!mount) return work(outputs);
    auto const shared = std::make_shared<Outputs>(outputs);
    OSErr const error = CallPatiently(*mount, std::nullopt, [=] { return work(*shared); });
    if (error == noErr) outputs = std::move(*shared);
    return error;
}

/// The folder that is being listed, and the mounts that its items may lead onto. One that was not made of a
/// folder is where no mount has a server that may not answer.
class Surroundings {
  public:
    Surroundings() = default;
    /// Those of a folder that lies on a mount whose server may not answer, or on no such mount.
    Surroundings(Location const& folder, std::optional<SlowMount> itsMount);

    /// Whether there is any such mount.
    bool MayMeetMounts() const { return mayMeetMounts; }
    /// The mount that an entry is the mount point of, or a link onto; none where that is the folder's own.
    /// Asks nothing but the folder itself.
    std::optional<SlowMount> MountBehind(Place place, FolderEntry const& entry) const;
    bool IsMountPoint(std::string_view name) const;

  private:
    bool mayMeetMounts = false;
    std::string path;
    std::optional<SlowMount> mount;        // the folder's own
    std::vector<std::string> mountPoints;  // names of items
};

}  // namespace Platform
