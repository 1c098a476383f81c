#pragma once

// Open forks, of files on mounts too whose servers may not answer.

#include <Carbon/Files.h>

#include <cstddef>
#include <optional>
#include <span>

#include "files/ForkBytes.h"
#include "files/MountTable.h"
#include "foundation/Path.h"

namespace Platform {

/// An open fork. The functions below wait for its mount patiently, where it has one.
struct OpenFork {
    ForkBytes bytes;
    Path path;                       // of the file
    std::optional<SlowMount> mount;  // whose server may not answer
};

enum class ForkKind { Data, Resource };

/// Opens a fork of a referenced file: see FSOpenFork and FSOpenResFile. A failure is noted as one of the
/// file.
OSErr OpenForkOf(FSRef const& reference, ForkKind kind, OpenFork& fork);
/// Bytes of the fork now.
OSErr CountBytes(OpenFork const& fork, SInt64& count);
/// Reads from an offset on: see ReadBytes in ForkBytes.h.
OSErr ReadBytes(OpenFork const& fork, SInt64 from, std::span<UInt8> to, std::size_t& actual);
/// Closes the fork's file. A fork that is not let go is closed there and then by its last owner.
void LetGo(OpenFork& fork);

}  // namespace Platform
