// Signals, readers that go away, and terminals.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <thread>

#include "command/Running.h"

namespace {

// One value, and then nothing for ever.
constexpr char const* kStuck = "kind of trouble 1; patience of trouble 1";
constexpr char const* kCancelled =
    "error: the evaluation was cancelled\n  kind of trouble 1; patience of trouble 1\n"
    "                     ^~~~~~~~\n";

std::vector<std::string> Command(std::vector<std::string> const& arguments) {
    std::vector<std::string> command{Zelq(), "--inspectors", TestLibrary("NastyInspectors")};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

Ran SignalledAfterAValue(std::vector<std::string> const& arguments, int signal) {
    Started started(Command(arguments));
    started.AwaitOutput();
    started.Send(signal);
    return started.Wait();
}

void Pause() { std::this_thread::sleep_for(std::chrono::milliseconds(20)); }

TEST(Interruption, ValuesAreSeenBeforeTheEvaluationEnds) {
    Started started(Command({kStuck}));
    started.AwaitOutput();
    EXPECT_FALSE(started.HasEnded());
    started.Send(SIGKILL);
    EXPECT_EQ(started.Wait().out, "1\n");
}

TEST(Interruption, CtrlCEndsTheEvaluationAndWhatWasFoundStays) {
    Ran ran = SignalledAfterAValue({kStuck}, SIGINT);
    EXPECT_EQ(ran.out, "1\n");
    EXPECT_EQ(ran.err, kCancelled);
    EXPECT_EQ(ran.status, 130);
}

TEST(Interruption, TerminationLikewise) {
    Ran ran = SignalledAfterAValue({kStuck}, SIGTERM);
    EXPECT_EQ(ran.out, "1\n");
    EXPECT_EQ(ran.err, kCancelled);
    EXPECT_EQ(ran.status, 143);
}

TEST(Interruption, ADocumentIsCompletedBehindAnInterruption) {
    Ran ran = SignalledAfterAValue({"--json", kStuck}, SIGINT);
    EXPECT_EQ(
        ran.out.substr(0, ran.out.find(",\"seconds\"")),
        R"({"query":"kind of trouble 1; patience of trouble 1","type":"integer","plural":true,"values":[1],"error":{"kind":"cancelled","message":"the evaluation was cancelled","hint":null,"begin":19,"end":27,"more":[]})");
    EXPECT_TRUE(ran.out.ends_with("}\n"));
    EXPECT_EQ(ran.err, kCancelled);
    EXPECT_EQ(ran.status, 130);
}

TEST(Interruption, ValuesThatWereNotFlushedYetStay) {
    Started started(Command({"kinds of rounds"}));
    started.AwaitOutput();
    Pause();
    started.Send(SIGINT);
    Ran ran = started.Wait();
    EXPECT_EQ(ran.status, 130);
    EXPECT_EQ(ran.out.substr(0, 4), "1\n2\n");
    EXPECT_TRUE(ran.out.ends_with('\n'));
}

TEST(Interruption, AnInspectorThatSwallowsExceptionsIsEnded) {
    Ran ran = SignalledAfterAValue({"kind of trouble 1; deafness of trouble 1"}, SIGINT);
    EXPECT_EQ(ran.out, "1\n");
    EXPECT_EQ(ran.status, 130);
}

// The first finds the command where it cannot heed it: nobody reads the pipe that it writes to.
TEST(Interruption, TheSecondCtrlCEndsTheProcessAtOnce) {
    std::array<int, 2> pipe;
    ASSERT_EQ(pipe2(pipe.data(), O_CLOEXEC), 0);
    int const capacity = fcntl(pipe[1], F_GETPIPE_SZ);
    Started started(Command({"kinds of rounds"}), {}, pipe[1]);
    int held = 0;
    for (int i = 0; i < 1000 && held < capacity - 4096; ++i, Pause()) ioctl(pipe[0], FIONREAD, &held);
    started.Send(SIGINT);
    for (int i = 0; i < 10; ++i) Pause();
    EXPECT_FALSE(started.HasEnded());
    for (int i = 0; i < 500 && !started.HasEnded(); ++i, Pause()) started.Send(SIGINT);
    EXPECT_TRUE(started.HasEnded());
    started.Send(SIGKILL);
    Ran ran = started.Wait();
    EXPECT_EQ(ran.status, 130);
    EXPECT_EQ(ran.err, "");
    close(pipe[0]);
    close(pipe[1]);
}

TEST(Interruption, ASignalThatWasIgnoredStaysIgnored) {
    Started started({"sh", "-c", "trap '' INT; exec \"$0\" \"$@\"", Zelq(), "--inspectors",
                     TestLibrary("NastyInspectors"), kStuck});
    started.AwaitOutput();
    started.Send(SIGINT);
    started.Send(SIGINT);
    Pause();
    EXPECT_FALSE(started.HasEnded());
    started.Send(SIGTERM);
    Ran ran = started.Wait();
    EXPECT_EQ(ran.status, 143);
    EXPECT_EQ(ran.err, kCancelled);
}

TEST(Output, AReaderThatGoesAwayEndsItQuietly) {
    for (std::string const before : {"", "trap '' PIPE; "})
        for (std::string const format : {"", "--json", "--ndjson", "-0"}) {
            std::string const script = before + "\"$0\" --inspectors \"$1\" " + format +
                                       " 'kinds of rounds' | head -c 2 >/dev/null; exit ${PIPESTATUS[0]}";
            Ran ran = RunProgram({"bash", "-c", script, Zelq(), TestLibrary("NastyInspectors")});
            EXPECT_EQ(ran.err, "") << script;
            EXPECT_EQ(ran.status, 141) << script;
        }
}

// What a terminal gets of a query that fails.
std::string OnTerminal(std::vector<std::string> environment, std::string const& redirection = {}) {
    std::vector<std::string> command{"env", "-u", "NO_COLOR", "TERM=xterm"};
    command.insert(command.end(), environment.begin(), environment.end());
    for (std::string argument : {std::string("script"), std::string("-qec"),
                                 Zelq() + " '2 / 0'" + redirection, std::string("/dev/null")})
        command.push_back(argument);
    return RunProgram(command).out;
}

TEST(Colours, OnATerminalUnlessRefused) {
    std::string const plain = "error: division by zero\r\n  2 / 0\r\n    ^\r\n";
    std::string const coloured =
        "\033[1;31merror:\033[0m \033[1mdivision by zero\033[0m\r\n  2 / 0\r\n    \033[1;31m^\033[0m\r\n";
    EXPECT_EQ(OnTerminal({}), coloured);
    EXPECT_EQ(OnTerminal({"NO_COLOR="}), coloured);
    EXPECT_EQ(OnTerminal({"NO_COLOR=1"}), plain);
    EXPECT_EQ(OnTerminal({"TERM=dumb"}), plain);
    EXPECT_EQ(OnTerminal({}, " 2>&1 | cat"), plain);
    EXPECT_EQ(OnTerminal({}, " >/dev/null"), coloured);
}

}  // namespace
