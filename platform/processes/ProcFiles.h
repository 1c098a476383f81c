#pragma once

// What the kernel's files on a process say: /proc/PID/stat, status and exe, below the folder of the machine's
// facts. The kernel answers at once, whatever the process does.
//
// Functions that read return 0 or a value of errno.

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "processes/SerialNumber.h"

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
/// Empty for bytes of another form. The name may hold blanks and parentheses.
std::optional<ProcessStat> ParseStat(std::string_view text);

/// What `status` says.
struct ProcessStatus {
    pid_t process = 0;  // that the thread belongs to; of a process its own
    uid_t user = 0;     // the real one
};
/// Empty where either is missing or no number.
std::optional<ProcessStatus> ParseStatus(std::string_view text);

/// What is known of a process.
struct ProcessFacts {
    ProcessIdentity process;
    ProcessStat stat;
    std::string executable;  // as `exe` says it: absolute, perhaps with " (deleted)" behind it
};

/// The text of the number in decimal digits alone; empty for another text, 0, and numbers of no process.
std::optional<pid_t> ProcessIdOf(std::string_view text);

/// Reads `stat` of a process or thread. ESRCH when there is none.
int ReadStat(pid_t pid, ProcessStat& stat);
/// Reads what is known of a process of the current user whose executable file can be told; ESRCH for any
/// other, for threads, and where there is none.
int ReadFacts(pid_t pid, ProcessFacts& facts);
/// Whether a process, not a thread, has the id now, whoever's it is.
bool IsProcess(pid_t pid);
/// The id that the folder of processes has for this one; empty where it does not show it.
std::optional<pid_t> OwnProcessId();

/// The path of the executable file, which need not be there. That of `exe`, if it leads to the file that the
/// process runs; of a deleted file the one that it had; else the file is in another mount namespace, and the
/// path leads through the root folder of the process as far as that can be reached.
std::string PlaceOfExecutable(ProcessFacts const& facts);

}  // namespace Platform
