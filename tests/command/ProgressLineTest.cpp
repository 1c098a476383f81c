// The line that tells how far a query has come, as it is seen on a terminal.

#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <thread>

#include "command/Running.h"
#include "support/TemporaryFolder.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr std::size_t kWidth = 120;
std::string const kLine = "\r[0-9,]+ values?, [0-9,]+ files?, [0-9,]+ s\033\\[K\r";

// What a terminal shows of what it was sent: rows of text, and the cursor in the last of them.
class Screen {
  public:
    Screen(std::string const& sent, std::size_t width) : width(width) {
        for (std::size_t at = 0; at < sent.size();) at += Take(std::string_view(sent).substr(at));
        while (!rows.empty() && rows.back().empty()) rows.pop_back();
    }
    std::vector<std::string> rows{""};
    bool hasWrapped = false;

  private:
    // Returns how many bytes that was.
    std::size_t Take(std::string_view sent) {
        if (sent.starts_with("\033[K")) return rows.back().resize(std::min(column, rows.back().size())), 3;
        if (sent.starts_with("\033["))  // a colour
            return sent.find('m') + 1;
        if (sent[0] == '\r')
            column = 0;
        else if (sent[0] == '\n')
            rows.emplace_back(column, ' ');
        else
            Show(sent[0]);
        return 1;
    }
    void Show(char character) {
        if (column == width) {
            rows.emplace_back();
            column = 0;
            hasWrapped = true;
        }
        std::string& row = rows.back();
        row.resize(std::max(row.size(), column + 1), ' ');
        row[column++] = character;
    }
    std::size_t const width;
    std::size_t column = 0;
};

using Rows = std::vector<std::string>;

