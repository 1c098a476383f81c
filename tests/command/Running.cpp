#include "command/Running.h"
#include "support/OwnPath.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <thread>

Capture::Capture(std::string const& text) {
    std::string pattern = std::filesystem::temp_directory_path() / "capturedXXXXXX";
    descriptor = mkstemp(pattern.data());
    unlink(pattern.c_str());
    for (std::size_t at = 0; at < text.size();) {
        ssize_t size = write(descriptor, text.data() + at, text.size() - at);
        if (size <= 0) std::abort();
        at += static_cast<std::size_t>(size);
    }
    lseek(descriptor, 0, SEEK_SET);
}

Capture::~Capture() { close(descriptor); }

// The program writes where the descriptor stands, so that is left alone.
std::string Capture::Text() const {
    std::string text;
    std::array<char, 4096> part;
    for (ssize_t size;
         (size = pread(descriptor, part.data(), part.size(), static_cast<off_t>(text.size()))) > 0;)
        text.append(part.data(), static_cast<std::size_t>(size));
    return text;
}

Started::Started(std::vector<std::string> const& arguments, std::string const& input, int standardOutput)
    : in(input) {
    std::vector<char*> argv;
    for (std::string const& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    child = fork();
    if (child != 0) return;
    for (int ordinary : {SIGINT, SIGTERM, SIGPIPE}) std::signal(ordinary, SIG_DFL);
    dup2(in.descriptor, 0);
    dup2(standardOutput >= 0 ? standardOutput : out.descriptor, 1);
    dup2(err.descriptor, 2);
    execvp(argv[0], argv.data());
    _exit(127);
}

void Started::AwaitOutput() const {
    for (int i = 0; i < 2000 && out.Text().empty(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

void Started::Send(int signal) const { kill(child, signal); }

bool Started::HasEnded() {
    if (!ended) ended = wait4(child, &status, WNOHANG, &usage) == child;
    return ended;
}

Ran Started::Wait() {
    if (!ended) wait4(child, &status, 0, &usage);
    ended = true;
    int const shown = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return {shown, out.Text(), err.Text(), usage.ru_maxrss};
}

Ran RunProgram(std::vector<std::string> const& arguments, std::string const& input) {
    return Started(arguments, input).Wait();
}

Ran RunZelq(std::vector<std::string> arguments, std::string const& input) {
    arguments.insert(arguments.begin(), Zelq());
    return RunProgram(arguments, input);
}

std::string Zelq() { return BuildFolder() + "/bin/zelq"; }

std::string BuildFolder() { return ownPath.parent_path().parent_path().parent_path(); }

std::string TestLibrary(std::string const& name) {
    return BuildFolder() + "/bin/tests/libraries/" + name + ".dylib";
}
