#pragma once

#include <chrono>
#include <cstddef>
#include <string_view>

namespace Command {

/// Standard output. Values are seen soon after they were found, also through a pipe, where it is not flushed
/// at every line.
class Output {
  public:
    /// To be made before anything is written.
    Output();
    void Write(std::string_view bytes);
    /// To be called behind each value: flushes what was written where that was not done for a while.
    void FlushNowAndThen();
    void Flush();
    /// Whether what has left the process ends a line, or is nothing at all, as far as can be told at no cost:
    /// a line that ends within a write is not noticed.
    bool EndsALine() const;
    /// The errno of the first write that failed, after which nothing more is written; 0: none.
    int Error() const { return error; }

  private:
    void Note(bool succeeded);
    int error = 0;
    std::size_t unended = 0;             ///< bytes since the last write that ended a line
    std::chrono::nanoseconds flushed{};  ///< when that was last, by the monotonic clock
};

}  // namespace Command