// A program on a terminal of its own, which controls it.
class OnTerminal {
  public:
    explicit OnTerminal(std::vector<std::string> const& arguments, std::size_t width = kWidth)
        : width(width) {
        std::vector<char*> argv;
        for (std::string const& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        winsize const size{24, static_cast<unsigned short>(width), 0, 0};
        child = forkpty(&terminal, nullptr, nullptr, &size);
        if (child != 0) return;
        for (int ordinary : {SIGINT, SIGTERM, SIGPIPE}) std::signal(ordinary, SIG_DFL);
        execvp(argv[0], argv.data());
        _exit(127);
    }
    ~OnTerminal() {
        if (!ended) kill(child, SIGKILL);
        Wait();
        close(terminal);
    }
    OnTerminal(OnTerminal const&) = delete;
    OnTerminal& operator=(OnTerminal const&) = delete;

    void Type(char key) const { EXPECT_EQ(write(terminal, &key, 1), 1); }
    /// Waits until it has sent something like this since the last such call; empty where it never does.
    std::string Await(std::string const& pattern) {
        std::regex const wanted(pattern);
        std::smatch match;
        for (auto const end = Clock::now() + 30s; Clock::now() < end; Read()) {
            std::string const fresh = sent.substr(seen);
            if (!std::regex_search(fresh, match, wanted)) continue;
            seen += static_cast<std::size_t>(match.position() + match.length());
            return match.str();
        }
        ADD_FAILURE() << "never sent: " << pattern << "\nsent: " << sent;
        return {};
    }
    /// What it sends for longer than it takes a line to come, or to come back.
    std::string Watch() {
        seen = sent.size();
        for (auto const end = Clock::now() + 1500ms; Clock::now() < end;) Read();
        return sent.substr(seen);
    }
    bool HasEnded() {
        Read();
        if (!ended) ended = waitpid(child, &status, WNOHANG) == child;
        return ended;
    }
    /// Its exit status, once it has ended.
    int Wait() {
        for (auto const end = Clock::now() + 30s; !HasEnded() && Clock::now() < end;) {
        }
        EXPECT_TRUE(ended);
        while (Read()) {
        }
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    std::string ProcessFolder() const { return "/proc/" + std::to_string(child); }
    std::string const& Sent() const { return sent; }
    Screen Shown() const { return {sent, width}; }

  private:
    // Returns whether there was something.
    bool Read() {
        pollfd ready{terminal, POLLIN, 0};
        std::array<char, 4096> part;
        if (poll(&ready, 1, 5) != 1) return false;
        ssize_t const size = read(terminal, part.data(), part.size());
        if (size > 0) sent.append(part.data(), static_cast<std::size_t>(size));
        return size > 0;
    }
    std::size_t const width;
    int terminal = -1;
    pid_t child = -1;
    int status = 0;
    bool ended = false;
    std::string sent;
    std::size_t seen = 0;
};

class ProgressLine : public testing::Test {
  protected:
    // A phrase that has no value before Open(name).
    std::string Gate(std::string const& name) const { return "gate \"" + folder.Path(name) + "\""; }
    void Open(std::string const& name) const { folder.Write(name); }

    static std::vector<std::string> Command(std::vector<std::string> const& arguments) {
        std::vector<std::string> command{"env", "TERM=xterm", Zelq(), "--inspectors",
                                         TestLibrary("GateInspectors")};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return command;
    }
    // The same, started by a shell, for which "$@" is the command.
    static std::vector<std::string> Shell(std::string const& script,
                                          std::vector<std::string> const& arguments) {
        std::vector<std::string> command{"bash", "-c", script, "bash"};
        for (std::string const& word : Command(arguments)) command.push_back(word);
        return command;
    }
    // What comes to the terminal of a query that waits for longer than it takes a line to come.
    std::string WhileItWaits(std::vector<std::string> const& command) const {
        OnTerminal running(command);
        std::string const watched = running.Watch();
        Open("open");
        EXPECT_EQ(running.Wait(), 0);
        return watched;
    }
    std::string Contents(std::string const& name) const {
        std::stringstream text;
        text << std::ifstream(folder.Path(name)).rdbuf();
        return text.str();
    }
    TemporaryFolder folder;
};

TEST_F(ProgressLine, TellsValuesFilesAndTime) {
    std::string const query = "look 88310; integers up to 1203; " + Gate("open");
    OnTerminal running(Shell("exec \"$@\" >" + folder.Path("values"), {query}));
    std::regex const line("\r1,204 values, 88,310 files, [0-9]+ s\033\\[K\r");
    // A slow machine shows how it gets there.
    for (int early = 0; early < 50 && !std::regex_match(running.Await(kLine), line); ++early) {
    }
    for (int times = 0; times < 3; ++times)  // it moves although the inspector is silent
        EXPECT_TRUE(std::regex_match(running.Await(kLine), line)) << running.Sent();
    Open("open");
    EXPECT_EQ(running.Wait(), 0);
    EXPECT_EQ(running.Shown().rows, Rows{});
    std::string const values = Contents("values");
    EXPECT_TRUE(values.starts_with("88310\n1\n2\n"));
    EXPECT_TRUE(values.ends_with("\n1203\n0\n"));
    EXPECT_EQ(values.find('\033'), values.npos);
}

TEST_F(ProgressLine, OneOfAKindIsSingular) {
    OnTerminal running(Command({"look 1; " + Gate("open")}));
    EXPECT_TRUE(running.Await(kLine).starts_with("\r1 value, 1 file, "));
}

TEST_F(ProgressLine, ABriefQueryShowsNone) {
    OnTerminal running(Command({"look 1; 2"}));
    EXPECT_EQ(running.Wait(), 0);
    EXPECT_EQ(running.Sent(), "1\r\n2\r\n");
}

TEST_F(ProgressLine, IsRefusedByQuiet) {
    EXPECT_EQ(WhileItWaits(Command({"--quiet", "look 1; " + Gate("open")})), "1\r\n");
}

TEST_F(ProgressLine, QuietTurnsOffNothingElse) {
    Ran ran = RunZelq({"--quiet", "1; 2 / 0"});
    EXPECT_EQ(ran.out, "1\n");
    EXPECT_EQ(ran.err, "error: division by zero\n  1; 2 / 0\n       ^\n");
    EXPECT_EQ(ran.status, 1);
}

TEST_F(ProgressLine, IsForTerminalsOnly) {
    std::vector<std::string> const query{"look 1; " + Gate("open")};
    EXPECT_EQ(WhileItWaits(Shell("\"$@\" 2>" + folder.Path("messages"), query)), "1\r\n");
    EXPECT_EQ(Contents("messages"), "");
    std::filesystem::remove(folder.Path("open"));
    EXPECT_EQ(WhileItWaits(Shell("exec env TERM=dumb \"${@:3}\"", query)), "1\r\n");
}

TEST_F(ProgressLine, StaysAwayFromATerminalThatIsSomebodyElses) {
    std::vector<std::string> const query{"look 1; " + Gate("open")};
    // In the background.
    EXPECT_EQ(WhileItWaits(Shell("set -m; \"$@\" & wait $!", query)), "1\r\n");
    std::filesystem::remove(folder.Path("open"));
    // A pager reads every key.
    EXPECT_EQ(WhileItWaits(Shell("stty -icanon; exec \"$@\"", query)), "1\r\n");
}

TEST_F(ProgressLine, ATerminalThatWasToldToWaitHoldsNothingUp) {
    OnTerminal running(Shell("exec \"$@\" >" + folder.Path("values"), {"look 1; " + Gate("open")}));
    running.Type('\023');  // Ctrl-S
    EXPECT_EQ(running.Watch(), "");
    Open("open");
    EXPECT_EQ(running.Wait(), 0);
    EXPECT_EQ(Contents("values"), "1\n0\n");
}

TEST_F(ProgressLine, LeavesNothingAmongTheValues) {
    OnTerminal running(Command({"look 12345; " + Gate("first") + "; 1; 2; " + Gate("second")}));
    running.Await("12345\r\n" + kLine);
    Open("first");
    running.Await("\r\033\\[K0\r\n1\r\n2\r\n" + kLine);
    Open("second");
    EXPECT_EQ(running.Wait(), 0);
    EXPECT_EQ(running.Shown().rows, (Rows{"12345", "0", "1", "2", "0"}));
}

TEST_F(ProgressLine, DoesNotFlickerAmongValuesThatComeQuickly) {
    OnTerminal running(
        {"env", "TERM=xterm", Zelq(), "--inspectors", TestLibrary("NastyInspectors"), "kinds of rounds"});
    running.Await("1\r\n2\r\n3\r\n");
    EXPECT_EQ(running.Watch().find('\033'), std::string::npos);
}

TEST_F(ProgressLine, GoesBeforeAMessage) {
    std::string const query = "look 1234567; 2 / " + Gate("open");
    OnTerminal running(Command({query}));
    running.Await(kLine);
    Open("open");
    EXPECT_EQ(running.Wait(), 1);
    EXPECT_EQ(running.Shown().rows,
              (Rows{"1234567", "error: division by zero", "  " + query, "                  ^"}));
}

TEST_F(ProgressLine, ComesNeverBehindAPartOfALine) {
    OnTerminal running(Command({"--json", Gate("first") + "; " + Gate("second")}), 400);
    running.Await(kLine);  // nothing of the document is on the terminal yet
    Open("first");
    running.Await("\"values\":\\[0");
    EXPECT_EQ(running.Watch(), "");
    Open("second");
    EXPECT_EQ(running.Wait(), 0);
    Rows const rows = running.Shown().rows;
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_TRUE(rows[0].starts_with("{\"query\":\"gate ")) << rows[0];
    EXPECT_NE(rows[0].find(",\"values\":[0,0],\"error\":null,"), std::string::npos) << rows[0];
    EXPECT_TRUE(rows[0].ends_with("}")) << rows[0];
}

TEST_F(ProgressLine, IsCutToTheTerminalsWidth) {
    OnTerminal running(Command({"look 12345; " + Gate("open")}), 20);
    EXPECT_EQ(running.Await("\r1 value.*\033\\[K\r"), "\r1 value, 12,345 fil\033[K\r");
    Open("open");
    EXPECT_EQ(running.Wait(), 0);
    EXPECT_FALSE(running.Shown().hasWrapped);
    EXPECT_EQ(running.Shown().rows, (Rows{"12345", "0"}));
}

TEST_F(ProgressLine, GoesAtCtrlCAndWhatWasFoundStays) {
    OnTerminal running(Command({"look 1; " + Gate("never")}), 300);
    running.Await(kLine);
    running.Type('\003');
    EXPECT_EQ(running.Wait(), 130);
    std::string const query = "look 1; " + Gate("never");
    EXPECT_EQ(running.Shown().rows,
              (Rows{"1", "error: the evaluation was cancelled", "  " + query, "          ^~~~"}));
}

TEST_F(ProgressLine, GoesAtTheSecondCtrlCToo) {
    OnTerminal running(Command({"look 1; stubborn " + Gate("never")}));
    running.Await(kLine);
    running.Type('\003');
    running.Watch();
    running.Type('\003');
    EXPECT_EQ(running.Wait(), 130);
    EXPECT_EQ(running.Shown().rows, Rows{"1"});
}

// All of them go to the main thread, as ever: the kernel keeps a mask of what a thread does not take.
TEST_F(ProgressLine, ItsThreadTakesNoSignals) {
    OnTerminal running(Command({"look 1; " + Gate("never")}));
    running.Await(kLine);  // the thread is at its work
    std::regex const blocked("\nSigBlk:\t(.*)\n");
    std::vector<std::string> masks;
    for (auto const& thread : std::filesystem::directory_iterator(running.ProcessFolder() + "/task")) {
        std::stringstream status;
        status << std::ifstream(thread.path() / "status").rdbuf();
        std::string const text = status.str();
        std::smatch mask;
        if (std::regex_search(text, mask, blocked)) masks.push_back(mask[1]);
    }
    std::sort(masks.begin(), masks.end());
    // All but KILL, STOP and the two that the C library keeps for itself.
    EXPECT_EQ(masks, (Rows{"0000000000000000", "fffffffe7ffbfeff"}));
}

TEST_F(ProgressLine, IsDoneWithoutWhereThereIsNoThread) {
    // A new thread's stack is as large as this says: larger than there are addresses.
    OnTerminal running(Shell("ulimit -s 200000000000 && exec \"$@\"", {"look 1"}));
    EXPECT_EQ(running.Wait(), 0);
    EXPECT_EQ(running.Sent(), "1\r\n");
}

}  // namespace
