#pragma once

// Processes of tests: what the calls say of them, and recorded ones.

#include <Carbon/Carbon.h>
#include <Platform/Items.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "support/Owned.h"
#include "support/TemporaryFolder.h"
#include "support/Variable.h"

inline constexpr ProcessSerialNumber kNobody{0, kNoProcess}, kSelf{0, kCurrentProcess};

inline bool IsNobody(ProcessSerialNumber const& psn) {
    return psn.highLongOfPSN == 0 && psn.lowLongOfPSN == 0;
}

/// The number of a process; none when there is no such process.
inline ProcessSerialNumber NumberOf(pid_t pid) {
    ProcessSerialNumber psn = kNobody;
    GetProcessForPID(pid, &psn);
    return psn;
}

inline pid_t PidOf(ProcessSerialNumber const& psn) {
    pid_t pid = 0;
    EXPECT_EQ(noErr, GetProcessPID(&psn, &pid));
    return pid;
}

inline bool AreSame(ProcessSerialNumber const& left, ProcessSerialNumber const& right) {
    Boolean same = false;
    EXPECT_EQ(noErr, SameProcess(&left, &right, &same));
    return same;
}

/// The ids of the processes after one, in the order of a walk.
inline std::vector<pid_t> RestOfWalk(ProcessSerialNumber psn) {
    std::vector<pid_t> pids;
    OSErr error = noErr;
    while ((error = GetNextProcess(&psn)) == noErr) pids.push_back(PidOf(psn));
    EXPECT_EQ(procNotFound, error);
    EXPECT_TRUE(IsNobody(psn));
    return pids;
}
/// Those of all processes.
inline std::vector<pid_t> Walk() { return RestOfWalk(kNobody); }

/// What is known of a process: the record, the name and the place of the executable.
struct Description {
    ProcessInfoRec record{};
    std::string name;
    std::string place;
    OSErr error = noErr;
};

inline Description Describe(ProcessSerialNumber const& psn) {
    Description description;
    UInt8 name[32] = {};
    FSSpec spec{};
    description.record.processInfoLength = sizeof(ProcessInfoRec);
    description.record.processName = name;
    description.record.processAppSpec = &spec;
    description.error = GetProcessInformation(&psn, &description.record);
    if (description.error != noErr) return description;
    description.name.assign(name + 1, name + 1 + name[0]);
    description.place = PathOf(Owned<CFURLRef>(PlatformCreateSpecURL(&spec, nullptr)));
    return description;
}

/// A machine with processes of the test's making, as long as one lives.
class RecordedProcesses {
  public:
    RecordedProcesses() { folder.MakeFolder("proc"); }

    struct Facts {
        pid_t process = 0;  // that a thread belongs to; 0: its own
        std::string user = std::to_string(getuid());
        std::string name = "name";
        char state = 'S';
        pid_t parent = 0;
        std::string active = "0 0";  // clock ticks in the program and in the system
        std::string start = "0";     // the same unit
        std::string size = "4096";
        std::optional<std::string> executable = "/usr/bin/sleep";
    };

    void Add(pid_t pid, Facts const& facts) const {
        std::string const place = "proc/" + std::to_string(pid);
        std::filesystem::remove_all(folder.Path(place));
        folder.MakeFolder(place);
        pid_t const process = facts.process != 0 ? facts.process : pid;
        folder.Write(place + "/stat", std::to_string(pid) + " (" + facts.name + ") " + facts.state + " " +
                                          std::to_string(facts.parent) + " 1 1 0 -1 4194304 10 20 30 40 " +
                                          facts.active + " 5 6 20 0 1 0 " + facts.start + " " + facts.size +
                                          " 100 1\n");
        folder.Write(place + "/status", "Name:\t" + facts.name + "\nTgid:\t" + std::to_string(process) +
                                            "\nUid:\t" + facts.user + "\t1\t2\t3\n");
        if (facts.executable) folder.Link(place + "/exe", *facts.executable);
    }
    void Remove(pid_t pid) const { std::filesystem::remove_all(folder.Path("proc/" + std::to_string(pid))); }
    /// Makes it the process that asks.
    void BeSelf(pid_t pid) const { folder.Link("proc/self", std::to_string(pid)); }
    TemporaryFolder const& Folder() const { return folder; }

  private:
    TemporaryFolder const folder;
    Variable const root{"ZELQ_MACHINE_ROOT", folder.Path()};
};
