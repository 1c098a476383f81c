#pragma once

// Real mounts, in a child process with user and mount namespaces of its own: it needs no root, and nothing of
// it is seen by anybody else or outlives it.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <string>

#include "support/TemporaryFolder.h"

namespace Mounts {

inline void WriteTo(char const* path, std::string const& text) {
    int const file = open(path, O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(static_cast<ssize_t>(text.size()), write(file, text.data(), text.size())) << path;
    close(file);
}

// Makes the process root of its own namespaces. Mounts of the machine stay seen and are not changed. Where
// there are no user namespaces, as in a chroot, root does without one.
inline void EnterNamespaces() {
    std::string const user = "0 " + std::to_string(getuid()) + " 1";
    std::string const group = "0 " + std::to_string(getgid()) + " 1";
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0) {
        WriteTo("/proc/self/setgroups", "deny");
        WriteTo("/proc/self/uid_map", user);
        WriteTo("/proc/self/gid_map", group);
    } else {
        ASSERT_EQ(0, unshare(CLONE_NEWNS)) << "user namespaces must be allowed, or the test run by root";
    }
    ASSERT_EQ(0, mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr));
}

/// Runs the body of a test in such a process. It is ended when it hangs. Nothing of the platform may have
/// been called before: what it knows of mounts would be those of the parent.
template <class Body>
void Apart(Body const& body) {
    constexpr unsigned patience = 60;  // seconds
    std::fflush(nullptr);
    pid_t const child = fork();
    if (child == 0) {
        alarm(patience);
        try {
            EnterNamespaces();
            if (!testing::Test::HasFailure()) body();
        } catch (std::exception const& exception) {
            ADD_FAILURE() << exception.what();
        }
        std::fflush(nullptr);
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_FALSE(WIFSIGNALED(status)) << "ended by signal " << WTERMSIG(status);
    EXPECT_EQ(0, status) << "see the failures above";
}

/// What the system calls do, with their failures told.
inline void Mount(std::string const& type, std::string const& path, std::string const& options = {},
                  unsigned long flags = 0, std::string const& source = "test") {
    std::filesystem::create_directories(path);
    EXPECT_EQ(0, mount(source.c_str(), path.c_str(), type.c_str(), flags, options.c_str()))
        << type << " " << path << ": " << strerror(errno);
}
inline void MountTmpfs(std::string const& path, std::string const& options = {}) {
    Mount("tmpfs", path, options);
}
inline void Bind(std::string const& from, std::string const& to) { Mount("", to, "", MS_BIND, from); }
inline void Unmount(std::string const& path, int flags = 0) {
    EXPECT_EQ(0, umount2(path.c_str(), flags)) << path << ": " << strerror(errno);
}

/// A FUSE file system whose server never answers; once it is destroyed, all calls fail.
class DeadServer {
  public:
    explicit DeadServer(std::string const& mountPoint) : device(open("/dev/fuse", O_RDWR | O_CLOEXEC)) {
        EXPECT_LE(0, device) << "FUSE must be there: " << strerror(errno);
        Mount("fuse.dead", mountPoint,
              "fd=" + std::to_string(device) + ",rootmode=40000,user_id=0,group_id=0", MS_NOSUID | MS_NODEV,
              "dead");
    }
    DeadServer(DeadServer const&) = delete;
    DeadServer& operator=(DeadServer const&) = delete;
    ~DeadServer() { Close(); }

    void Close() {
        if (device >= 0) close(device);
        device = -1;
    }

  private:
    int device;
};

}  // namespace Mounts
