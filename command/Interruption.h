#pragma once

#include <signal.h>

#include "Evaluator/Embedding.h"

namespace Command {

/// While one lives, Ctrl-C (SIGINT) and SIGTERM ask the evaluation to end. The second of them ends the
/// process at once: the evaluation may be deaf. A signal that was ignored before stays so, as of a program in
/// the background. At most one lives at a time.
class Interruption {
  public:
    Interruption();
    ~Interruption();
    Interruption(Interruption const&) = delete;
    Interruption& operator=(Interruption const&) = delete;

    Evaluator::Cancellation const& Asked() const;
    /// The signal that came first; 0: none.
    int Signal() const;

  private:
    struct sigaction interruptBefore, terminateBefore;
};

}  // namespace Command
