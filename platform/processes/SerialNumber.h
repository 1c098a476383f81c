#pragma once

// What serial numbers of processes are made of. Nothing is remembered: the number itself holds the process id
// and the time at which the process started, so that two processes with one id have two numbers.

#include <Carbon/Processes.h>

#include <cstdint>
#include <optional>

namespace Platform {

/// A process that runs, or ran.
struct ProcessIdentity {
    pid_t pid = 0;
    std::uint64_t start = 0;  // in clock ticks after that of the machine

    bool operator==(ProcessIdentity const&) const = default;
};

/// Bits of a process id: the kernel's are below 2^22.
inline constexpr int kProcessIdBits = 22;
/// The latest start that a serial number holds, more than a thousand years after that of the machine.
inline constexpr std::uint64_t kLatestStart = (std::uint64_t{1} << (64 - kProcessIdBits)) - 2;

inline std::uint64_t NumberIn(ProcessSerialNumber const& psn) {
    return std::uint64_t{psn.highLongOfPSN} << 32 | psn.lowLongOfPSN;
}

/// Of a start that is not later than kLatestStart. Larger than each of the constants (kNoProcess and the
/// like), as one is added to the start.
inline ProcessSerialNumber SerialNumberOf(ProcessIdentity const& process) {
    std::uint64_t const number =
        (process.start + 1) << kProcessIdBits | static_cast<std::uint64_t>(process.pid);
    return {static_cast<UInt32>(number >> 32), static_cast<UInt32>(number)};
}

/// Empty for a number that is made of no process.
inline std::optional<ProcessIdentity> IdentityIn(ProcessSerialNumber const& psn) {
    std::uint64_t const number = NumberIn(psn), start = number >> kProcessIdBits;
    auto const pid = static_cast<pid_t>(number & ((std::uint64_t{1} << kProcessIdBits) - 1));
    if (start == 0 || pid == 0) return std::nullopt;
    return ProcessIdentity{pid, start - 1};
}

}  // namespace Platform
