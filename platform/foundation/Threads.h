#pragma once

// What costs next to nothing in a process that has one thread only, as the command mostly has, and is safe
// from any thread in others. It counts where each item of a tree is handed on several times.

#include <sys/single_threaded.h>

#include <atomic>
#include <cstdint>
#include <mutex>

namespace Platform {

/// A count of owners, from 1.
class OwnerCount {
  public:
    void Increase() noexcept {
        if (__libc_single_threaded) {
            count.store(count.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
        } else {
            count.fetch_add(1, std::memory_order_relaxed);
        }
    }
    /// Returns false, and does nothing, when there is no owner any more.
    bool IncreaseUnlessNone() noexcept {
        std::int64_t now = count.load(std::memory_order_relaxed);
        while (now != 0 && !count.compare_exchange_weak(now, now + 1, std::memory_order_relaxed)) {
        }
        return now != 0;
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

/// Holds a mutex while it lives, where there is another thread to keep away. No thread may be started
/// meanwhile.
class QuickLock {
  public:
    explicit QuickLock(std::mutex& mutex) : lock(mutex, std::defer_lock) {
        if (!__libc_single_threaded) lock.lock();
    }

  private:
    std::unique_lock<std::mutex> lock;
};

}  // namespace Platform
