#pragma once

// The contents of files that were read last, for whoever finds the files unchanged.

#include <Carbon/MacErrors.h>

#include <chrono>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "files/FileState.h"

namespace Platform {

/// Whether a file that is in a state at a time, in ns since 1970, will show each change from now on. One that
/// changes twice within a tick of the file system's clock may look the same. Some file systems tell whole
/// seconds only, every other one even.
inline bool HasSettled(FileState const& state, std::int64_t time) {
    constexpr std::int64_t second = 1'000'000'000, manyTicks = 100'000'000;
    bool const hasFineClock = state.changed % second != 0;
    return state.changed < time - (hasFineClock ? manyTicks : 3 * second);
}

/// Keeps the contents of at most so many files; those that were asked for longest ago go first. Safe from any
/// thread.
template <class Content>
class FileCache {
  public:
    using SharedContent = std::shared_ptr<Content const>;

    explicit FileCache(std::size_t capacity) : most(capacity) {}

    /// What the file at a path held in that state; null when it is not kept.
    SharedContent Find(std::string const& path, FileState const& state) {
        std::lock_guard const lock(mutex);
        for (auto at = files.begin(); at != files.end(); ++at) {
            if (at->path != path) continue;
            if (at->state != state) return nullptr;
            files.splice(files.begin(), files, at);
            return at->content;
        }
        return nullptr;
    }

    /// Keeps what it holds, instead of what was kept of it before.
    void Keep(std::string path, FileState const& state, SharedContent content) {
        std::list<File> added;
        added.push_back({std::move(path), state, std::move(content)});
        std::list<File> dropped;  // ends when the lock is free again
        std::lock_guard const lock(mutex);
        for (auto at = files.begin(); at != files.end();) {
            auto const file = at++;
            if (file->path == added.front().path) dropped.splice(dropped.end(), files, file);
        }
        files.splice(files.begin(), added);
        if (files.size() > most) dropped.splice(dropped.end(), files, std::prev(files.end()));
    }

  private:
    struct File {
        std::string path;
        FileState state;
        SharedContent content;
    };

    std::mutex mutex;
    std::size_t const most;
    std::list<File> files;  // the one that was asked for last in front
};

/// Gets what the file at a path holds as it is now, from the cache or by `read`; null where there is none, or
/// where `read` makes nothing of it. `read` takes a plain path and the content to fill, and gives a result
/// code. The result is noErr unless a wait was given up. What cannot be read is not kept, so that its failure
/// is noted each time.
template <class Content, class Read>
OSErr GetThrough(FileCache<Content>& cache, std::string const& path, std::shared_ptr<Content const>& content,
                 Read const& read) {
    std::int64_t const asked = std::chrono::duration_cast<std::chrono::nanoseconds>(
                                   std::chrono::system_clock::now().time_since_epoch())
                                   .count();
    SeenItem item;
    if (OSErr const error = SeeItem(path, item); error != noErr)
        return WasGivenUp(error) ? error : OSErr{noErr};
    content = cache.Find(path, item.state);
    if (content) return noErr;
    OSErr const error = read(item.path, content);
    constexpr std::uint64_t mostBytes = 1 << 20;  // larger files are read each time rather than kept
    if (content && item.state.size <= mostBytes && HasSettled(item.state, asked))
        cache.Keep(path, item.state, content);
    return WasGivenUp(error) ? error : OSErr{noErr};
}

}  // namespace Platform
