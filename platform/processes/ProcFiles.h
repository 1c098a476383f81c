#pragma once

// What the kernel's files on a process say: /proc/PID/stat, status and exe, below the folder of the machine's
// facts. The kernel answers at once, whatever the process does.
//
// Functions that read return 0 or a value of errno.

#include <sys/types.h>

#include <optional>
#include <string>

#include "processes/ProcTexts.h"
#include "processes/SerialNumber.h"

namespace Platform {

/// What is known of a process.
struct ProcessFacts {
    ProcessIdentity process;
    ProcessStat stat;
    std::string executable;  // as `exe` says it: absolute, perhaps with " (deleted)" behind it
};

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
