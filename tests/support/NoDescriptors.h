#pragma once

// A process that can open nothing.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

/// While one lives, no file can be opened.
class NoDescriptors {
  public:
    NoDescriptors() {
        EXPECT_EQ(0, getrlimit(RLIMIT_NOFILE, &before));
        rlimit const none{0, before.rlim_max};
        EXPECT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));
    }
    NoDescriptors(NoDescriptors const&) = delete;
    NoDescriptors& operator=(NoDescriptors const&) = delete;
    ~NoDescriptors() { EXPECT_EQ(0, setrlimit(RLIMIT_NOFILE, &before)); }

  private:
    rlimit before;
};
