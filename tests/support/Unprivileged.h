#pragma once

// Rights that a test gives up for a while.

#include <gtest/gtest.h>
#include <unistd.h>

/// While one lives, the process has no more rights than the user "nobody", so that permissions of files
/// count. It changes nothing where the tests do not run as root.
class Unprivileged {
  public:
    Unprivileged() : wasRoot(geteuid() == 0) {
        if (wasRoot) {
            EXPECT_EQ(0, seteuid(65534));
        }
    }
    Unprivileged(Unprivileged const&) = delete;
    Unprivileged& operator=(Unprivileged const&) = delete;
    ~Unprivileged() {
        if (wasRoot) {
            EXPECT_EQ(0, seteuid(0));
        }
    }

  private:
    bool const wasRoot;
};
