#include "command/Output.h"

#include <stdio_ext.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>

namespace Command {

Output::Output() {
    static char room[65536];
    if (!isatty(STDOUT_FILENO)) std::setvbuf(stdout, room, _IOFBF, sizeof room);
}

void Output::Note(bool succeeded) {
    if (!succeeded && error == 0) error = errno;
}

void Output::Write(std::string_view bytes) {
    unended = bytes.ends_with('\n') ? 0 : unended + bytes.size();
    if (error == 0) Note(fwrite_unlocked(bytes.data(), 1, bytes.size(), stdout) == bytes.size());
}

bool Output::EndsALine() const { return unended <= __fpending(stdout); }

void Output::Flush() {
    if (error == 0) Note(std::fflush(stdout) == 0);
}

void Output::FlushNowAndThen() {
    std::timespec present{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &present);  // exact to some milliseconds, at a tenth of the time
    auto const now = std::chrono::seconds(present.tv_sec) + std::chrono::nanoseconds(present.tv_nsec);
    if (now - flushed < std::chrono::milliseconds(100)) return;
    Flush();
    flushed = now;
}

}  // namespace Command
