#pragma once

// The texts of the kernel's files on a process, /proc/PID/stat and status. Pure; any bytes do.

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace Platform {

/// What `stat` says. Times in clock ticks.
struct ProcessStat {
    char state = 0;  // 'Z' of a zombie, 'X' of one that is going
    pid_t parent = 0;
    std::uint64_t active = 0;  // processor time, of all threads that are left or ended
    std::uint64_t start = 0;   // after the start of the machine
    std::uint64_t size = 0;    // bytes of the address space

    bool HasEnded() const { return state == 'Z' || state == 'X' || state == 'x'; }
};
/// Empty for bytes of another form, and for a start that no serial number holds. The name may hold blanks and
/// parentheses.
std::optional<ProcessStat> ParseStat(std::string_view text);

/// What `status` says.
struct ProcessStatus {
    pid_t process = 0;  // that the thread belongs to; of a process its own
    uid_t user = 0;     // the real one
};
/// Empty where either is missing or no number.
std::optional<ProcessStatus> ParseStatus(std::string_view text);

/// The text of the number in decimal digits alone; empty for another text, 0, and numbers of no process.
std::optional<pid_t> ProcessIdOf(std::string_view text);

}  // namespace Platform
