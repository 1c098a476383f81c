#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "Evaluator/Embedding.h"
#include "command/Output.h"

namespace Command {

/// While one lives and a query runs longer than a second, a line on standard error tells how far the query
/// has come: "1,204 values, 88,310 files, 3 s". A thread of its own, which takes no signals, draws it anew
/// four times a second, so that it also moves when an inspector is silent. The cursor rests at its
/// beginning. At most one lives at a time; the end of its life erases the line.
///
/// It is never drawn over anything else: not while values come in quick succession, not behind a part of a
/// line, not in the background, not while another program, such as a pager behind a pipe, has the terminal to
/// itself, nor while the terminal has been told to wait.
class ProgressLine {
  public:
    /// Where not `wanted`, or standard error is no terminal, there is no line and no thread. The output is
    /// the one that values are written to.
    ProgressLine(bool wanted, Output const& output);
    ~ProgressLine();
    ProgressLine(ProgressLine const&) = delete;
    ProgressLine& operator=(ProgressLine const&) = delete;

    /// What the query is to count in; null: there is no line.
    Evaluator::Progress* Progress() { return thread.joinable() ? &progress : nullptr; }

    /// Erases the line where values go to the terminal as well. It stays away while what this returns lives,
    /// and comes back when nothing has been written for a while.
    [[nodiscard]] std::unique_lock<std::mutex> AboutToWrite();

    /// For a signal handler that is about to end the process: erases the line that is there, unless the
    /// terminal would make it wait. A line that the thread is drawing at this very moment may stay.
    static void EraseAtOnce() noexcept;

  private:
    void DrawNowAndThen();
    bool MayDraw() const;
    void Draw() const;
    std::string Text() const;

    Evaluator::Progress progress;
    Output const& output;
    bool const sharesTerminal;  ///< values go to a terminal, which is taken for the same one
    std::chrono::steady_clock::time_point const begun;
    std::mutex mutex;  ///< held by who writes to the terminal
    std::condition_variable wake;
    bool written = false;  ///< values, since the thread last looked
    bool ended = false;
    std::thread thread;
};

}  // namespace Command
