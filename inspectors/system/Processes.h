#pragma once

// Processes of the current user: who they are, what is known of them, and walks through them.
//
// Unless it says otherwise, what asks the platform throws ProcessError with the platform's code when it
// fails.

#include <Carbon/Processes.h>

#include <cstdint>

#include "filesystem/FileSystemObject.h"

/// A process, by its serial number. It need not run any more.
class Process : public ProcessSerialNumber {
  public:
    /// Which one: this process, and the one that has the user's attention.
    struct ApplicationProcess {};
    struct FrontProcess {};

    /// No process: where a walk begins.
    static Process const noProcess;

    constexpr explicit Process(ProcessSerialNumber const& number) noexcept : ProcessSerialNumber(number) {}
    explicit Process(ApplicationProcess);
    explicit Process(FrontProcess);

    /// This process; found out once.
    static Process const& Application();

    /// Lets it go on where it waits for an event.
    void Wake() const;
    void MoveToFront() const;
    /// Its process id, or the one that it had.
    pid_t PID() const;
};

/// Whether two numbers are those of one process.
bool operator==(Process const& left, Process const& right);

/// What is known of a process, as it was when it was asked, and where its executable file is or was.
class ProcessInfo {
  public:
    /// Nothing is known yet.
    ProcessInfo() = default;
    explicit ProcessInfo(Process const& process) { Set(process); }
    explicit ProcessInfo(Process::ApplicationProcess const& which) { Set(Process(which)); }

    /// That of this process; found out once.
    static ProcessInfo const& Application();

    /// Asks anew. Throws MacintoshPlatform::MakeFileLocationFailed, too, when the place of the executable
    /// file cannot be told. What was known before stays when this fails.
    void Set(Process const& process);

    Process Number() const { return Process(record.processNumber); }
    bool HasLauncher() const;
    MacintoshPlatform::FileLocation const& Location() const { return location; }

    /// The platform's record, without a name and a specification of the file.
    ProcessInfoRec record{};

  private:
    MacintoshPlatform::FileLocation location;  // of the executable file
};
using carbon_process = ProcessInfo;

/// A walk through the processes, in the platform's order.
class ProcessLoop {
  public:
    /// Begins with the first process; at the end when there is none.
    void Restart();
    /// Goes on to the next one, or to the end.
    ProcessLoop& operator++();

    bool IsDone() const { return done != 0; }
    /// The one at hand.
    Process Current() const { return Process(number); }

  private:
    ProcessSerialNumber number{0, kNoProcess};
    std::uint32_t done = 0;
};

/// What is known of each process; NoSuchObject ends them.
class carbon_process_iterator {
  public:
    carbon_process First();
    carbon_process Next();

  private:
    ProcessLoop loop;
};

/// The executable file of each process; NoSuchObject ends them. FailedToGetFileItem for one that is gone.
class running_app_iterator {
  public:
    filesystem_object First();
    filesystem_object Next();

  private:
    ProcessLoop loop;
};

/// The process with that id; NoSuchObject when there is none.
carbon_process numbered_carbon_process_of_world(unsigned long long pid);

/// The name of the executable file, which need not be there any more.
inspector_string name_of_carbon_process(carbon_process const& process);
integer pid_of_carbon_process(carbon_process const& process);
/// Throws FailedToGetFileItem when the file is gone.
filesystem_object file_of_carbon_process(carbon_process const& process);
