#pragma once

// How many owners something has.

#include <sys/single_threaded.h>

#include <atomic>
#include <cstdint>

namespace Platform {

/// A count of owners, from 1. Safe from any thread; in a process that has one thread only it costs no more
/// than a plain number, which counts where every item of a tree is handed over several times.
class OwnerCount {
  public:
    void Increase() noexcept {
        if (__libc_single_threaded) {
            count.store(count.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
        } else {
            count.fetch_add(1, std::memory_order_relaxed);
        }
    }
    /// Returns whether that was the last owner.
    bool Decrease() noexcept {
        if (!__libc_single_threaded) return count.fetch_sub(1, std::memory_order_acq_rel) == 1;
        std::int64_t const left = count.load(std::memory_order_relaxed) - 1;
        count.store(left, std::memory_order_relaxed);
        return left == 0;
    }
    std::int64_t Number() const noexcept { return count.load(std::memory_order_relaxed); }

  private:
    std::atomic<std::int64_t> count{1};
};

}  // namespace Platform
