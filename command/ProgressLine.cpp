#include "command/ProgressLine.h"

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <string_view>
#include <system_error>
#include <utility>

#include "command/Terminal.h"

namespace Command {
namespace {

constexpr std::chrono::milliseconds kBefore{1000}, kBetween{250};

// Whether the line is on the screen. For the signal handler too, which can take no lock.
std::atomic<bool> shown{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void Put(std::string_view bytes) {
    [[maybe_unused]] ssize_t const size = write(STDERR_FILENO, bytes.data(), bytes.size());
}

void Erase() {
    if (shown.exchange(false)) Put("\r\033[K");
}

// Whether the terminal takes something without making the writer wait, as Ctrl-S does.
bool TakesMore() {
    pollfd terminal{STDERR_FILENO, POLLOUT, 0};
    return poll(&terminal, 1, 0) == 1 && terminal.revents == POLLOUT;
}

bool InForeground() {
    pid_t const group = tcgetpgrp(STDERR_FILENO);
    return group < 0 || group == getpgrp();  // below zero: the terminal controls nobody of ours
}

// Programs that have the screen to themselves read the keyboard key by key.
bool IsReadByLines() {
    termios settings;
    return tcgetattr(STDERR_FILENO, &settings) == 0 && (settings.c_lflag & ICANON) != 0;
}

// Columns of the terminal; where it does not tell, as many as terminals always had.
std::size_t Width() {
    winsize size{};
    ioctl(STDERR_FILENO, TIOCGWINSZ, &size);
    return size.ws_col > 0 ? size.ws_col : 80;
}

// In decimal, with a comma before every three digits.
std::string Grouped(std::uint64_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, ",");
    return digits;
}

std::string Counted(std::uint64_t number, char const* thing) {
    return Grouped(number) + ' ' + thing + (number == 1 ? "" : "s");
}

// While one lives, its thread takes no signals, nor do those that it starts.
class SignalsBlocked {
  public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }
    SignalsBlocked(SignalsBlocked const&) = delete;
    SignalsBlocked& operator=(SignalsBlocked const&) = delete;

  private:
    sigset_t before;
};

}  // namespace

ProgressLine::ProgressLine(bool wanted, Output const& output)
    : output(output), sharesTerminal(isatty(STDOUT_FILENO)), begun(std::chrono::steady_clock::now()) {
    if (!wanted || !StandardErrorIsTerminal()) return;
    SignalsBlocked blocked;
    try {
        thread = std::thread([this] { DrawNowAndThen(); });
    } catch (std::system_error const&) {  // the system has no thread to spare: the query runs without a line
    }
}

ProgressLine::~ProgressLine() {
    if (!thread.joinable()) return;
    {
        std::lock_guard lock(mutex);
        ended = true;
    }
    wake.notify_one();
    thread.join();
    Erase();
}

std::unique_lock<std::mutex> ProgressLine::AboutToWrite() {
    if (!sharesTerminal || !thread.joinable()) return {};
    std::unique_lock lock(mutex);
    Erase();
    written = true;
    return lock;
}

void ProgressLine::EraseAtOnce() noexcept {
    if (TakesMore()) Erase();
}

void ProgressLine::DrawNowAndThen() {
    auto hasEnded = [this] { return ended; };
    std::unique_lock lock(mutex);
    for (auto pause = kBefore; !wake.wait_for(lock, pause, hasEnded); pause = kBetween)
        if (!std::exchange(written, false) && MayDraw()) Draw();
}

bool ProgressLine::MayDraw() const {
    bool const hasLine = !sharesTerminal || output.EndsALine();
    return hasLine && InForeground() && IsReadByLines() && TakesMore();
}

void ProgressLine::Draw() const {
    std::string const text = Text().substr(0, Width() - 1);  // the last column would make it wrap
    shown = true;
    Put('\r' + text + "\033[K\r");
}

std::string ProgressLine::Text() const {
    auto const elapsed =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begun);
    return Counted(progress.Values(), "value") + ", " + Counted(progress.Items(), "file") + ", " +
           Grouped(static_cast<std::uint64_t>(elapsed.count())) + " s";
}

}  // namespace Command
