#include "files/OpenFork.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "files/FileFailure.h"
#include "files/Patience.h"
#include "files/References.h"
#include "files/SlowPaths.h"

namespace Platform {

namespace {

// Reads on a helper thread, which has a buffer of its own: the caller's may be gone when it comes back.
OSErr ReadPatiently(OpenFork const& fork, SInt64 from, std::span<UInt8> to, std::size_t& actual) {
    constexpr std::size_t mostAtOnce = std::size_t{1} << 20;
    struct Piece {
        std::vector<UInt8> bytes;
        std::size_t actual = 0;
    };
    for (actual = 0; actual < to.size();) {
        auto const piece = std::make_shared<Piece>();
        piece->bytes.resize(std::min(to.size() - actual, mostAtOnce));
        OSErr const error = CallPatiently(
            *fork.mount, std::nullopt, [bytes = fork.bytes, piece, at = from + static_cast<SInt64>(actual)] {
                return ReadBytes(bytes, at, piece->bytes, piece->actual);
            });
        if (error != noErr) return error;
        std::memcpy(to.data() + actual, piece->bytes.data(), piece->actual);
        actual += piece->actual;
        if (piece->actual < piece->bytes.size()) break;
    }
    return noErr;
}

}  // namespace

OSErr OpenForkOf(FSRef const& reference, ForkKind kind, OpenFork& fork) {
    auto const remembered = ReferenceTable::Shared().Find(reference);
    if (!remembered) return NoteFileFailure(errFSBadFSRef, Path());
    fork.path = remembered->location.path;
    // What is opened is behind the link, also where the reference is to the link itself.
    fork.mount = SlowMountBehind({fork.path, LinkRule::Follow});
    bool const isMadeWhenRead = fork.mount && fork.mount->makesFiles;
    OSErr const error = Reach(fork.mount, fork.bytes, [reference, kind, isMadeWhenRead](ForkBytes& bytes) {
        return kind == ForkKind::Data ? OpenDataFork(reference, isMadeWhenRead, bytes)
                                      : OpenResourceFork(reference, bytes);
    });
    return NoteFileFailure(error, fork.path);
}

OSErr CountBytes(OpenFork const& fork, SInt64& count) {
    return Reach(fork.mount, count, [bytes = fork.bytes](SInt64& size) { return CountBytes(bytes, size); });
}

OSErr ReadBytes(OpenFork const& fork, SInt64 from, std::span<UInt8> to, std::size_t& actual) {
    bool const mayWait = fork.mount && fork.bytes.file;
    return mayWait ? ReadPatiently(fork, from, to, actual) : ReadBytes(fork.bytes, from, to, actual);
}

void LetGo(OpenFork& fork) {
    if (fork.mount && fork.bytes.file) LetGoPatiently(*fork.mount, std::move(fork.bytes.file));
}

}  // namespace Platform
