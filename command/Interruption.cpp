#include "command/Interruption.h"

#include <unistd.h>

#include "command/ExitStatus.h"
#include "command/ProgressLine.h"

namespace Command {
namespace {

Evaluator::Cancellation asked;
volatile sig_atomic_t first = 0;

void OnSignal(int signal) {
    if (asked.IsRequested()) {
        ProgressLine::EraseAtOnce();
        _exit(kSignalled + signal);
    }
    first = signal;
    asked.Request();
}

// System calls go on behind the signal: inspectors and the output need not expect it.
void Handle(int signal, struct sigaction& before) {
    struct sigaction action {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, &before);
    if (before.sa_handler == SIG_IGN) sigaction(signal, &before, nullptr);
}

}  // namespace

Interruption::Interruption() {
    asked.Clear();
    first = 0;
    Handle(SIGINT, interruptBefore);
    Handle(SIGTERM, terminateBefore);
}

Interruption::~Interruption() {
    sigaction(SIGINT, &interruptBefore, nullptr);
    sigaction(SIGTERM, &terminateBefore, nullptr);
}

Evaluator::Cancellation const& Interruption::Asked() const { return asked; }
int Interruption::Signal() const { return first; }

}  // namespace Command
