#include "files/FileState.h"

#include <string>

#include "files/Lookup.h"
#include "files/SlowPaths.h"

namespace Platform {

namespace {

std::int64_t Nanoseconds(statx_timestamp const& time) { return time.tv_sec * 1'000'000'000 + time.tv_nsec; }

OSErr See(std::string const& path, SeenItem& item) {
    FoundItem found;
    if (OSErr const error = FindItemOfText(path, LinkRule::Follow, found); error != noErr) return error;
    struct statx const& status = found.item.status;
    item = {found.location.path,
            {found.item.Device(), status.stx_ino, status.stx_size, Nanoseconds(status.stx_btime),
             Nanoseconds(status.stx_mtime), Nanoseconds(status.stx_ctime), found.item.IsFolder()}};
    return noErr;
}

}  // namespace

OSErr SeeItem(std::string_view path, SeenItem& item) {
    return Reach(SlowMountBehind(path, LinkRule::Follow), item,
                 [path = std::string(path)](SeenItem& seen) { return See(path, seen); });
}

bool WasGivenUp(OSErr error) { return error == userCanceledErr || error == volOffLinErr; }

}  // namespace Platform
