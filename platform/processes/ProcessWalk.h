#pragma once

// The ids of processes in their order, read from the folder of processes a few at a time.

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace Platform {

/// A walk from one process id to the next. The folder stays open while one goes on: what comes after the id
/// that was given last is read on, so that a walk takes no more time than its processes, and meets those that
/// start meanwhile. Not to be shared by threads.
class ProcessWalk {
  public:
    ProcessWalk() = default;
    ProcessWalk(ProcessWalk const&) = delete;
    ProcessWalk& operator=(ProcessWalk const&) = delete;
    ~ProcessWalk() { Close(); }

    /// Gets the id after `last`, whether or not that is any process's; empty at the end, where the folder is
    /// closed. 0, or a value of errno: ENOENT where there is no such folder.
    int Next(pid_t last, std::optional<pid_t>& next);

  private:
    bool GoesOnFrom(pid_t last, std::string const& path) const;
    int Open(std::string const& path);
    void Close();
    int Fill();
    int ReadSome(bool& atEnd);

    int folder = -1;
    std::string folderPath;
    pid_t owner = 0;           // the process that opened it: one that was forked off would share the position
    bool isKernels = false;    // the kernel lists ids in their order
    std::vector<pid_t> ahead;  // ids that were read and not given yet, the next one last
    pid_t given = 0;
};

}  // namespace Platform
