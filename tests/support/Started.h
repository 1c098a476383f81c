#pragma once

// Processes that tests start, and that end with them.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <utility>

/// A child process that waits to be ended.
class Started {
  public:
    /// Runs a program that waits when it is told "1000", such as sleep(1); `before` is called in the child.
    /// The program has begun when this is made.
    explicit Started(
        std::string const& program, std::function<void()> const& before = [] {}) {
        int ends[2];
        EXPECT_EQ(0, pipe2(ends, O_CLOEXEC));
        pid = fork();
        if (pid == 0) {
            before();
            execl(program.c_str(), program.c_str(), "1000", nullptr);
            char const failed = 1;
            _exit(write(ends[1], &failed, 1) == 1 ? 1 : 2);
        }
        close(ends[1]);
        char failed = 0;
        EXPECT_EQ(0, read(ends[0], &failed, 1)) << "cannot run " << program;
        close(ends[0]);
    }
    Started(Started const&) = delete;
    Started& operator=(Started const&) = delete;
    ~Started() { End(); }

    pid_t Pid() const { return pid; }
    /// Ends it, and leaves nothing of it.
    void End() {
        Kill();
        if (pid > 0) waitpid(pid, nullptr, 0);
        pid = 0;
    }
    /// Ends it, but leaves a zombie.
    void Kill() const {
        if (pid <= 0) return;
        kill(pid, SIGKILL);
        siginfo_t end;
        waitid(P_PID, static_cast<id_t>(pid), &end, WEXITED | WNOWAIT);
    }

  private:
    pid_t pid = 0;
};

/// The program sleep(1).
inline std::string SleepProgram() { return "/usr/bin/sleep"; }
